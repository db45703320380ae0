#include "viewer/unit_scan.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace {

// As many units as sixteen bytes hold, compared at once on whatever the machine has for that.
template <class Unit>
struct VectorOf {
  typedef Unit Type __attribute__((vector_size(16)));
};
template <class Unit>
using Vector = typename VectorOf<Unit>::Type;

template <class Unit>
Unit load(const char* bytes) {
  Unit unit;
  memcpy(&unit, bytes, sizeof unit);
  return unit;
}

template <class Unit>
auto endsAt(const char* bytes, Unit cr, Unit lf) {
  const auto units = load<Vector<Unit>>(bytes);
  return (units == cr) | (units == lf);
}

template <class Mask>
bool any(const Mask& mask) {
  uint64_t halves[2];
  memcpy(halves, &mask, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

template <class Unit>
size_t findEndOf(std::string_view bytes, size_t from, Unit cr, Unit lf) {
  const char* const data = bytes.data();
  size_t at = from;
  while (at + 64 <= bytes.size() &&
         !any(endsAt(data + at, cr, lf) | endsAt(data + at + 16, cr, lf) |
              endsAt(data + at + 32, cr, lf) | endsAt(data + at + 48, cr, lf))) {
    at += 64;
  }
  while (at + 16 <= bytes.size() && !any(endsAt(data + at, cr, lf))) at += 16;
  for (; at + sizeof(Unit) <= bytes.size(); at += sizeof(Unit)) {
    const Unit unit = load<Unit>(data + at);
    if (unit == cr || unit == lf) return at;
  }
  return UnitScan::None;
}

template <class Unit>
size_t findLastEndOf(std::string_view bytes, Unit cr, Unit lf) {
  const char* const data = bytes.data();
  size_t at = bytes.size() - bytes.size() % sizeof(Unit);
  while (at >= 64 && !any(endsAt(data + at - 16, cr, lf) | endsAt(data + at - 32, cr, lf) |
                          endsAt(data + at - 48, cr, lf) | endsAt(data + at - 64, cr, lf))) {
    at -= 64;
  }
  while (at >= 16 && !any(endsAt(data + at - 16, cr, lf))) at -= 16;
  while (at >= sizeof(Unit)) {
    at -= sizeof(Unit);
    const Unit unit = load<Unit>(data + at);
    if (unit == cr || unit == lf) return at;
  }
  return UnitScan::None;
}

// How many units are `first`, with `second` behind them unless that is `Anything`.
enum class Behind { Anything, Second };

template <class Unit, Behind behind>
size_t countOf(std::string_view bytes, Unit first, Unit second) {
  constexpr size_t Seen = behind == Behind::Second ? sizeof(Unit) : 0;  // behind a unit
  const char* const data = bytes.data();
  size_t count = 0;
  size_t at = 0;
  // Each place of a vector counts for itself, in a unit, whose sign must stay.
  constexpr size_t Rounds = 127;
  using Hits = decltype(Vector<Unit>{} == Unit{});
  while (at + 64 + Seen <= bytes.size()) {
    Hits sums[4] = {};
    for (size_t round = 0; round < Rounds && at + 64 + Seen <= bytes.size(); ++round, at += 64) {
      for (size_t part = 0; part < 4; ++part) {
        const char* const units = data + at + part * 16;
        auto hits = load<Vector<Unit>>(units) == first;
        if (behind == Behind::Second) hits &= load<Vector<Unit>>(units + Seen) == second;
        sums[part] -= hits;
      }
    }
    for (const Hits& sum : sums) {
      for (size_t i = 0; i < 16 / sizeof(Unit); ++i) count += static_cast<size_t>(sum[i]);
    }
  }
  for (; at + sizeof(Unit) + Seen <= bytes.size(); at += sizeof(Unit)) {
    if (load<Unit>(data + at) == first && (Seen == 0 || load<Unit>(data + at + Seen) == second)) {
      ++count;
    }
  }
  return count;
}

uint32_t asLoaded(uint32_t character, TextFormat format) {
  const bool swapped = isBigEndian(format) != (std::endian::native == std::endian::big);
  const int width = unitBytes(format);
  if (width == 1 || !swapped) return character;
  return width == 2 ? __builtin_bswap16(static_cast<uint16_t>(character))
                    : __builtin_bswap32(character);
}

// Calls `work` with a value of the unit's type.
template <class Work>
auto withUnit(size_t width, Work work) {
  switch (width) {
    case 4:
      return work(uint32_t{});
    case 2:
      return work(uint16_t{});
    default:
      return work(uint8_t{});
  }
}

}  // namespace

UnitScan::UnitScan(TextFormat format)
    : width_(static_cast<size_t>(unitBytes(format))),
      cr_(asLoaded('\r', format)),
      lf_(asLoaded('\n', format)) {}

EndKind UnitScan::kindAt(std::string_view bytes, size_t position) const {
  if (position + width_ > bytes.size()) return EndKind::None;
  const uint32_t unit = withUnit(
      width_, [&](auto type) -> uint32_t { return load<decltype(type)>(bytes.data() + position); });
  return unit == cr_ ? EndKind::Cr : unit == lf_ ? EndKind::Lf : EndKind::None;
}

size_t UnitScan::findEnd(std::string_view bytes, size_t from) const {
  return withUnit(width_, [&](auto type) {
    using Unit = decltype(type);
    return findEndOf<Unit>(bytes, from, static_cast<Unit>(cr_), static_cast<Unit>(lf_));
  });
}

size_t UnitScan::findLastEnd(std::string_view bytes) const {
  return withUnit(width_, [&](auto type) {
    using Unit = decltype(type);
    return findLastEndOf<Unit>(bytes, static_cast<Unit>(cr_), static_cast<Unit>(lf_));
  });
}

size_t UnitScan::countEnds(std::string_view bytes, EndKind kind) const {
  return withUnit(width_, [&](auto type) {
    using Unit = decltype(type);
    const auto wanted = static_cast<Unit>(kind == EndKind::Cr ? cr_ : lf_);
    return countOf<Unit, Behind::Anything>(bytes, wanted, wanted);
  });
}

size_t UnitScan::countCrLf(std::string_view bytes) const {
  return withUnit(width_, [&](auto type) {
    using Unit = decltype(type);
    return countOf<Unit, Behind::Second>(bytes, static_cast<Unit>(cr_), static_cast<Unit>(lf_));
  });
}
