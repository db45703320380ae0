#pragma once

#include "foundation/westring.h"

// An attribute is one byte as on a PC text screen: bits 0..3 foreground, bits 4..7 background.
enum class Colour : int {
  Panel = 0,
  Highlight,
  Tagged,
  HighlightTagged,
  Directories,
  DirectoryHigh,
  CommandLine,
  Messages,
  Errors,
  InputFields,
  ScreenSaver,
  Menu,
  MenuBar,
  MenuHighlight,
  MenuQuickKey,
  DisabledMenu,
  FileViewer,
  Clock
};

inline constexpr int ColourCount = 18;

extern const char* const colourAttributeNames[ColourCount];
// The colour table. Application thread writes; others read.
extern unsigned char colourTable[ColourCount];

inline unsigned char colourOf(Colour colour) {
  return colourTable[static_cast<int>(colour)];
}

void defaultColours();  // the table's default values

// A phrase such as "bright white on blue" applied to `base`. The first three letters of a word
// count.
unsigned char colourFromText(const wchar_t* phrase, unsigned char base);
