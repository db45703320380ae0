#include "editor/text/line_ends.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace {

constexpr char Cr = '\r';
constexpr char Lf = '\n';
constexpr uint32_t NoLineEnd = 1;  // any unit that ends no line

bool endsLine(uint32_t unit) {
  return unit == Cr || unit == Lf || unit == 0;
}

// Sixteen bytes at once, on whatever the machine has for that.
using Vector = unsigned char __attribute__((vector_size(16)));

// The number of the first byte of `hits` that isn't 0, of eight.
size_t firstHit(uint64_t hits) {
  const int zeroBits =
      std::endian::native == std::endian::little ? std::countr_zero(hits) : std::countl_zero(hits);
  return static_cast<size_t>(zeroBits) / 8;
}

// The first byte that ends a line, or the size.
size_t findEndByte(std::string_view bytes, size_t from) {
  size_t at = from;
  for (; at + sizeof(Vector) <= bytes.size(); at += sizeof(Vector)) {
    Vector block;
    memcpy(&block, bytes.data() + at, sizeof block);
    const auto hits = (block == static_cast<unsigned char>(Cr)) |
                      (block == static_cast<unsigned char>(Lf)) | (block == 0);
    uint64_t halves[2];
    memcpy(halves, &hits, sizeof halves);
    if ((halves[0] | halves[1]) == 0) continue;
    return halves[0] != 0 ? at + firstHit(halves[0]) : at + 8 + firstHit(halves[1]);
  }
  while (at < bytes.size() && !endsLine(static_cast<unsigned char>(bytes[at]))) ++at;
  return at;
}

template <class Unit>
class Units {
 public:
  static constexpr size_t Width = sizeof(Unit);

  Units(std::string_view bytes, bool swaps) : bytes_(bytes), swaps_(swaps) {}

  // A tail shorter than a unit ends no line.
  uint32_t at(size_t position) const {
    if (position + Width > bytes_.size()) return NoLineEnd;
    Unit unit;
    memcpy(&unit, bytes_.data() + position, Width);
    if constexpr (Width == 2) return swaps_ ? __builtin_bswap16(unit) : unit;
    if constexpr (Width == 4) return swaps_ ? __builtin_bswap32(unit) : unit;
    return unit;
  }

  size_t findEnd(size_t from) const {
    if constexpr (Width == 1) return findEndByte(bytes_, from);
    size_t at = from;
    while (at + Width <= bytes_.size() && !endsLine(this->at(at))) at += Width;
    return at + Width <= bytes_.size() ? at : bytes_.size();
  }

 private:
  std::string_view bytes_;
  bool swaps_;
};

template <class Unit>
LineEnd findIn(std::string_view bytes, size_t from, bool swaps) {
  const Units<Unit> units(bytes, swaps);
  LineEnd result;
  result.at = units.findEnd(std::min(from, bytes.size()));
  unsigned seen = 0;  // a bit for each kind, at its number
  for (;;) {
    const uint32_t unit = units.at(result.at + result.length);
    if (!endsLine(unit) || (seen & 1u << unit) != 0) return result;
    seen |= 1u << unit;
    result.length += sizeof(Unit);
  }
}

}  // namespace

LineEnd findLineEnd(std::string_view bytes, size_t from, TextFormat format) {
  constexpr bool machineIsLittle = std::endian::native == std::endian::little;
  switch (format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      return findIn<uint32_t>(bytes, from, isBigEndian(format) == machineIsLittle);
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      return findIn<uint16_t>(bytes, from, isBigEndian(format) == machineIsLittle);
    default:
      return findIn<uint8_t>(bytes, from, false);
  }
}

LineEndStyle styleOf(std::string_view lineEnd) {
  if (lineEnd.find(Lf) == std::string_view::npos) return LineEndStyle::Unknown;
  return lineEnd.find(Cr) == std::string_view::npos ? LineEndStyle::Lf : LineEndStyle::CrLf;
}

std::string lineEndBytes(LineEndStyle style, TextFormat format) {
  std::string result;
  const std::wstring_view text = style == LineEndStyle::Lf ? L"\n" : L"\r\n";
  encodeText(text, {format}, result);
  return result;
}
