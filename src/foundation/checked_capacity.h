#pragma once

#include <climits>
#include <cstddef>
#include <new>

// Buffer sizes of the containers and strings are ints. A growth rule that leaves their range is out
// of memory, never a small buffer.
inline int checkedCapacity(long long wanted) {
  if (wanted > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(wanted);
}

// The length of a text that has to fit into a string with its terminator.
inline int checkedLength(size_t length) {
  if (length >= static_cast<size_t>(INT_MAX)) throw std::bad_alloc();
  return static_cast<int>(length);
}
