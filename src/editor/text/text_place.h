#pragma once

#include <cstdint>

// A place between two characters of a document: the line, from 0, and how many characters of it
// stand before.
struct TextPlace {
  int64_t line = 0;
  int64_t index = 0;

  friend bool operator==(const TextPlace&, const TextPlace&) = default;
  friend bool operator<(const TextPlace& a, const TextPlace& b) {
    return a.line != b.line ? a.line < b.line : a.index < b.index;
  }
  friend bool operator>(const TextPlace& a, const TextPlace& b) { return b < a; }
  friend bool operator<=(const TextPlace& a, const TextPlace& b) { return !(b < a); }
  friend bool operator>=(const TextPlace& a, const TextPlace& b) { return !(a < b); }
};
