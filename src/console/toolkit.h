#pragma once

#include "console/console.h"

// The toolkit's lock, taken by whoever calls the toolkit off its own thread. Not recursive: the
// handlers on the toolkit thread run with it held. Letting go sends what is waiting to the X
// server.
class ToolkitLock {
 public:
  ToolkitLock();
  ~ToolkitLock();
  ToolkitLock(const ToolkitLock&) = delete;
  ToolkitLock& operator=(const ToolkitLock&) = delete;

  // False once the display has gone: no call of the toolkit may follow.
  bool usable() const { return taken_ && !displayLost(); }

 private:
  bool taken_;  // false when the display was lost before the lock was free
};

// Who is told, once, by the thread that notices that the display has gone; null for nobody. When
// this returns, the one before is no longer being told and may be deleted. `notify` may not call
// this.
void whenDisplayLost(void (*notify)(void* argument), void* argument);

// Another program destroyed the window: from now on all is as when the display is lost, but the
// message of the process. Any thread.
void windowDestroyed();

// The application thread has nothing left to bring to an end: the process may stop. Doesn't return.
[[noreturn]] void restForEver();
