#include "foundation/threads.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>

namespace {

constexpr uint32_t ShortTime = 20;

int64_t monotonicNanoseconds() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * int64_t{1000000000} + now.tv_nsec;
}

// Runs a function on another thread and waits for its end.
template <class Function>
void onOtherThread(Function function) {
  ThreadHandle handle =
      startThread([](void* argument) { (*static_cast<Function*>(argument))(); }, &function);
  ASSERT_TRUE(handle.running);
  joinThread(handle);
}

TEST(Thread, RunsItsFunctionWithItsArgument) {
  int value = 0;
  ThreadHandle handle =
      startThread([](void* argument) { *static_cast<int*>(argument) = 7; }, &value);
  joinThread(handle);
  EXPECT_EQ(value, 7);
  EXPECT_FALSE(handle.running);
  joinThread(handle);  // a second time has no effect
}

TEST(EventSem, WaitingOnAPostedOneReturnsAtOnceAndDoesntClearIt) {
  EventSem event;
  event.post();
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(WaitForever), 0);
  event.reset();
  EXPECT_EQ(event.wait(0), ETIMEDOUT);
}

TEST(EventSem, ATimeLimitEndsTheWaitAndNotEarlier) {
  EventSem event;
  const int64_t begin = monotonicNanoseconds();
  EXPECT_EQ(event.wait(ShortTime), ETIMEDOUT);
  EXPECT_GE(monotonicNanoseconds() - begin, ShortTime * int64_t{1000000});
}

TEST(EventSem, APostFromAnotherThreadEndsTheWait) {
  EventSem asked;
  EventSem answered;
  struct Both {
    EventSem* asked;
    EventSem* answered;
  } both{&asked, &answered};
  ThreadHandle handle = startThread(
      [](void* argument) {
        auto* events = static_cast<Both*>(argument);
        events->asked->wait(WaitForever);
        events->answered->post();
      },
      &both);
  asked.post();
  EXPECT_EQ(answered.wait(WaitForever), 0);
  joinThread(handle);
}

TEST(MutexSem, TheOwnerMayTakeItAgainAndReleasesAsOften) {
  MutexSem mutex;
  EXPECT_FALSE(mutex.isLocked());
  EXPECT_EQ(mutex.request(0), 0);
  EXPECT_EQ(mutex.request(WaitForever), 0);
  EXPECT_EQ(mutex.request(ShortTime), 0);
  mutex.release();
  mutex.release();
  EXPECT_TRUE(mutex.isLocked());
  onOtherThread([&] { EXPECT_NE(mutex.request(0), 0); });
  mutex.release();
  EXPECT_FALSE(mutex.isLocked());
  onOtherThread([&] {
    EXPECT_EQ(mutex.request(0), 0);
    mutex.release();
  });
}

TEST(MutexSem, AThreadThatDoesntOwnItReleasesNothing) {
  MutexSem mutex;
  mutex.request(WaitForever);
  onOtherThread([&] { mutex.release(); });
  EXPECT_TRUE(mutex.isLocked());
  onOtherThread([&] { EXPECT_EQ(mutex.request(0), EBUSY); });
  mutex.release();
  mutex.release();  // not owned any more
  EXPECT_FALSE(mutex.isLocked());
}

TEST(MutexSem, ATimeLimitEndsTheRequest) {
  MutexSem mutex;
  mutex.request(WaitForever);
  onOtherThread([&] { EXPECT_EQ(mutex.request(ShortTime), ETIMEDOUT); });
  mutex.release();
}

TEST(MutexSem, KeepsTwoThreadsApart) {
  MutexSem mutex;
  int sum = 0;
  struct Work {
    MutexSem* mutex;
    int* sum;
  } work{&mutex, &sum};
  const auto add = [](void* argument) {
    auto* shared = static_cast<Work*>(argument);
    for (int i = 0; i < 10000; ++i) {
      const MutexLock lock(*shared->mutex);
      ++*shared->sum;
    }
  };
  ThreadHandle first = startThread(add, &work);
  ThreadHandle second = startThread(add, &work);
  joinThread(first);
  joinThread(second);
  EXPECT_EQ(sum, 20000);
}

TEST(Time, SleepingTakesAtLeastTheTimeAsked) {
  const int64_t begin = monotonicNanoseconds();
  sleepMs(ShortTime);
  EXPECT_GE(monotonicNanoseconds() - begin, ShortTime * int64_t{1000000});
}

TEST(Time, TheClockCountsSecondsOfTheSystem) {
  // time() may lag behind the exact clock, and be a second off at the turn of a second.
  timespec before, after;
  clock_gettime(CLOCK_REALTIME, &before);
  const double now = clockSeconds();
  clock_gettime(CLOCK_REALTIME, &after);
  EXPECT_GE(now, static_cast<double>(before.tv_sec));
  EXPECT_LE(now, static_cast<double>(after.tv_sec) + 1);
}

}  // namespace
