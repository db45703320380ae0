#include "editor/document/valid_utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace {
// Sixteen bytes at once, on whatever the machine has for that.
using Vector = unsigned char __attribute__((vector_size(16)));
constexpr size_t StretchBytes = 2 * sizeof(Vector);
// What a byte may still be a part of.
constexpr size_t BytesBefore = 3;

template <class Bits>
bool any(const Bits& bits) {
  std::array<uint64_t, 2> words;
  std::memcpy(words.data(), &bits, sizeof words);
  return (words[0] | words[1]) != 0;
}

Vector vectorAt(const char* at) {
  Vector bytes;
  std::memcpy(&bytes, at, sizeof bytes);
  return bytes;
}

bool isAscii(const char* at) {
  return !any((vectorAt(at) | vectorAt(at + sizeof(Vector))) & 0x80);
}

// The bytes that are one too many, missing, or in a form that isn't allowed, with what stands
// before them. Inlined, so that what is compared with stays in registers.
[[gnu::always_inline]] inline auto faults(const char* at) {
  const Vector byte = vectorAt(at);
  const Vector last = vectorAt(at - 1);
  const auto follows = (byte & 0xC0) == 0x80;
  const auto mustFollow = (last >= 0xC0) | (vectorAt(at - 2) >= 0xE0) | (vectorAt(at - 3) >= 0xF0);
  const auto overlong =
      ((byte & 0xFE) == 0xC0) | ((last == 0xE0) & (byte < 0xA0)) | ((last == 0xF0) & (byte < 0x90));
  const auto surrogate = (last == 0xED) & (byte >= 0xA0);
  const auto tooHigh = (byte >= 0xF5) | ((last == 0xF4) & (byte >= 0x90));
  return (follows ^ mustFollow) | overlong | surrogate | tooHigh;
}

bool hasFault(const char* at) {
  return any(faults(at) | faults(at + sizeof(Vector)));
}

// A stretch at an edge, with zeros where the text doesn't reach.
bool hasFaultAtEdge(std::string_view bytes, size_t at) {
  std::array<char, BytesBefore + StretchBytes> padded{};
  const size_t before = std::min(at, BytesBefore);
  const std::string_view part = bytes.substr(at - before, before + StretchBytes);
  std::copy(part.begin(), part.end(), padded.begin() + (BytesBefore - before));
  return hasFault(padded.data() + BytesBefore);
}
}  // namespace

bool isValidUtf8(std::string_view bytes) {
  if (hasFaultAtEdge(bytes, 0)) return false;
  size_t at = StretchBytes;
  bool wasAscii = false;
  for (; at + StretchBytes <= bytes.size(); at += StretchBytes) {
    const bool ascii = isAscii(bytes.data() + at);
    if (!(ascii && wasAscii) && hasFault(bytes.data() + at)) return false;
    wasAscii = ascii;
  }
  // One stretch with the end behind it, whatever is left: what is open there is a fault.
  return bytes.size() < StretchBytes || !hasFaultAtEdge(bytes, std::min(at, bytes.size()));
}
