#pragma once

#include <pthread.h>
#include <semaphore.h>

#include <atomic>
#include <functional>

#include "foundation/threads.h"

// Signals never kill the program half way through a file: a write beyond the size limit and into a
// closed pipe fail with their errno, and a request to end (terminate, hang-up, interrupt) acts as
// Break and asks for an orderly exit without a question. Call once at start-up, before any thread
// starts. A request that the parent had set to be ignored stays ignored.
void installSignals();

bool endRequested();      // any thread
void requestEnd();        // what the signals do; also safe inside a signal handler
void forgetEndRequest();  // for tests, which go on after the end

// Calls `wake` after each request to end, on a thread of its own, so that a main loop that waits
// without limit can be woken by means that a signal handler must not use. At most one at a time.
class EndWatcher {
 public:
  explicit EndWatcher(std::function<void()> wake);
  ~EndWatcher();
  EndWatcher(const EndWatcher&) = delete;
  EndWatcher& operator=(const EndWatcher&) = delete;

 private:
  static void threadEntry(void* self);

  std::function<void()> wake_;
  std::atomic<bool> stop_{false};
  ThreadHandle thread_;
};
