#include "support/manual_clock.h"

#include <cerrno>

#include "support/wait_until.h"

namespace {
constexpr int64_t NsPerMs = 1'000'000;
}

int ManualClock::wait(EventSem& event, uint32_t ms) {
  const int64_t due = now_ + static_cast<int64_t>(ms) * NsPerMs;
  ++waiting_;
  bool posted = false;
  for (; !posted && now_ < due; ++looks_) posted = event.wait(1) == 0;
  --waiting_;
  return posted ? 0 : ETIMEDOUT;
}

void ManualClock::moveOn(uint32_t ms) {
  now_ += static_cast<int64_t>(ms) * NsPerMs;
}

void ManualClock::letPass(uint32_t ms) {
  waitForWaiter();
  const uint64_t before = looks_;
  moveOn(ms);
  // The look that is under way may have begun before.
  waitUntil([&] { return waiting_ == 0 || looks_ >= before + 2; });
}

bool ManualClock::waitForWaiter() const {
  return waitUntil([this] { return waiting_ > 0; });
}
