#include "editor/text/byte_row.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace {

// Sixteen bytes at once, on whatever the machine has for that.
using Bytes = unsigned char __attribute__((vector_size(16)));
constexpr size_t GroupBytes = 4 * sizeof(Bytes);
constexpr int64_t Always = 1000;  // the weight of every byte together

// How often a byte stands in files, by rough thousandths.
int64_t weightOf(unsigned char byte) {
  static constexpr std::string_view Frequent = " etaoinsrlhdcumfpgybwv0\n1_.k,-=;()*/2:x\"'3ETAS";
  if (byte == 0) return 200;
  if (byte == 0xFF) return 20;
  const size_t place = Frequent.find(static_cast<char>(byte));
  return place == std::string_view::npos ? 2 : 60 - static_cast<int64_t>(place);
}

Bytes load(const char* bytes) {
  Bytes block;
  memcpy(&block, bytes, sizeof block);
  return block;
}

template <class Hits>
bool any(const Hits& hits) {
  uint64_t halves[2];
  memcpy(halves, &hits, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

// Eight bytes in the order of memory, each nothing but ones or zeros: the first one that isn't
// zero, and the rest without it.
size_t firstOf(uint64_t bytes) {
  const int bits = std::endian::native == std::endian::little ? std::countr_zero(bytes)
                                                              : std::countl_zero(bytes);
  return static_cast<size_t>(bits) / 8;
}
void dropFirst(uint64_t& bytes) {
  const size_t first = firstOf(bytes);
  const size_t shift = std::endian::native == std::endian::little ? first : 7 - first;
  bytes &= ~(uint64_t{0xFF} << shift * 8);
}

}  // namespace

// Each place by one compare.
struct ByteRow::MaskTest {
  explicit MaskTest(const std::array<Place, MostPlaces>& from) : places(from) {}

  auto operator()(const char* bytes) const {
    return ((load(bytes + places[0].offset) & places[0].mask) == places[0].values[0]) &
           ((load(bytes + places[1].offset) & places[1].mask) == places[1].values[0]) &
           ((load(bytes + places[2].offset) & places[2].mask) == places[2].values[0]);
  }

  const std::array<Place, MostPlaces> places;
};

// Two places by all of their values.
struct ByteRow::ValueTest {
  explicit ValueTest(const std::array<Place, MostPlaces>& from)
      : first(from[0]), last(from[MostPlaces - 1]) {}

  static auto in(const Bytes& bytes, const Place& place) {
    return (bytes == place.values[0]) | (bytes == place.values[1]) | (bytes == place.values[2]);
  }
  auto operator()(const char* bytes) const {
    return in(load(bytes + first.offset), first) & in(load(bytes + last.offset), last);
  }

  const Place first;
  const Place last;
};

ByteRow::ByteRow(const std::vector<std::string>& values)
    : length_(std::min(values.size(), Longest)) {
  for (size_t i = 0; i < length_; ++i) {
    for (const char value : values[i]) offsets_[static_cast<unsigned char>(value)] |= 1u << i;
  }
  if (!choosePlaces(values, Method::OneCompare) && !choosePlaces(values, Method::Values)) {
    weight_ = Always * Always * Always;
  }
}

// False when the values can't be looked for in that way.
bool ByteRow::makePlace(const std::string& values, Method method, Place& place) {
  unsigned char differing = 0;
  for (const char value : values) {
    differing |= static_cast<unsigned char>(value) ^ static_cast<unsigned char>(values[0]);
    place.weight += weightOf(static_cast<unsigned char>(value));
  }
  const auto value = [&](size_t i) { return static_cast<unsigned char>(values[i]); };
  if (method == Method::OneCompare) {
    if (1u << std::popcount(differing) != values.size()) return false;
    place.mask = static_cast<unsigned char>(~differing);
    place.values[0] = value(0) & place.mask;
    return true;
  }
  if (values.size() > MostValues) return false;
  place.values = {value(0), value(values.size() / 2), value(values.size() - 1)};
  return true;
}

// The rarest bytes. False when there are none for this method.
bool ByteRow::choosePlaces(const std::vector<std::string>& values, Method method) {
  std::vector<Place> places;
  for (size_t i = 0; i < length_; ++i) {
    Place place;
    place.offset = i;
    if (makePlace(values[i], method, place)) places.push_back(place);
  }
  if (places.empty()) return false;
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& a, const Place& b) { return a.weight < b.weight; });
  const size_t most = method == Method::OneCompare ? MostPlaces : 2;
  if (places.size() > most) places.resize(most);
  weight_ = 1;
  for (size_t i = 0; i < MostPlaces; ++i) {
    places_[i] = places[std::min(i, places.size() - 1)];
    weight_ *= i < places.size() ? places_[i].weight : Always;
  }
  std::sort(places_.begin(), places_.end(),
            [](const Place& a, const Place& b) { return a.offset < b.offset; });
  method_ = method;
  return true;
}

size_t ByteRow::find(std::string_view bytes, size_t from) const {
  if (method_ == Method::OneCompare) return findBy(MaskTest(places_), bytes, from);
  if (method_ == Method::Values) return findBy(ValueTest(places_), bytes, from);
  for (size_t at = from; at < bytes.size(); ++at) {
    if (standsAt(bytes, at)) return at;
  }
  return bytes.size();
}

template <class Test>
size_t ByteRow::findBy(const Test& test, std::string_view bytes, size_t from) const {
  const char* const data = bytes.data();
  size_t at = from;
  for (; at + reach() + GroupBytes <= bytes.size(); at += GroupBytes) {
    const decltype(test(data)) hits[4] = {test(data + at), test(data + at + 16),
                                          test(data + at + 32), test(data + at + 48)};
    if (!any(hits[0] | hits[1] | hits[2] | hits[3])) continue;
    uint64_t parts[GroupBytes / sizeof(uint64_t)];
    memcpy(parts, hits, sizeof parts);
    for (size_t part = 0; part < std::size(parts); ++part) {
      for (; parts[part] != 0; dropFirst(parts[part])) {
        const size_t place = at + part * sizeof(uint64_t) + firstOf(parts[part]);
        if (standsAt(bytes, place)) return place;
      }
    }
  }
  for (; at + reach() < bytes.size(); ++at) {
    if (standsAt(bytes, at)) return at;
  }
  return bytes.size();
}

bool ByteRow::standsAt(std::string_view bytes, size_t at) const {
  const size_t known = std::min(bytes.size() - at, length_);
  for (size_t i = 0; i < known; ++i) {
    if ((offsets_[static_cast<unsigned char>(bytes[at + i])] >> i & 1) == 0) return false;
  }
  return true;
}
