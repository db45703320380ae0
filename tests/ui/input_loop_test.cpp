#include "ui/input_loop.h"

#include <thread>

#include "support/end_request.h"
#include "support/manual_clock.h"
#include "ui/ui_test.h"

namespace {

class InputLoopTest : public UiTest {};

using Kind = Input::Kind;

TEST_F(InputLoopTest, AKeyComesWithItsModifiers) {
  queueKey(Key::F5, ShiftState::Alt);
  const Input input = nextInput(0);
  EXPECT_EQ(input.kind, Kind::Key);
  EXPECT_EQ(input.key, Key::F5);
  EXPECT_EQ(input.mouse.state, ShiftState::Alt);
}

TEST_F(InputLoopTest, TheMouseComesWithItsPlace) {
  queueMouse(EventKind::Press, 12, 7, 2);
  const Input input = nextInput(0);
  EXPECT_EQ(input.kind, Kind::Mouse);
  EXPECT_EQ(input.mouse.kind, MouseKind::RightPress);
  EXPECT_EQ(input.mouse.x, 12);
  EXPECT_EQ(input.mouse.y, 7);
}

TEST_F(InputLoopTest, AShiftChangeAndTheEndOfTheTimeAreNoKeys) {
  queueKey(Key::ShiftChanged, ShiftState::Ctrl);
  EXPECT_EQ(nextInput(0).kind, Kind::Shift);
  EXPECT_EQ(nextInput(0).kind, Kind::TimeOut);
}

TEST_F(InputLoopTest, AWaitWithoutLimitCanBeBrokenOff) {
  std::thread other([] { console->events().wake(); });
  EXPECT_EQ(nextInput().kind, Kind::TimeOut);
  other.join();
}

TEST_F(InputLoopTest, TheEndComesAheadOfKeysAndComesAgain) {
  queueKey('x');
  const EndRequest end;
  EXPECT_EQ(nextInput().kind, Kind::End);
  EXPECT_EQ(nextInput().kind, Kind::End);
  EXPECT_EQ(nextInput(0).kind, Kind::End);
}

TEST_F(InputLoopTest, TheEndBreaksOffAWait) {
  EndWatcher watcher([] { console->events().wake(); });
  std::thread other([] { requestEnd(); });
  EXPECT_EQ(nextInput().kind, Kind::End);
  other.join();
  forgetEndRequest();
}

TEST_F(InputLoopTest, ThePictureIsCompleteBeforeTheWait) {
  static ManualClock clock;
  const FrameClock frames(clock);
  console->writeWide(0, 3, L"painted at once", 7);
  console->writeWide(0, 4, L"held back", 7);
  const unsigned long paints = console->paintCount();
  EXPECT_EQ(nextInput(1).kind, Kind::TimeOut);
  EXPECT_EQ(console->paintCount(), paints + 1);
}

}  // namespace
