#include "foundation/wild_match.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/fold.h"

namespace {
using Code = uint64_t;  // of a character, unsigned, with room for the one behind the last

constexpr Code OpenRangeEnd = 255;  // where "[a-]" ends

// The characters of the set table that fold to the folded form of a Latin-1 character. A set looks
// at the low byte of a character only, so these few are all that a member or a range can hit.
class FoldedGroups {
 public:
  FoldedGroups() {
    for (unsigned low = 0; low < Groups; ++low) {
      Code target = static_cast<uint32_t>(foldChar(static_cast<wchar_t>(low)));
      groups_[low].push_back(target);
      for (const FoldPair& pair : foldPairs) {
        if (pair.upper == target && pair.lower < FoldLimit) groups_[low].push_back(pair.lower);
      }
    }
  }
  const std::vector<Code>& of(wchar_t character) const {
    return groups_[static_cast<unsigned char>(character)];
  }

 private:
  static constexpr size_t Groups = 256;
  std::array<std::vector<Code>, Groups> groups_;
};

struct Narrow {
  using Character = char;
  static Code code(char character) { return static_cast<unsigned char>(character); }
  static bool equal(char a, char b) { return lowerAscii(a) == lowerAscii(b); }
  // A character from 0x80 on counts as negative, and '-' behind it is a plain member.
  static bool canStartRange(Code previous) { return previous < 0x80; }
  static bool rangeHolds(Code first, Code last, char character) {
    const Code target = lowerAscii(Code{static_cast<unsigned char>(character)});
    for (Code code = first; code <= last; ++code) {
      if (lowerAscii(code) == target) return true;
    }
    return false;
  }
};

struct Wide {
  using Character = wchar_t;
  static Code code(wchar_t character) { return static_cast<uint32_t>(character); }
  static bool equal(wchar_t a, wchar_t b) { return a == b || foldChar(a) == foldChar(b); }
  static bool canStartRange(Code) { return true; }
  static bool rangeHolds(Code first, Code last, wchar_t character) {
    static const FoldedGroups groups;
    for (Code code : groups.of(character)) {
      if (code >= first && code <= last) return true;
    }
    return false;
  }
};

// Pairs of positions in pattern and text that were tried before. Small ones need no allocation.
class TriedStates {
 public:
  TriedStates(size_t patternLength, size_t textLength) : rowLength_(textLength + 1) {
    size_t words = ((patternLength + 1) * rowLength_ + WordBits - 1) / WordBits;
    if (words <= SmallWords) {
      words_ = small_;
    } else {
      large_.resize(words);
      words_ = large_.data();
    }
  }

  // False when the pair was there already.
  bool add(size_t pattern, size_t text) {
    size_t index = pattern * rowLength_ + text;
    uint64_t bit = uint64_t{1} << index % WordBits;
    uint64_t& word = words_[index / WordBits];
    bool added = (word & bit) == 0;
    word |= bit;
    return added;
  }

 private:
  static constexpr size_t WordBits = 64;
  static constexpr size_t SmallWords = 32;

  size_t rowLength_;
  uint64_t small_[SmallWords] = {};
  std::vector<uint64_t> large_;
  uint64_t* words_;
};

// One match. Whatever can go on in more than one way is put down as a pair of positions; since no
// pair is tried twice, the time is bounded by the product of the lengths.
template <class Kind>
class Matcher {
 public:
  using Character = typename Kind::Character;

  Matcher(const Character* pattern, const Character* text)
      : pattern_(pattern),
        text_(text),
        patternLength_(measure(pattern)),
        textLength_(measure(text)),
        tried_(patternLength_, textLength_) {
    for (size_t i = 0; i < patternLength_; ++i) {
      if (pattern[i] == ']') lastBracket_ = i;
      if (pattern[i] == '}') lastBrace_ = i;
    }
  }

  bool run() {
    if (walk(0, 0)) return true;
    while (!waiting_.empty()) {
      auto [pattern, text] = waiting_.back();
      waiting_.pop_back();
      if (walk(pattern, text)) return true;
    }
    return false;
  }

 private:
  static size_t measure(const Character* text) {
    size_t length = 0;
    while (text[length] != 0) ++length;
    return length;
  }

