#include "foundation/fold.h"

#include <algorithm>
#include <climits>
#include <cwchar>
#include <cwctype>
#include <type_traits>

namespace {
constexpr int LowByte = 0xFF;
constexpr int UnderscoreRank = 1;  // '_' sorts before every printable character

int difference(wchar_t a, wchar_t b) {
  long long exact = static_cast<long long>(a) - b;
  return static_cast<int>(std::clamp<long long>(exact, INT_MIN, INT_MAX));
}

template <class Character>
int compareAscii(const Character* a, const Character* b) {
  using Unsigned = std::make_unsigned_t<Character>;
  for (;; ++a, ++b) {
    const auto left = static_cast<Unsigned>(lowerAscii(*a));
    const auto right = static_cast<Unsigned>(lowerAscii(*b));
    if (left != right) return left < right ? -1 : 1;
    if (left == 0) return 0;
  }
}

// Several small letters may share a capital (the two sigmas). The usual one is the last of those
// right behind it; all others are variants that stand further off, or before it.
constexpr int NearSmallLetter = 0x28;

bool isNear(const FoldPair& pair) {
  return pair.lower > pair.upper && pair.lower - pair.upper <= NearSmallLetter;
}

struct UnfoldTable {
  UnfoldTable() {
    for (unsigned i = 0; i < FoldLimit; ++i) entry[i] = static_cast<uint16_t>(i);
    for (const FoldPair& pair : foldPairs) {
      if (pair.upper >= FoldLimit || pair.lower >= FoldLimit) continue;
      uint16_t& known = entry[pair.upper];
      if (known == pair.upper || (isNear(pair) && pair.lower > known)) known = pair.lower;
    }
  }
  uint16_t entry[FoldLimit];
};

// What one character counts in the order of names, 0 to 255.
int nameRank(wchar_t character) {
  int low = foldChar(character) & LowByte;
  return low == '_' ? UnderscoreRank : low;
}
}  // namespace

void foldString(wchar_t* text) {
  for (; *text != 0; ++text) *text = foldChar(*text);
}

wchar_t unfoldChar(wchar_t character) {
  static const UnfoldTable table;
  const auto index = static_cast<uint32_t>(character);
  return index < FoldLimit ? table.entry[index] : character;
}

void lowerString(wchar_t* text) {
  for (; *text != 0; ++text) *text = lowerChar(*text);
}

wchar_t lowerChar(wchar_t character) {
  constexpr wchar_t LastAscii = 127;
  if (character >= 0 && character <= LastAscii) return lowerAscii(character);
  return static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
}

int compareWords(const char* a, const char* b) {
  return compareAscii(a, b);
}

bool sameWord(const char* a, const char* b) {
  return compareAscii(a, b) == 0;
}

bool sameWord(const wchar_t* a, const wchar_t* b) {
  return compareAscii(a, b) == 0;
}

bool beginsWithWord(const char* text, const char* word) {
  for (; *word != 0; ++text, ++word) {
    if (lowerAscii(*text) != lowerAscii(*word)) return false;
  }
  return true;
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
