#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "editor/text/text_encoding.h"

enum class CaseRule { Exact, Folded };

// A text to search for, as the bytes that it may have in a file: for each of its characters all
// ways to write it. In a code page a "character" is a byte, folded through the page.
class SearchPattern {
 public:
  struct Match {
    int64_t before = 0;  // bytes before the key
    int64_t length = 0;  // of all
  };

  SearchPattern(std::wstring_view text, const TextEncoding& encoding, CaseRule rule);

  // False for an empty text, and for one with a character that the encoding doesn't hold.
  bool valid() const { return !elements_.empty(); }
  int64_t longest() const { return longest_; }  // bytes that it takes at most

  // The first place at or behind `from` where it may lie: its key, the part of it that is easiest
  // to find, begins there. `size` of bytes when there is none. It may be that the last few bytes,
  // less than keyLength(), begin a key that goes on behind them: those aren't found.
  size_t findKey(std::string_view bytes, size_t from) const;
  size_t keyLength() const { return keyLength_; }
  // Whether a key may begin there whose end lies behind `bytes`.
  bool mayBegin(std::string_view bytes, size_t key) const;
  // Whether it really lies around the key at `key`. What lies outside of `bytes` doesn't match.
  bool matches(std::string_view bytes, size_t key, Match& match) const;

 private:
  // The ways to write one character; none is the beginning or the end of another.
  using Element = std::vector<std::string>;
  // What the byte at `offset` of the key may be.
  struct KeyByte {
    size_t offset = 0;
    std::string values;
    int weight = 0;  // the rarer the lighter
  };
  static constexpr size_t MostValues = 3;  // that are looked for at once

  void addElements(std::wstring_view text, CaseRule rule, const TextEncoding& encoding);
  void addPageElements(std::wstring_view text, CaseRule rule, const TextEncoding& encoding);
  void chooseKey();
  std::vector<KeyByte> keyBytesFrom(size_t element) const;
  size_t findPair(std::string_view bytes, size_t from) const;
  bool fitsAt(const char* bytes, size_t count) const;
  size_t findByTable(std::string_view bytes, size_t from) const;

  std::vector<Element> elements_;
  int64_t longest_ = 0;
  size_t keyElement_ = 0;  // the key begins with this one
  KeyByte first_;
  KeyByte second_;
  size_t keyLength_ = 1;
  // For each byte at which offsets of the key it may stand: a bit for each.
  std::array<uint32_t, 256> offsets_{};
  size_t knownLength_ = 0;  // so many offsets are known, from 0 on
};
