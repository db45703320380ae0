#pragma once

#include <vector>

#include "terminal/control_sequence.h"

// The colours that the child has chosen for what it writes next.
struct Rendition {
  static constexpr unsigned char DefaultAttr = 7;
  enum class HighBytes { Utf8, CodePage437 };

  unsigned char attr = DefaultAttr;
  unsigned char defaultAttr = DefaultAttr;  // what 0 restores
  bool swapped = false;                     // the nibbles, by 7
  HighBytes highBytes = HighBytes::Utf8;    // what bytes from 128 on mean: 11 and 10
};

// Carries out one sequence of final byte m. Arguments that aren't understood are given back.
std::vector<int> applyRendition(const ControlSequence& sequence, Rendition& rendition);

// The PC colour (0 to 15) that is nearest to one of the 256 numbered colours, or to 24 bits of red,
// green and blue.
int nearestOfNumber(int number);
int nearestOfRgb(int red, int green, int blue);
