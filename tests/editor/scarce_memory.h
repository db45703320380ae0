#pragma once

#include <cstddef>

// As long as it lives, whoever wants a block of at least `from` and less than `below` bytes gets
// none: std::bad_alloc. Not under the thread sanitizer.
class ScarceMemory {
 public:
  ScarceMemory(size_t from, size_t below);
  ~ScarceMemory();
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;

  static bool hasRefused();  // since the last one began
};
