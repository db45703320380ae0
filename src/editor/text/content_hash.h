#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// A number for a content that is given in parts: equal contents have equal numbers, however they
// were cut. Of different ones the numbers differ, except for one in 2^64 or so. They are those of
// this process: each has its own.
class ContentHash {
 public:
  using Value = std::array<uint64_t, 2>;

  ContentHash();
  void add(std::string_view bytes);
  Value value() const;  // of all that was added

 private:
  using Lanes = std::array<uint64_t, 4>;  // they don't wait for each other
  static constexpr size_t BlockSize = 64;

  static void addBlocks(Lanes& lanes, std::string_view blocks);

  Lanes lanes_;
  std::array<char, BlockSize> rest_{};  // less than a block, until more comes
  size_t restSize_ = 0;
  uint64_t size_ = 0;
};
