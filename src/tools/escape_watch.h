#pragma once

#include <cstdint>

#include "foundation/break_state.h"
#include "foundation/clock.h"

// Looks for Esc and Break while something long runs: as often as it is asked, but a look itself, at
// which keys are lost, only every few milliseconds, the first after as long. Application thread.
class EscapeWatch {
 public:
  explicit EscapeWatch(CClock& clock = systemClock());
  bool pressed();  // from the first one on

 private:
  CClock& clock_;
  BreakScope armed_;
  int64_t lastLook_;
  bool pressed_ = false;
};
