#include "foundation/break_state.h"

std::atomic<BreakState> breakState{BreakState::Idle};

// A signal handler calls this: nothing here may lock or allocate.
void requestBreak() {
  BreakState expected = BreakState::Armed;
  breakState.compare_exchange_strong(expected, BreakState::Requested, std::memory_order_relaxed);
}

bool breakRequested() {
  return breakState.load(std::memory_order_relaxed) == BreakState::Requested;
}

BreakScope::BreakScope() {
  BreakState expected = BreakState::Idle;
  outermost_ =
      breakState.compare_exchange_strong(expected, BreakState::Armed, std::memory_order_relaxed);
}

BreakScope::~BreakScope() {
  if (outermost_) breakState.store(BreakState::Idle, std::memory_order_relaxed);
}
