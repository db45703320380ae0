#pragma once

#include <cstdint>
#include <memory>

#include "console/key_codes.h"
#include "foundation/object_store.h"
#include "foundation/threads.h"

enum class EventKind : int {
  Key = 0,
  Press = 1,
  Release = 2,
  Drag = 3,
  DoubleClick = 4,
  Wheel = 5,
  Wake = 6  // no input: breaks off a wait
};

// One input event; fields that a kind doesn't use are 0.
struct TEvent {
  EventKind kind = EventKind::Key;
  Key::Code key;
  int button = 0;  // 1, 2 (right) or 3 (other)
  int wheel = 0;   // +1 up, -1 down
  int state = 0;   // ShiftState bits
  int hwCode = 0;  // hardware key code; 0 for typed text and the close button
  int x = 0;       // cells
  int y = 0;
};

enum class MouseKind : int {
  LeftPress = 0,
  RightPress = 1,
  LeftDrag = 2,
  RightDrag = 3,
  LeftDoubleClick = 4,
  LeftRelease = 5,
  RightRelease = 6,
  Wheel = 7
};

struct MouseMessage {
  MouseKind kind = MouseKind::LeftPress;
  int x = 0;
  int y = 0;
  int16_t state = 0;
  int16_t wheel = 0;
};

// Filled by the toolkit thread, read by the application thread.
class CEventQueue : public TObjectStore<TEvent> {
 public:
  ~CEventQueue() override { clear(); }
  void put(const TEvent& event);
  std::unique_ptr<TEvent> get(uint32_t timeoutMs);  // null on time-out
  void wake();                                      // breaks off a wait; any thread
  // Takes the first key away, as the answer to a look for an abort: shift changes, mouse events and
  // the window's close button stay in the queue's order and aren't looked at. Null without a key.
  std::unique_ptr<TEvent> getKeyOnly();
  int eventCount() const { return queued_.load(std::memory_order_acquire); }
  // The reader waits for an event and none is there: what came before has been dealt with. For
  // tests that press a key only then; any thread.
  bool isAwaited() const { return awaited_.load(std::memory_order_acquire) && eventCount() == 0; }

 private:
  MutexSem lock_;
  EventSem available_;
  std::atomic<int> queued_{0};
  std::atomic<bool> awaited_{false};
};
