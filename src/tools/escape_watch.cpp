#include "tools/escape_watch.h"

#include "console/input.h"

namespace {
constexpr int64_t LookNs = 40'000'000;
}

EscapeWatch::EscapeWatch(CClock& clock) : clock_(clock), lastLook_(clock.nanoseconds()) {}

bool EscapeWatch::pressed() {
  if (pressed_) return true;
  const int64_t now = clock_.nanoseconds();
  if (now - lastLook_ < LookNs) return false;
  lastLook_ = now;
  pressed_ = breakRequested() || escapePressed();
  return pressed_;
}
