#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "archive/header_bytes.h"

inline constexpr size_t TarBlock = 512;

// A header block of a tape archive, in the old form or in that with "ustar".
class TarHeader {
 public:
  explicit TarHeader(const HeaderBytes& block) : block_(block) {}

  bool sumFits() const;  // counted with signed or unsigned bytes
  bool isUstar() const;
  bool hasPrefix() const;  // of the name: the directories before it

  std::string_view name() const { return block_.ended(0, 100); }
  std::string_view prefix() const { return block_.ended(345, 155); }
  char type() const { return static_cast<char>(block_.u8(156)); }
  // Numbers are octal texts, or binary behind a byte with its high bit set. Nothing when a byte is
  // neither, or the number is negative or beyond 64 bits.
  std::optional<uint64_t> size() const { return number(124, 12); }
  std::optional<uint64_t> sparseSize() const { return number(483, 12); }
  std::optional<uint64_t> mode() const { return number(100, 8); }
  std::optional<uint64_t> time() const { return number(136, 12); }
  bool moreSparseBlocks() const { return block_.u8(482) == 1; }

 private:
  std::optional<uint64_t> number(size_t offset, size_t length) const;

  HeaderBytes block_;
};

// Octal digits, blanks around them; nothing when there is anything else.
std::optional<uint64_t> octalNumber(std::string_view text);
