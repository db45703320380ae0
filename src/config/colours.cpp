#include "config/colours.h"

#include <cwchar>
#include <cwctype>

const char* const colourAttributeNames[ColourCount] = {
    "Panel",          "Highlight",    "Tagged",   "Highlight-Tagged", "Directories",
    "Directory High", "Command Line", "Messages", "Errors",           "Input Fields",
    "Screen Saver",   "Menu",         "Menu Bar", "Menu Highlight",   "Menu Quick Key",
    "Disabled Menu",  "File Viewer",  "Clock"};

namespace {
constexpr unsigned char DefaultTable[ColourCount] = {0x1B, 0x30, 0x1E, 0x3E, 0x1A, 0x20,
                                                     0x07, 0x70, 0x4F, 0x30, 0x03, 0x3F,
                                                     0x30, 0x0F, 0x0E, 0x07, 0x1B, 0x30};
constexpr const wchar_t* ColourWords[] = {L"bla", L"blu", L"gre", L"cya",
                                          L"red", L"mag", L"yel", L"whi"};
constexpr int SignificantLetters = 3;
constexpr unsigned char Bright = 8;
}  // namespace

unsigned char colourTable[ColourCount] = {0x1B, 0x30, 0x1E, 0x3E, 0x1A, 0x20, 0x07, 0x70, 0x4F,
                                          0x30, 0x03, 0x3F, 0x30, 0x0F, 0x0E, 0x07, 0x1B, 0x30};

void defaultColours() {
  for (int i = 0; i < ColourCount; ++i) colourTable[i] = DefaultTable[i];
}

unsigned char colourFromText(const wchar_t* phrase, unsigned char base) {
  unsigned char result = base;
  int shift = 0;  // 4 once "on" was met: what follows is background
  bool firstWord = true;
  for (const wchar_t* p = phrase; *p != 0;) {
    if (*p == L' ') {
      ++p;
      continue;
    }
    wchar_t word[SignificantLetters + 1] = {};
    int length = 0;
    for (; *p != 0 && *p != L' '; ++p) {
      if (length < SignificantLetters) word[length++] = static_cast<wchar_t>(towlower(*p));
    }
    if (wcscmp(word, L"on") == 0) {
      result &= 0x0F;
      shift = 4;
      firstWord = false;
      continue;
    }
    if (firstWord) {
      result &= 0xF0;
      firstWord = false;
    }
    if (wcscmp(word, L"bri") == 0) result |= static_cast<unsigned char>(Bright << shift);
    for (int number = 0; number < 8; ++number) {
      if (wcscmp(word, ColourWords[number]) == 0)
        result |= static_cast<unsigned char>(number << shift);
    }
  }
  return result;
}
