#include "archive/crc32.h"

#include <array>

namespace {

constexpr uint32_t Polynomial = 0xEDB88320;
constexpr uint32_t ByteMask = 0xFF;
constexpr int BitsOfAByte = 8;

constexpr std::array<uint32_t, 256> makeTable() {
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < table.size(); ++i) {
    uint32_t value = i;
    for (int bit = 0; bit < BitsOfAByte; ++bit) {
      value = (value & 1) != 0 ? value >> 1 ^ Polynomial : value >> 1;
    }
    table[i] = value;
  }
  return table;
}

constexpr std::array<uint32_t, 256> Table = makeTable();

}  // namespace

uint32_t crc32(std::string_view bytes, uint32_t before) {
  uint32_t value = ~before;
  for (const char byte : bytes) {
    value = Table[(value ^ static_cast<unsigned char>(byte)) & ByteMask] ^ value >> BitsOfAByte;
  }
  return ~value;
}
