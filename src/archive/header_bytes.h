#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The fields of a header, little endian, by their offsets. What lies behind the end reads as 0.
class HeaderBytes {
 public:
  explicit HeaderBytes(std::string_view bytes) : bytes_(bytes) {}

  size_t size() const { return bytes_.size(); }
  uint8_t u8(size_t offset) const {
    return offset < bytes_.size() ? static_cast<uint8_t>(bytes_[offset]) : uint8_t{0};
  }
  uint16_t u16(size_t offset) const {
    return static_cast<uint16_t>(u8(offset) | u8(offset + 1) << 8);
  }
  uint32_t u32(size_t offset) const { return u16(offset) | uint32_t{u16(offset + 2)} << 16; }
  uint64_t u64(size_t offset) const { return u32(offset) | uint64_t{u32(offset + 4)} << 32; }
  // As many bytes of the text as there are.
  std::string_view text(size_t offset, size_t count) const {
    return offset < bytes_.size() ? bytes_.substr(offset, count) : std::string_view();
  }
  // The text up to its NUL, at most `count` bytes.
  std::string_view ended(size_t offset, size_t count) const {
    const std::string_view whole = text(offset, count);
    return whole.substr(0, whole.find('\0'));
  }
  bool holds(size_t offset, std::string_view expected) const {
    return text(offset, expected.size()) == expected;
  }

 private:
  std::string_view bytes_;
};
