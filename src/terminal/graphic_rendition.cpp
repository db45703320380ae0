#include "terminal/graphic_rendition.h"

#include <algorithm>
#include <climits>

namespace {
constexpr int Foreground = 0x0F, Background = 0xF0, BackgroundShift = 4;
constexpr int Bright = 0x08, BrightBackground = 0x80;
constexpr int PcColours[] = {0, 4, 2, 6, 1, 5, 3, 7};  // of the eight ANSI ones
constexpr int PaletteSize = 256, Colours = 16, AnsiColours = 8;
constexpr int CubeStart = 16, CubeSide = 6, GreyStart = 232;
constexpr int CubeLevels[CubeSide] = {0, 95, 135, 175, 215, 255};
constexpr int FirstGrey = 8, GreyStep = 10;

struct Rgb {
  int red, green, blue;
};

Rgb rgbOfPc(int colour) {
  constexpr int Half = 0x7F, Full = 0xFF, Dark = 0x40;
  if (colour == Bright) return {Dark, Dark, Dark};
  const int level = colour > Bright ? Full : Half;
  return {colour & 4 ? level : 0, colour & 2 ? level : 0, colour & 1 ? level : 0};
}

int square(int value) {
  return value * value;
}

unsigned char withForeground(int attr, int colour) {
  return static_cast<unsigned char>((attr & Background) | (colour & Foreground));
}

unsigned char withBackground(int attr, int colour) {
  return static_cast<unsigned char>((attr & Foreground) | colour << BackgroundShift);
}

void swapNibbles(Rendition& rendition) {
  rendition.attr = withBackground(rendition.attr >> BackgroundShift, rendition.attr & Foreground);
  rendition.swapped = !rendition.swapped;
}

// 38 and 48: "5;number" or "2;red;green;blue". Moves `index` to the last operand that is there.
int readExtendedColour(const ControlSequence& sequence, int& index) {
  constexpr int None = -1;
  switch (sequence.argument(++index, 0)) {
    case 5:
      return nearestOfNumber(sequence.argument(++index, 0));
    case 2: {
      const int red = sequence.argument(++index, 0), green = sequence.argument(++index, 0);
      return nearestOfRgb(red, green, sequence.argument(++index, 0));
    }
    default:
      return None;
  }
}

// The four rows of eight colours, and back to the default. False for any other argument.
bool applyColour(int argument, Rendition& rendition) {
  unsigned char& attr = rendition.attr;
  const int normal = argument % 10;
  const int colour = normal < AnsiColours ? PcColours[normal] : 0;
  if (argument >= 30 && argument <= 37) {
    attr = withForeground(attr, colour);
  } else if (argument >= 40 && argument <= 47) {
    attr = withBackground(attr, colour);
  } else if (argument >= 90 && argument <= 97) {
    attr = withForeground(attr, colour | Bright);
  } else if (argument >= 100 && argument <= 107) {
    attr = withBackground(attr, colour | Bright);
  } else if (argument == 39 || argument == 99) {
    attr = withForeground(attr, rendition.defaultAttr);
  } else if (argument == 49 || argument == 109) {
    attr = withBackground(attr, rendition.defaultAttr >> BackgroundShift);
  } else {
    return false;
  }
  return true;
}

bool applyStyle(int argument, Rendition& rendition) {
  unsigned char& attr = rendition.attr;
  switch (argument) {
    case 0:
      rendition.attr = rendition.defaultAttr;
      rendition.swapped = false;
      return true;
    case 1:
      attr |= Bright;
      return true;
    case 4:
      attr |= BrightBackground;
      return true;
    case 7:
      swapNibbles(rendition);
      return true;
    case 10:
      rendition.highBytes = Rendition::HighBytes::Utf8;
      return true;
    case 11:
      rendition.highBytes = Rendition::HighBytes::CodePage437;
      return true;
    case 22:
      attr &= static_cast<unsigned char>(~Bright);
      return true;
    case 24:
      attr &= static_cast<unsigned char>(~BrightBackground);
      return true;
    case 27:
      if (rendition.swapped) swapNibbles(rendition);
      return true;
    default:
      return false;
  }
}

// Faint, italic, blinking, hidden and crossed out, on and off: the screen has nothing for them.
bool hasNoPicture(int argument) {
  constexpr int Silent[] = {2, 3, 5, 8, 9, 23, 25, 28, 29};
  return std::find(std::begin(Silent), std::end(Silent), argument) != std::end(Silent);
}
}  // namespace

int nearestOfRgb(int red, int green, int blue) {
  const int full = 255;
  const Rgb wanted{std::min(red, full), std::min(green, full), std::min(blue, full)};
  int best = 0, leastDistance = INT_MAX;
  for (int colour = 0; colour < Colours; ++colour) {
    const Rgb has = rgbOfPc(colour);
    const int distance = square(has.red - wanted.red) + square(has.green - wanted.green) +
                         square(has.blue - wanted.blue);
    if (distance >= leastDistance) continue;
    leastDistance = distance;
    best = colour;
  }
  return best;
}

int nearestOfNumber(int number) {
  number = std::min(number, PaletteSize - 1);
  if (number < CubeStart) return PcColours[number % AnsiColours] | (number & Bright);
  if (number >= GreyStart) {
    const int level = FirstGrey + GreyStep * (number - GreyStart);
    return nearestOfRgb(level, level, level);
  }
  const int place = number - CubeStart;
  return nearestOfRgb(CubeLevels[place / (CubeSide * CubeSide)],
                      CubeLevels[place / CubeSide % CubeSide], CubeLevels[place % CubeSide]);
}

std::vector<int> applyRendition(const ControlSequence& sequence, Rendition& rendition) {
  std::vector<int> unknown;
  if (sequence.count == 0) applyStyle(0, rendition);
  for (int index = 0; index < sequence.count; ++index) {
    const int argument = sequence.argument(index, 0);
    if (argument == 38 || argument == 48) {
      const int colour = readExtendedColour(sequence, index);
      if (colour < 0) continue;
      rendition.attr = argument == 38 ? withForeground(rendition.attr, colour)
                                      : withBackground(rendition.attr, colour);
    } else if (!applyColour(argument, rendition) && !applyStyle(argument, rendition) &&
               !hasNoPicture(argument)) {
      unknown.push_back(argument);
    }
  }
  return unknown;
}
