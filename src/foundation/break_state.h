#pragma once

#include <atomic>

// The Break key. A long operation arms it; the toolkit thread turns Armed into Requested; the
// operation polls. Any thread.
enum class BreakState : int { Idle = 0, Armed = 1, Requested = 2 };

extern std::atomic<BreakState> breakState;

void requestBreak();  // Armed becomes Requested; nothing otherwise
bool breakRequested();

// Arms Break for a scope. Nested scopes leave a request standing: only the outermost one ends it.
class BreakScope {
 public:
  BreakScope();
  ~BreakScope();
  BreakScope(const BreakScope&) = delete;
  BreakScope& operator=(const BreakScope&) = delete;

 private:
  bool outermost_;
};
