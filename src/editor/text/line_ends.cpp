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

// The first byte that ends a line, or the size.
size_t findEndByte(std::string_view bytes, size_t from) {
  size_t at = from;
  while (at + sizeof(Vector) <= bytes.size()) {
    Vector block;
    memcpy(&block, bytes.data() + at, sizeof block);
    const auto hits = (block == static_cast<unsigned char>(Cr)) |
                      (block == static_cast<unsigned char>(Lf)) | (block == 0);
    uint64_t halves[2];
    memcpy(halves, &hits, sizeof halves);
    if ((halves[0] | halves[1]) != 0) break;
    at += sizeof block;
  }
  while (at < bytes.size() && !endsLine(static_cast<unsigned char>(bytes[at]))) ++at;
  return at;
}

class Units {
 public:
  Units(std::string_view bytes, TextFormat format)
      : bytes_(bytes),
        width_(static_cast<size_t>(unitBytes(format))),
        swaps_(width_ > 1 && isBigEndian(format) != (std::endian::native == std::endian::big)) {}

  size_t width() const { return width_; }
  // A tail shorter than a unit ends no line.
  uint32_t at(size_t position) const {
    if (position + width_ > bytes_.size()) return NoLineEnd;
    if (width_ == 1) return static_cast<unsigned char>(bytes_[position]);
    if (width_ == 2) {
      uint16_t unit;
      memcpy(&unit, bytes_.data() + position, sizeof unit);
      return swaps_ ? __builtin_bswap16(unit) : unit;
    }
    uint32_t unit;
    memcpy(&unit, bytes_.data() + position, sizeof unit);
    return swaps_ ? __builtin_bswap32(unit) : unit;
  }

 private:
  std::string_view bytes_;
  size_t width_;
  bool swaps_;
};

size_t findEndUnit(std::string_view bytes, size_t from, const Units& units) {
  if (units.width() == 1) return findEndByte(bytes, from);
  size_t at = from;
  while (at + units.width() <= bytes.size() && !endsLine(units.at(at))) at += units.width();
  return at + units.width() <= bytes.size() ? at : bytes.size();
}

}  // namespace

LineEnd findLineEnd(std::string_view bytes, size_t from, TextFormat format) {
  const Units units(bytes, format);
  LineEnd result;
  result.at = findEndUnit(bytes, std::min(from, bytes.size()), units);
  unsigned seen = 0;  // a bit for each kind, at its number
  for (;;) {
    const uint32_t unit = units.at(result.at + result.length);
    if (!endsLine(unit) || (seen & 1u << unit) != 0) return result;
    seen |= 1u << unit;
    result.length += units.width();
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
