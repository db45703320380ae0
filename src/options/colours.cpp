#include "options/colours.h"

#include <algorithm>
#include <cwchar>

#include "foundation/fold.h"

const char* const colourAttributeNames[ColourCount] = {
    "Panel",          "Highlight",    "Tagged",   "Highlight-Tagged", "Directories",
    "Directory High", "Command Line", "Messages", "Errors",           "Input Fields",
    "Screen Saver",   "Menu",         "Menu Bar", "Menu Highlight",   "Menu Quick Key",
    "Disabled Menu",  "File Viewer",  "Clock"};

unsigned char colourTable[ColourCount];

namespace {

constexpr unsigned char DefaultTable[ColourCount] = {0x1B, 0x30, 0x1E, 0x3E, 0x1A, 0x20,
                                                     0x07, 0x70, 0x4F, 0x30, 0x03, 0x3F,
                                                     0x30, 0x0F, 0x0E, 0x07, 0x1B, 0x30};
constexpr const wchar_t* ColourWords[] = {L"bla", L"blu", L"gre", L"cya",
                                          L"red", L"mag", L"yel", L"whi"};
constexpr int SignificantLetters = 3;
constexpr int BrightBit = 8;
constexpr int ForegroundMask = 0x0F;
constexpr int BackgroundMask = 0xF0;
constexpr int BackgroundShift = 4;

struct ColourWord {
  wchar_t letters[SignificantLetters + 1] = {};

  bool is(const wchar_t* other) const { return wcscmp(letters, other) == 0; }

  // What the word adds to the foreground; 0 for black and for no colour at all.
  int bits() const {
    if (is(L"bri")) return BrightBit;
    int number = 0;
    for (const wchar_t* name : ColourWords) {
      if (is(name)) return number;
      ++number;
    }
    return 0;
  }
};

// Cuts the next word off, the letters that count in lower case. False at the end.
bool nextWord(const wchar_t*& cursor, ColourWord& word) {
  while (*cursor == L' ') ++cursor;
  word = ColourWord();
  for (int length = 0; *cursor != 0 && *cursor != L' '; ++cursor, ++length) {
    if (length < SignificantLetters) word.letters[length] = lowerAscii(*cursor);
  }
  return word.letters[0] != 0;
}

// Fills the table before main runs.
struct Defaults {
  Defaults() { defaultColours(); }
} defaults;

}  // namespace

void defaultColours() {
  std::copy_n(DefaultTable, ColourCount, colourTable);
}

unsigned char colourFromText(const wchar_t* phrase, unsigned char base) {
  int result = base;
  int shift = 0;
  bool isFirst = true;
  ColourWord word;
  while (nextWord(phrase, word)) {
    if (word.is(L"on")) {
      result &= ForegroundMask;
      shift = BackgroundShift;
    } else {
      if (isFirst) result &= BackgroundMask;
      result |= word.bits() << shift;
    }
    isFirst = false;
  }
  return static_cast<unsigned char>(result);
}
