#include "foundation/threads.h"

#include <cerrno>
#include <ctime>
#include <memory>

namespace {

constexpr int64_t NanosecondsPerSecond = 1000000000;
constexpr int64_t NanosecondsPerMillisecond = 1000000;
constexpr uint32_t MillisecondsPerSecond = 1000;

struct ThreadStart {
  void (*function)(void*);
  void* argument;
};

void* runThread(void* start) {
  const std::unique_ptr<ThreadStart> owned(static_cast<ThreadStart*>(start));
  owned->function(owned->argument);
  return nullptr;
}

// On the monotonic clock: a wall clock that is set back must not freeze a wait.
timespec deadlineAfter(uint32_t ms) {
  timespec deadline;
  clock_gettime(CLOCK_MONOTONIC, &deadline);
  deadline.tv_sec += ms / MillisecondsPerSecond;
  deadline.tv_nsec += (ms % MillisecondsPerSecond) * NanosecondsPerMillisecond;
  if (deadline.tv_nsec >= NanosecondsPerSecond) {
    deadline.tv_nsec -= NanosecondsPerSecond;
    ++deadline.tv_sec;
  }
  return deadline;
}

void initMonotonic(pthread_cond_t& condition) {
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&condition, &attributes);
  pthread_condattr_destroy(&attributes);
}

// Waits until `ready` or the time-out; the mutex is held. 0 or ETIMEDOUT.
template <class Ready>
int waitUntil(pthread_cond_t& condition, pthread_mutex_t& mutex, uint32_t ms, Ready ready) {
  if (ready()) return 0;
  if (ms == 0) return ETIMEDOUT;
  if (ms == WaitForever) {
    while (!ready()) pthread_cond_wait(&condition, &mutex);
    return 0;
  }
  const timespec deadline = deadlineAfter(ms);
  while (!ready()) {
    if (pthread_cond_timedwait(&condition, &mutex, &deadline) == ETIMEDOUT) {
      return ready() ? 0 : ETIMEDOUT;
    }
  }
  return 0;
}

// Holds a plain mutex for a scope.
class PlainLock {
 public:
  explicit PlainLock(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  ~PlainLock() { pthread_mutex_unlock(&mutex_); }
  PlainLock(const PlainLock&) = delete;
  PlainLock& operator=(const PlainLock&) = delete;

 private:
  pthread_mutex_t& mutex_;
};

}  // namespace

ThreadHandle startThread(void (*function)(void*), void* argument) {
  auto start = std::make_unique<ThreadStart>(ThreadStart{function, argument});
  ThreadHandle handle;
  handle.running = pthread_create(&handle.id, nullptr, runThread, start.get()) == 0;
  if (handle.running) static_cast<void>(start.release());  // the thread frees it
  return handle;
}

void joinThread(ThreadHandle& handle) {
  if (!handle.running) return;
  pthread_join(handle.id, nullptr);
  handle = ThreadHandle{};
}

void sleepMs(uint32_t ms) {
  timespec rest;
  rest.tv_sec = ms / MillisecondsPerSecond;
  rest.tv_nsec = (ms % MillisecondsPerSecond) * NanosecondsPerMillisecond;
  while (nanosleep(&rest, &rest) == -1 && errno == EINTR) {
  }
}

double clockSeconds() {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) +
         static_cast<double>(now.tv_nsec) / static_cast<double>(NanosecondsPerSecond);
}

EventSem::EventSem() {
  pthread_mutex_init(&mutex_, nullptr);
  initMonotonic(condition_);
}

EventSem::~EventSem() {
  pthread_cond_destroy(&condition_);
  pthread_mutex_destroy(&mutex_);
}

void EventSem::post() {
  const PlainLock lock(mutex_);
  posted_ = true;
  pthread_cond_broadcast(&condition_);  // it stays posted, so every waiter may go on
}

void EventSem::reset() {
  const PlainLock lock(mutex_);  // what a post stood for is seen by whoever looks afterwards
  posted_ = false;
}

int EventSem::wait(uint32_t ms) {
  if (posted_) return 0;
  if (ms == 0) return ETIMEDOUT;
  const PlainLock lock(mutex_);
  return waitUntil(condition_, mutex_, ms, [this] { return posted_.load(); });
}

MutexSem::MutexSem() {
  pthread_mutex_init(&mutex_, nullptr);
  initMonotonic(condition_);
}

MutexSem::~MutexSem() {
  while (ownedByCaller()) release();
  pthread_cond_destroy(&condition_);
  pthread_mutex_destroy(&mutex_);
}

bool MutexSem::ownedByCaller() const {
  return count_ > 0 && pthread_equal(owner_, pthread_self());
}

int MutexSem::request(uint32_t ms) {
  const PlainLock lock(mutex_);
  const auto free = [this] { return count_ == 0 || pthread_equal(owner_, pthread_self()); };
  if (waitUntil(condition_, mutex_, ms, free) != 0) return ms == 0 ? EBUSY : ETIMEDOUT;
  owner_ = pthread_self();
  ++count_;
  return 0;
}

void MutexSem::release() {
  const PlainLock lock(mutex_);
  if (!ownedByCaller()) return;
  if (--count_ > 0) return;
  owner_ = pthread_t{};
  pthread_cond_signal(&condition_);
}
