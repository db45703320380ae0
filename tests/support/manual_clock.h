#pragma once

#include <atomic>

#include "foundation/clock.h"

// A clock that stands still until the test moves it. Whoever waits on it waits by its time.
class ManualClock : public CClock {
 public:
  int64_t nanoseconds() const override { return now_; }
  int wait(EventSem& event, uint32_t ms) override;

  void moveOn(uint32_t ms);
  // The same for a thread that waits on this clock: returns when it has looked at the new time, and
  // went on if its time was over.
  void letPass(uint32_t ms);
  // Returns when somebody waits on this clock; what he did before is done. False when nobody comes.
  bool waitForWaiter() const;

 private:
  std::atomic<int64_t> now_{0};
  std::atomic<int> waiting_{0};
  std::atomic<uint64_t> looks_{0};
};
