#pragma once

#include <compare>
#include <cstdint>

// A place between two characters of a document: the line, from 0, and how many characters of it
// stand before.
struct TextPlace {
  int64_t line = 0;
  int64_t index = 0;

  auto operator<=>(const TextPlace&) const = default;
};
