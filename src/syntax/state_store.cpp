#include "syntax/state_store.h"

#include <memory>

CSyntaxStateStore::CSyntaxStateStore() {
  reset();
}

void CSyntaxStateStore::reset() {
  clear();
  insert(new TPositionSyntaxState{0, CContextStack()});
}

SyntaxStart CSyntaxStateStore::startFor(int64_t position) {
  const TPositionSyntaxState* record = findAtOrBefore(&position);
  if (position - record->position > LongestWalk) {
    return {position - GuessedWalk, CContextStack(), SyntaxStart::States::Guessed};
  }
  return {record->position, record->stack, SyntaxStart::States::Certain};
}

void CSyntaxStateStore::remember(int64_t position, const CContextStack& stack) {
  long index = 0;
  if (search(&position, index) == 0) return;
  if (index > 0 && position - peek(index - 1)->position < Distance) return;
  if (index < count() && peek(index)->position - position < Distance) return;
  std::unique_ptr<TPositionSyntaxState> record(new TPositionSyntaxState{position, stack});
  if (insert(record.get()) == 0) (void)record.release();
}
