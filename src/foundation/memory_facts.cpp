#include "foundation/memory_facts.h"

#include <cstdlib>

#include "foundation/regular_file.h"

namespace {

constexpr char MemoryTable[] = "/proc/meminfo";
constexpr size_t LongestTable = 65536;
constexpr uint64_t BytesInUnit = 1024;  // the table counts in units of this many bytes

std::optional<uint64_t> figure(const std::string& table, const std::string& name) {
  const std::string head = name + ":";
  for (size_t at = 0; at < table.size();) {
    if (table.compare(at, head.size(), head) == 0) {
      const char* digits = table.c_str() + at + head.size();
      char* end = nullptr;
      const uint64_t value = strtoull(digits, &end, 10);
      if (end == digits) return std::nullopt;
      return value * BytesInUnit;
    }
    const size_t lineEnd = table.find('\n', at);
    if (lineEnd == std::string::npos) break;
    at = lineEnd + 1;
  }
  return std::nullopt;
}

}  // namespace

std::optional<MemoryFacts> parseMemoryTable(const std::string& table) {
  const auto total = figure(table, "MemTotal");
  const auto available = figure(table, "MemAvailable");
  if (!total || !available) return std::nullopt;
  return MemoryFacts{*total, *available};
}

std::optional<MemoryFacts> memoryFacts() {
  const auto table = readBeginning(MemoryTable, LongestTable);
  return table ? parseMemoryTable(*table) : std::nullopt;
}
