#include "terminal/utf8_tail.h"

#include <algorithm>

namespace {
constexpr size_t LongestSequence = 4;

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// Bytes of the character that begins with `lead`; 1 for a byte that begins none.
size_t sequenceLength(unsigned char lead) {
  if ((lead & 0xE0) == 0xC0) return 2;
  if ((lead & 0xF0) == 0xE0) return 3;
  return (lead & 0xF8) == 0xF0 ? LongestSequence : 1;
}
}  // namespace

size_t unfinishedUtf8(std::string_view bytes) {
  const size_t reach = std::min(bytes.size(), LongestSequence - 1);
  for (size_t tail = 1; tail <= reach; ++tail) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - tail]);
    if (!isContinuation(byte)) return sequenceLength(byte) > tail ? tail : 0;
  }
  return 0;
}
