#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/text_run.h"

// Looks for a text in the bytes of many lines without decoding them. What it finds are lines that
// are worth decoding: each line that holds the text has a candidate, few others have one. For UTF-8
// and code pages of one byte a character.
class CandidateScan {
 public:
  static constexpr size_t None = static_cast<size_t>(-1);

  static bool isPossible(const TextStorage& storage);

  // `text` isn't empty. With `folds`, characters that fold to the same count as equal.
  CandidateScan(std::wstring_view text, bool folds, const TextStorage& storage);

  const TextStorage& storage() const { return storage_; }
  // The first or the last candidate that begins at or behind `from` and before `to`.
  size_t first(std::string_view bytes, size_t from, size_t to) const;
  size_t last(std::string_view bytes, size_t from, size_t to) const;

 private:
  // The bytes that may stand at one place.
  struct ByteSet {
    std::array<bool, 256> holds{};
    std::array<unsigned char, 2> two{};  // they, if there are no more than two
    int count = 0;

    void add(char byte);
  };
  using Stretch = std::vector<ByteSet>;

  static Stretch stretchOf(const std::vector<std::string>& spellings);
  void choosePair();
  bool isCandidate(std::string_view bytes, size_t at) const;
  size_t firstByPair(std::string_view bytes, size_t from, size_t to) const;

  TextStorage storage_;
  Stretch stretch_;  // the longest part of the text that has one length in bytes
  bool isImpossible_ = false;
  bool hasPair_ = false;
  size_t pair_[2] = {};  // the places that are looked at first
};
