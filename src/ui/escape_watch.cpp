#include "ui/escape_watch.h"

#include "console/input.h"

namespace {
constexpr int64_t LookNs = 50'000'000;
constexpr int64_t NsOfMs = 1'000'000;
}  // namespace

EscapeWatch::EscapeWatch(CClock& clock, int msBeforeEscape)
    : clock_(clock),
      lastLook_(clock.nanoseconds()),
      escapeFrom_(lastLook_ + msBeforeEscape * NsOfMs) {}

bool EscapeWatch::pressed() {
  if (pressed_) return true;
  const int64_t now = clock_.nanoseconds();
  if (now - lastLook_ < LookNs) return false;
  lastLook_ = now;
  pressed_ = breakRequested() || (now >= escapeFrom_ && escapePressed());
  return pressed_;
}
