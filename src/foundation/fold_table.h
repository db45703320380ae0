#pragma once

#include <cstdint>

// The data behind foldChar: simple upper-case mappings as of Unicode 5.1, made by
// cmake/make_fold_table.py.
struct FoldPair {
  uint16_t upper;
  uint16_t lower;
};

inline constexpr int FoldPairCount = 953;
extern const FoldPair foldPairs[FoldPairCount];

// Characters from here on fold to themselves, although the list has pairs for some of them.
inline constexpr unsigned FoldLimit = 0x8000;

struct FoldTable {
  uint16_t entry[FoldLimit];
};
extern const FoldTable foldTable;

constexpr FoldTable buildFoldTable(const FoldPair (&pairs)[FoldPairCount]) {
  FoldTable table{};
  for (unsigned i = 0; i < FoldLimit; ++i) table.entry[i] = static_cast<uint16_t>(i);
  for (const FoldPair& pair : pairs) {
    if (pair.lower < FoldLimit) table.entry[pair.lower] = pair.upper;
  }
  return table;
}