  bool walk(size_t p, size_t t) {
    while (tried_.add(p, t)) {
      if (p == patternLength_) return t == textLength_;
      if (pattern_[p] == '*') {
        if (p + 1 == patternLength_) return true;
        if (t < textLength_) waiting_.emplace_back(p, t + 1);
        ++p;
        continue;
      }
      if (startsList(p)) putDownAlternatives(p, t);
      size_t next = elementEnd(p);
      if (!elementHolds(p, next, t)) return false;
      p = next;
      ++t;
    }
    return false;
  }

  bool startsSet(size_t p) const { return p < lastBracket_ && pattern_[p] == '['; }

  bool startsList(size_t p) const {
    return p < lastBrace_ && pattern_[p] == '{' && pattern_[p + 1] != '}';
  }

  // Behind the set or the single character at p.
  size_t elementEnd(size_t p) const {
    if (!startsSet(p)) return p + 1;
    while (pattern_[p] != ']') ++p;
    return p + 1;
  }

  // Whether the element from p to `end` takes the character at t.
  bool elementHolds(size_t p, size_t end, size_t t) const {
    if (t == textLength_) return false;
    if (pattern_[p] == '?') return true;
    if (startsSet(p)) return setHolds(p + 1, end - 1, text_[t]);
    return Kind::equal(pattern_[p], text_[t]);
  }

  bool setHolds(size_t p, size_t end, Character character) const {
    bool negate = pattern_[p] == '^';
    bool held = negate;
    Code previous = 0;
    for (p += negate ? 1 : 0; p < end; ++p) {
      Code first = Kind::code(pattern_[p]);
      Code last = first;
      if (pattern_[p] == '^') {
        negate = !negate;
        continue;
      }
      bool range = pattern_[p] == '-' && Kind::canStartRange(previous);
      if (range) {
        first = previous;
        last = p + 1 == end ? OpenRangeEnd : Kind::code(pattern_[++p]);
        if (first > last) continue;
      }
      if (Kind::rangeHolds(first, last, character)) held = !negate;
      previous = range ? last + 1 : last;
    }
    return held;
  }

  // For each alternative of the list at p that agrees with the text: the place behind the list and
  // behind the agreeing text. An empty alternative agrees with nothing at all.
  void putDownAlternatives(size_t p, size_t t) {
    size_t listEnd = p + 1;
    while (listEnd < patternLength_ && pattern_[listEnd] != '}') listEnd = elementEnd(listEnd);
    if (listEnd >= patternLength_) return;
    for (size_t i = p + 1; i < listEnd; ++i) {
      size_t taken = t;
      bool agrees = true;
      while (i < listEnd && pattern_[i] != ',') {
        size_t next = elementEnd(i);
        agrees = agrees && elementHolds(i, next, taken);
        if (agrees) ++taken;
        i = next;
      }
      if (agrees) waiting_.emplace_back(listEnd + 1, taken);
    }
  }

  const Character* pattern_;
  const Character* text_;
  size_t patternLength_;
  size_t textLength_;
  size_t lastBracket_ = 0;  // of the last ']', 0 without one
  size_t lastBrace_ = 0;    // of the last '}', 0 without one
  TriedStates tried_;
  std::vector<std::pair<size_t, size_t>> waiting_;
};

template <class Character>
bool isPlain(Character ch) {
  return ch != '*' && ch != '?' && ch != '[' && ch != '{';
}

// Most masks are a name or an ending: they need no way back. Nothing for any other mask.
template <class Kind, class Character = typename Kind::Character>
std::optional<bool> matchEnding(const Character* pattern, const Character* text) {
  const bool isEnding = *pattern == '*';
  const Character* wanted = pattern + (isEnding ? 1 : 0);
  size_t length = 0;
  for (; wanted[length] != 0; ++length) {
    if (!isPlain(wanted[length])) return std::nullopt;
  }
  const size_t textLength = std::char_traits<Character>::length(text);
  if (isEnding ? textLength < length : textLength != length) return false;
  return std::equal(wanted, wanted + length, text + (textLength - length), Kind::equal);
}

template <class Kind, class Character = typename Kind::Character>
bool match(const Character* pattern, const Character* text) {
  const std::optional<bool> simple = matchEnding<Kind>(pattern, text);
  return simple ? *simple : Matcher<Kind>(pattern, text).run();
}
}  // namespace

bool wildMatch(const char* pattern, const char* text) {
  return match<Narrow>(pattern, text);
}

bool wildMatch(const wchar_t* pattern, const wchar_t* text) {
  return match<Wide>(pattern, text);
}
