#include "archive/tar_header.h"

namespace {

constexpr size_t SumOffset = 148;
constexpr size_t SumLength = 8;
constexpr size_t MagicOffset = 257;
constexpr std::string_view PosixMagic("ustar\0", 6);
constexpr std::string_view OtherMagic("ustar  ");
constexpr uint8_t BinaryMark = 0x80;
constexpr uint8_t NegativeMark = 0x40;
constexpr uint64_t LargestBeforeByte = UINT64_MAX >> 8;
constexpr uint64_t LargestBeforeDigit = UINT64_MAX >> 3;

std::optional<uint64_t> binaryNumber(std::string_view bytes) {
  const auto first = static_cast<uint8_t>(bytes[0]);
  if ((first & NegativeMark) != 0) return std::nullopt;
  uint64_t value = first & (BinaryMark - 1U);
  for (const char byte : bytes.substr(1)) {
    if (value > LargestBeforeByte) return std::nullopt;
    value = value << 8 | static_cast<uint8_t>(byte);
  }
  return value;
}

}  // namespace

std::optional<uint64_t> octalNumber(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  uint64_t value = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '7' || value > LargestBeforeDigit) return std::nullopt;
    value = value << 3 | static_cast<uint64_t>(digit - '0');
  }
  return value;
}

std::optional<uint64_t> TarHeader::number(size_t offset, size_t length) const {
  if ((block_.u8(offset) & BinaryMark) != 0) return binaryNumber(block_.text(offset, length));
  return octalNumber(block_.text(offset, length));
}

bool TarHeader::sumFits() const {
  const std::optional<uint64_t> stored = octalNumber(block_.text(SumOffset, SumLength));
  if (!stored || block_.size() < TarBlock) return false;
  uint64_t sum = 0;
  int64_t signedSum = 0;
  for (size_t i = 0; i < TarBlock; ++i) {
    const bool inSum = i >= SumOffset && i < SumOffset + SumLength;
    const uint8_t byte = inSum ? uint8_t{' '} : block_.u8(i);
    sum += byte;
    signedSum += static_cast<int8_t>(byte);
  }
  return *stored == sum || (signedSum >= 0 && *stored == static_cast<uint64_t>(signedSum));
}

bool TarHeader::isUstar() const {
  return block_.holds(MagicOffset, PosixMagic) || block_.holds(MagicOffset, OtherMagic);
}

bool TarHeader::hasPrefix() const {
  return block_.holds(MagicOffset, PosixMagic);
}
