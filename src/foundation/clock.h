#pragma once

#include <cstdint>

#include "foundation/threads.h"

// The time by which the program paces what it draws. A test puts a clock of its own in the place of
// the system's. Any thread.
class CClock {
 public:
  virtual ~CClock() = default;
  virtual int64_t nanoseconds() const = 0;  // never goes back; counts from anywhere
  // As event.wait(ms), on this clock.
  virtual int wait(EventSem& event, uint32_t ms) = 0;
};

inline constexpr int64_t FrameNs = 16'000'000;  // the screen shows about 60 pictures a second

// The system's monotonic clock.
CClock& systemClock();
