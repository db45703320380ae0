#pragma once

#include <cstdint>

#include "foundation/break_state.h"
#include "foundation/clock.h"

// Looks for Esc and Break while something long runs: as often as it is asked, but really only every
// few milliseconds. A look for Esc loses keys, so what the user didn't ask for waits with it.
// Application thread.
class EscapeWatch {
 public:
  static constexpr int AtOnce = 0;
  explicit EscapeWatch(CClock& clock = systemClock(), int msBeforeEscape = AtOnce);
  bool pressed();  // from the first one on

 private:
  CClock& clock_;
  BreakScope armed_;
  int64_t lastLook_;
  int64_t escapeFrom_;
  bool pressed_ = false;
};
