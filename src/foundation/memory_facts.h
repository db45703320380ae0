#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Physical memory in bytes.
struct MemoryFacts {
  uint64_t total = 0;
  uint64_t free = 0;  // what a program could get without others being swapped out
};

std::optional<MemoryFacts> memoryFacts();  // nothing when the system doesn't tell
// The same from the text of the system's table, for tests.
std::optional<MemoryFacts> parseMemoryTable(const std::string& table);
