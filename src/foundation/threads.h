#pragma once

#include <pthread.h>

#include <atomic>
#include <cstdint>

// Time-outs are milliseconds: 0 polls, WaitForever waits without limit.
inline constexpr uint32_t WaitForever = 0xFFFFFFFFu;

struct ThreadHandle {
  pthread_t id{};
  bool running = false;
};

// Starts `function(argument)` on a thread of its own. ThreadHandle.running is false when the system
// gave no thread.
ThreadHandle startThread(void (*function)(void*), void* argument);
void joinThread(ThreadHandle& handle);  // no effect on a handle that isn't running

void sleepMs(uint32_t ms);
double clockSeconds();  // CLOCK_REALTIME

// An event semaphore: stays posted until reset. Deadlines run on the monotonic clock.
class EventSem {
 public:
  EventSem();
  ~EventSem();
  EventSem(const EventSem&) = delete;
  EventSem& operator=(const EventSem&) = delete;

  void post();
  void reset();
  int wait(uint32_t ms);  // 0 when posted, ETIMEDOUT; doesn't clear the semaphore

 private:
  pthread_mutex_t mutex_;
  pthread_cond_t condition_;
  std::atomic<bool> posted_{false};
};

// A recursive mutex with a use count and the owning thread. Its time-outs run on the monotonic
// clock too, which the system's own recursive mutex can't do.
class MutexSem {
 public:
  MutexSem();
  ~MutexSem();
  MutexSem(const MutexSem&) = delete;
  MutexSem& operator=(const MutexSem&) = delete;

  int request(uint32_t ms);  // 0, EBUSY from a poll, ETIMEDOUT
  void release();            // nothing unless the calling thread owns it
  bool isLocked() const { return count_ > 0; }

 private:
  bool ownedByCaller() const;

  pthread_mutex_t mutex_;  // guards the fields below, held for moments only
  pthread_cond_t condition_;
  std::atomic<int> count_{0};
  std::atomic<pthread_t> owner_{};
};

class MutexLock {
 public:
  explicit MutexLock(MutexSem& mutex) : mutex_(mutex) { mutex_.request(WaitForever); }
  ~MutexLock() { mutex_.release(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  MutexSem& mutex_;
};
