#pragma once

#include <cstdint>

#include "console/events.h"
#include "foundation/clock.h"

// A key that a mouse button held down strikes again and again: after a pause first, then in the
// rhythm of the ScrollDelay option.
class KeyRepeat {
 public:
  static constexpr int FirstPauseMs = 200;
  static constexpr int ShortestStepMs = 17;  // no use in going faster than the screen is painted

  explicit KeyRepeat(CClock& clock = systemClock()) : clock_(clock) {}

  void start(Key::Code key);  // whose first strike the caller takes at once; NoKey: as stop
  void stop() { key_ = Key::NoKey; }
  bool running() const { return key_ != Key::NoKey; }
  int waitMs() const;   // until the next strike; NoLimit while nothing repeats
  Key::Code takeDue();  // the key once its time has come, else NoKey

 private:
  CClock& clock_;
  Key::Code key_;
  int64_t dueNs_ = 0;
};

// The key that a press on a screen of this size stands for: up and down in its top and bottom
// third, left and right at the sides between them, pages and wide steps with the right button.
// NoKey in the middle.
Key::Code keyOfPlace(const MouseMessage& press, int columns, int rows);
