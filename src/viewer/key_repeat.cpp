#include "viewer/key_repeat.h"

#include <algorithm>

#include "options/options.h"
#include "ui/input_loop.h"

namespace {

constexpr int64_t NsOfMs = 1'000'000;

int stepMs() {
  const int delay = GlobalOptions::ScrollDelay;
  return delay > 0 ? delay : KeyRepeat::ShortestStepMs;
}

}  // namespace

void KeyRepeat::start(Key::Code key) {
  key_ = key;
  dueNs_ = clock_.nanoseconds() + FirstPauseMs * NsOfMs;
}

int KeyRepeat::waitMs() const {
  if (!running()) return NoLimit;
  const int64_t left = std::max<int64_t>(dueNs_ - clock_.nanoseconds(), 0);
  return static_cast<int>((left + NsOfMs - 1) / NsOfMs);
}

Key::Code KeyRepeat::takeDue() {
  if (!running() || clock_.nanoseconds() < dueNs_) return Key::NoKey;
  dueNs_ = clock_.nanoseconds() + stepMs() * NsOfMs;
  return key_;
}

Key::Code keyOfPlace(const MouseMessage& press, int columns, int rows) {
  const bool right = press.kind == MouseKind::RightPress;
  if (press.y * 3 < rows) return right ? Key::PageUp : Key::Up;
  if (press.y * 3 >= 2 * rows) return right ? Key::PageDown : Key::Down;
  if (press.x * 3 < columns) return right ? Key::CtrlLeft : Key::Left;
  if (press.x * 3 >= 2 * columns) return right ? Key::CtrlRight : Key::Right;
  return Key::NoKey;
}
