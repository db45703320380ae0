#include <gtest/gtest.h>

#include <chrono>

#include "console/events.h"
#include "support/wait_until.h"

namespace {
TEvent keyEvent(Key::Code key) {
  TEvent event;
  event.key = key;
  return event;
}

TEST(EventQueue, GivesTheEventsInTheOrderTheyCame) {
  CEventQueue queue;
  queue.put(keyEvent('a'));
  queue.put(keyEvent('b'));
  EXPECT_EQ(queue.eventCount(), 2);
  EXPECT_EQ(queue.get(0)->key, 'a');
  EXPECT_EQ(queue.get(WaitForever)->key, 'b');
  EXPECT_EQ(queue.get(0), nullptr);
  EXPECT_EQ(queue.eventCount(), 0);
}

TEST(EventQueue, GivesNothingWhenTheTimeIsOver) {
  using Clock = std::chrono::steady_clock;
  CEventQueue queue;
  const auto start = Clock::now();
  EXPECT_EQ(queue.get(30), nullptr);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(30));
}

void putOne(void* queue) {
  static_cast<CEventQueue*>(queue)->put(keyEvent('z'));
}

TEST(EventQueue, WakesAReaderThatWaitsForEver) {
  CEventQueue queue;
  ThreadHandle writer = startThread(putOne, &queue);
  EXPECT_EQ(queue.get(WaitForever)->key, 'z');
  joinThread(writer);
}

void putOneWhenAwaited(void* data) {
  auto& queue = *static_cast<CEventQueue*>(data);
  if (waitUntil([&] { return queue.isAwaited(); })) queue.put(keyEvent('z'));
}

TEST(EventQueue, IsAwaitedWhileAReaderWaitsAndNothingIsThere) {
  CEventQueue queue;
  EXPECT_FALSE(queue.isAwaited());
  ThreadHandle writer = startThread(putOneWhenAwaited, &queue);
  const auto event = queue.get(20000);
  joinThread(writer);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->key, 'z');
  EXPECT_FALSE(queue.isAwaited());
}

constexpr int Many = 2000;

void putMany(void* queue) {
  for (int i = 0; i < Many; ++i) static_cast<CEventQueue*>(queue)->put(keyEvent(Key::Code(i)));
}

TEST(EventQueue, LosesNothingBetweenTwoThreads) {
  CEventQueue queue;
  ThreadHandle writer = startThread(putMany, &queue);
  for (int i = 0; i < Many; ++i) ASSERT_EQ(queue.get(WaitForever)->key, Key::Code(i));
  joinThread(writer);
  EXPECT_EQ(queue.eventCount(), 0);
}

TEST(EventQueue, AbortLookPassesOverTheMouseAndShiftChanges) {
  CEventQueue queue;
  TEvent mouse;
  mouse.kind = EventKind::Release;
  mouse.button = 1;
  queue.put(mouse);
  queue.put(keyEvent(Key::ShiftChanged));
  queue.put(keyEvent('x'));
  queue.put(keyEvent('y'));
  EXPECT_EQ(queue.getKeyOnly()->key, 'x');
  EXPECT_EQ(queue.eventCount(), 3);
  EXPECT_EQ(queue.getKeyOnly()->key, 'y');
  EXPECT_EQ(queue.getKeyOnly(), nullptr);
  EXPECT_EQ(queue.get(0)->kind, EventKind::Release);
  EXPECT_EQ(queue.get(0)->key, Key::ShiftChanged);
}

TEST(EventQueue, AbortLookLeavesTheCloseButtonForLater) {
  CEventQueue queue;
  queue.put(keyEvent(Key::F10));
  TEvent pressed = keyEvent(Key::F10);
  pressed.hwCode = 76;
  queue.put(pressed);
  EXPECT_EQ(queue.getKeyOnly()->hwCode, 76) << "a pressed F10 is a key like any other";
  EXPECT_EQ(queue.getKeyOnly(), nullptr);
  EXPECT_EQ(queue.get(0)->key, Key::F10);
}
}  // namespace
