#include "console/events.h"

namespace {
// The close button of the window comes as F10 without a key behind it.
bool isCloseButton(const TEvent& event) {
  return event.key == Key::F10 && event.hwCode == 0;
}

bool answersAbortLook(const TEvent& event) {
  return event.kind == EventKind::Key && event.key != Key::ShiftChanged && !isCloseButton(event);
}
}  // namespace

// Whoever takes the event may be the one who deletes the queue next: this thread must be done with
// everything but the lock by then.
void CEventQueue::put(const TEvent& event) {
  MutexLock guard(lock_);
  add(new TEvent(event));
  queued_.store(count(), std::memory_order_release);
  available_.post();
}

std::unique_ptr<TEvent> CEventQueue::get(uint32_t timeoutMs) {
  while (eventCount() == 0) {
    if (timeoutMs == 0) return nullptr;
    awaited_.store(true, std::memory_order_release);
    const int waited = available_.wait(timeoutMs);
    awaited_.store(false, std::memory_order_release);
    if (waited != 0) return nullptr;
    available_.reset();
  }
  MutexLock guard(lock_);
  first();
  std::unique_ptr<TEvent> event(detach());
  queued_.store(count(), std::memory_order_release);
  return event;
}

void CEventQueue::wake() {
  TEvent event;
  event.kind = EventKind::Wake;
  put(event);
}

std::unique_ptr<TEvent> CEventQueue::getKeyOnly() {
  if (eventCount() == 0) return nullptr;
  MutexLock guard(lock_);
  for (int i = 0; i < count(); ++i) {
    if (!answersAbortLook(*at(i))) continue;
    std::unique_ptr<TEvent> taken(detach());
    queued_.store(count(), std::memory_order_release);
    return taken;
  }
  return nullptr;
}
