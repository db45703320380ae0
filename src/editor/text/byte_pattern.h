#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "editor/text/byte_row.h"
#include "editor/text/text_encoding.h"

enum class CaseRule { Exact, Folded };

// A text to search for, as the bytes that it may have in a file: for each of its characters all
// ways to write it. In a code page a "character" is a byte, folded through the page.
class BytePattern {
 public:
  struct Match {
    int64_t before = 0;  // bytes before the key
    int64_t length = 0;  // of all
  };

  BytePattern(std::wstring_view text, const TextEncoding& encoding, CaseRule rule);

  // False for an empty text, and for one with a character that the encoding doesn't hold.
  bool valid() const { return !elements_.empty(); }
  int64_t longest() const { return longest_; }  // bytes that it takes at most

  // What is easiest to find of it: looked for first, at `key` in the bytes.
  const ByteRow& key() const { return key_; }
  // Whether it really lies around the key at `key`. What lies outside of `bytes` doesn't match.
  bool matches(std::string_view bytes, size_t key, Match& match) const;

 private:
  // One way to write a character, as a number that is compared at once.
  struct Way {
    explicit Way(std::string_view text);
    bool beginsAt(std::string_view text, size_t at) const;

    size_t length;
    uint32_t bytes = 0;  // in the order of memory
    uint32_t mask = 0;
  };
  // The ways to write one character; none is the beginning or the end of another.
  using Element = std::vector<std::string>;

  void addElements(std::wstring_view text, CaseRule rule, const TextEncoding& encoding);
  void addPageElements(std::wstring_view text, CaseRule rule, const TextEncoding& encoding);
  void chooseKey();
  std::vector<std::string> bytesFrom(size_t element) const;

  std::vector<Element> elements_;
  std::vector<std::vector<Way>> ways_;  // of the elements
  int64_t longest_ = 0;
  size_t keyElement_ = 0;  // the key begins with this one
  ByteRow key_;
};
