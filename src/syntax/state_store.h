#pragma once

#include <cstdint>

#include "foundation/sorted_collection.h"
#include "syntax/context_stack.h"

struct TPositionSyntaxState {
  int64_t position;  // of a line start, in bytes
  CContextStack stack;
};

// Where a walk through the lines of a file begins, to know what is open at a later place.
struct SyntaxStart {
  enum class States {
    Certain,  // what the walk finds may be remembered
    Guessed   // it begins in the middle of the file, as if nothing were open there
  };

  int64_t position;  // a line start; when guessed, the walk begins at the first one from there on
  CContextStack stack;
  States states;
};

// What is open at some line starts of a file that is too long to be read from its beginning each
// time. Its owner resets it whenever other bytes or characters may stand there.
class CSyntaxStateStore : public TSortedCollection<TPositionSyntaxState, int64_t> {
 public:
  static constexpr int64_t Distance = 4096;                // bytes between two records, at least
  static constexpr int64_t LongestWalk = 4 * 1024 * 1024;  // bytes
  static constexpr int64_t GuessedWalk = 64 * 1024;        // bytes

  // Knows that nothing is open at position 0.
  CSyntaxStateStore();
  void reset();

  // From where to walk to `position` (0 or more): the nearest record that isn't behind it, unless
  // that is too far.
  SyntaxStart startFor(int64_t position);
  // What is open at a line start. Left out close to a record that is there already.
  void remember(int64_t position, const CContextStack& stack);

 protected:
  int64_t* keyOf(TPositionSyntaxState* item) override { return &item->position; }
  int compareKeys(int64_t* a, int64_t* b) override { return *a < *b ? -1 : *a > *b ? 1 : 0; }
};
