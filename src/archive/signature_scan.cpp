#include "archive/signature_scan.h"

#include <algorithm>

namespace {
constexpr size_t PieceSize = 4096;
}

std::optional<uint64_t> findSignature(ArchiveReading& reading, std::string_view pattern,
                                      uint64_t begin, uint64_t end) {
  size_t matched = 0;
  for (uint64_t position = begin; position < end;) {
    const std::string_view piece =
        reading.bytes(position, static_cast<size_t>(std::min<uint64_t>(PieceSize, end - position)));
    if (piece.empty()) break;
    for (const char byte : piece) {
      ++position;
      if (byte == pattern[matched] || pattern[matched] == AnyByte) {
        ++matched;
      } else {
        matched = byte == pattern[0] ? 1 : 0;
      }
      if (matched == pattern.size()) return position - pattern.size();
    }
  }
  return std::nullopt;
}

std::optional<uint64_t> findInProgram(ArchiveReading& reading, std::string_view pattern,
                                      uint64_t begin, uint64_t end) {
  if (!reading.bytes(0, 2).starts_with("MZ")) return std::nullopt;
  return findSignature(reading, pattern, begin, end);
}
