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

template <class Byte>
int64_t sumOf(std::string_view bytes) {
  int sum = 0;
  for (const char byte : bytes) sum += static_cast<Byte>(byte);
  return sum;
}

// The field itself counts as blanks. Added up without a test for each byte: large archives have
// many headers.
template <class Byte>
bool isSum(uint64_t expected, std::string_view block) {
  const std::string_view field = block.substr(SumOffset, SumLength);
  const int64_t sum = sumOf<Byte>(block) - sumOf<Byte>(field) + int64_t{SumLength} * ' ';
  return sum >= 0 && static_cast<uint64_t>(sum) == expected;
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
  const std::string_view block = block_.text(0, TarBlock);
  if (block.size() < TarBlock) return false;
  const std::optional<uint64_t> expected = octalNumber(block.substr(SumOffset, SumLength));
  return expected && (isSum<uint8_t>(*expected, block) || isSum<int8_t>(*expected, block));
}

bool TarHeader::isUstar() const {
  return block_.holds(MagicOffset, PosixMagic) || block_.holds(MagicOffset, OtherMagic);
}

bool TarHeader::hasPrefix() const {
  return block_.holds(MagicOffset, PosixMagic);
}
