#include "foundation/fold.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cwchar>
#include <cwctype>

unsigned char upperTable[256];
unsigned char lowerTable[256];

namespace {
constexpr int LowByte = 0xFF;
constexpr int UnderscoreRank = 1;  // '_' sorts before every printable character

int difference(wchar_t a, wchar_t b) {
  long long exact = static_cast<long long>(a) - b;
  return static_cast<int>(std::clamp<long long>(exact, INT_MIN, INT_MAX));
}

// What one character counts in the order of names, 0 to 255.
int nameRank(wchar_t character) {
  int low = foldChar(character) & LowByte;
  return low == '_' ? UnderscoreRank : low;
}
}  // namespace

void foldString(wchar_t* text) {
  for (; *text != 0; ++text) *text = foldChar(*text);
}

void lowerString(wchar_t* text) {
  for (; *text != 0; ++text) *text = static_cast<wchar_t>(towlower(static_cast<wint_t>(*text)));
}

wchar_t lowerChar(wchar_t character) {
  constexpr wchar_t LastAscii = 127;
  if (character >= 0 && character <= LastAscii) return static_cast<wchar_t>(tolower(character));
  return static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
}

int compareNoCase(const wchar_t* a, const wchar_t* b) {
  for (;; ++a, ++b) {
    wchar_t foldedA = foldChar(*a);
    wchar_t foldedB = foldChar(*b);
    if (foldedA != foldedB || foldedA == 0) return difference(foldedA, foldedB);
  }
}

int compareNoCaseN(const wchar_t* a, const wchar_t* b, int count) {
  for (int i = 0; i < count; ++i) {
    wchar_t foldedA = foldChar(a[i]);
    wchar_t foldedB = foldChar(b[i]);
    if (foldedA != foldedB || foldedA == 0) return (foldedA & LowByte) - (foldedB & LowByte);
  }
  return 0;
}

// An ended name goes first by itself, not by its terminator: characters with a low byte of 0 would
// equal it, and then this were no order that a sort can rely on.
int compareNames(const wchar_t* a, const wchar_t* b) {
  for (int i = 0;; ++i) {
    if (a[i] == 0 || b[i] == 0) {
      if (a[i] != b[i])
        return a[i] == 0 ? -std::max(nameRank(b[i]), 1) : std::max(nameRank(a[i]), 1);
      return wcscmp(a, b);
    }
    if (a[i] == b[i]) continue;
    int rankA = nameRank(a[i]);
    int rankB = nameRank(b[i]);
    if (rankA != rankB) return rankA - rankB;
  }
}

uint64_t compareNamesPrefix(const wchar_t* name) {
  constexpr int Places = sizeof(uint64_t);
  uint64_t prefix = 0;
  int place = 0;
  for (; place < Places && name[place] != 0; ++place) {
    prefix = prefix << CHAR_BIT | static_cast<uint64_t>(nameRank(name[place]));
  }
  return place == 0 ? 0 : prefix << (Places - place) * CHAR_BIT;
}

void buildCaseTables() {
  for (int i = 1; i <= UCHAR_MAX; ++i) {
    upperTable[i] = static_cast<unsigned char>(toupper(i));
    lowerTable[i] = static_cast<unsigned char>(tolower(i));
  }
}
