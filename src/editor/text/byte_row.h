#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// A short row of bytes each of which may be one of several, found in much data as fast as memory
// gives it: those of its bytes that are seldom there together are looked for sixteen at a time.
class ByteRow {
 public:
  static constexpr size_t Longest = 32;

  ByteRow() = default;
  // For each byte what it may be, at least one value; Longest of them at most.
  explicit ByteRow(const std::vector<std::string>& values);

  // How often the bytes that are looked for stand in files, to compare rows: less is better.
  int64_t weight() const { return weight_; }
  // The last byte that is looked for lies at this offset.
  size_t reach() const { return places_[MostPlaces - 1].offset; }

  // The first place at or behind `from` where the row stands, or the size of `bytes`. Of a row that
  // goes on behind `bytes` only what lies inside counts, and one that doesn't reach its reach()
  // isn't found.
  size_t find(std::string_view bytes, size_t from) const;
  // Whether the row may stand at `at`, as far as `bytes` go.
  bool standsAt(std::string_view bytes, size_t at) const;

 private:
  static constexpr size_t MostPlaces = 3;
  static constexpr size_t MostValues = 3;

  // A byte of the row that is looked for. With OneCompare its values are all bytes that are
  // `values[0]` but for the bits outside of `mask`.
  struct Place {
    size_t offset = 0;
    unsigned char mask = 0xFF;
    std::array<unsigned char, MostValues> values{};
    int64_t weight = 0;
  };
  enum class Method { OneCompare, Values, Table };
  struct MaskTest;
  struct ValueTest;

  static bool makePlace(const std::string& values, Method method, Place& place);
  bool choosePlaces(const std::vector<std::string>& values, Method method);
  template <class Test>
  size_t findBy(const Test& test, std::string_view bytes, size_t from) const;

  Method method_ = Method::Table;
  std::array<Place, MostPlaces>
      places_;  // by their offsets; the same one again where there are few
  int64_t weight_ = 0;
  size_t length_ = 0;
  std::array<uint32_t, 256> offsets_{};  // at which each byte may stand: a bit for each
};
