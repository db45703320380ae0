// The mouse in the viewer: wheel, key bar, and keys that a button held down strikes.

#include "options/options.h"
#include "support/manual_clock.h"
#include "ui/input_loop.h"
#include "viewer/viewer_test.h"

namespace {

Key::Code keyAt(int x, int y, MouseKind kind = MouseKind::LeftPress) {
  MouseMessage press;
  press.kind = kind;
  press.x = x;
  press.y = y;
  return keyOfPlace(press, 80, 25);
}

TEST(KeyOfPlace, TheThirdsOfTheScreenStandForKeys) {
  const struct {
    int x, y;
    Key::Code left, right;
  } rows[] = {{40, 0, Key::Up, Key::PageUp},       {0, 8, Key::Up, Key::PageUp},
              {79, 8, Key::Up, Key::PageUp},       {0, 9, Key::Left, Key::CtrlLeft},
              {26, 16, Key::Left, Key::CtrlLeft},  {27, 9, Key::NoKey, Key::NoKey},
              {53, 16, Key::NoKey, Key::NoKey},    {54, 16, Key::Right, Key::CtrlRight},
              {79, 9, Key::Right, Key::CtrlRight}, {0, 17, Key::Down, Key::PageDown},
              {40, 23, Key::Down, Key::PageDown}};
  for (const auto& row : rows) {
    EXPECT_EQ(keyAt(row.x, row.y), row.left) << row.x << ' ' << row.y;
    EXPECT_EQ(keyAt(row.x, row.y, MouseKind::RightPress), row.right) << row.x << ' ' << row.y;
  }
}

class KeyRepeatTest : public testing::Test {
 protected:
  void SetUp() override { GlobalOptions::setDefaultOptions(); }

  ManualClock clock;
  KeyRepeat repeat{clock};
};

TEST_F(KeyRepeatTest, TheSecondStrikeComesAfterAPauseTheOthersByTheScrollDelay) {
  GlobalOptions::ScrollDelay = 50;
  EXPECT_EQ(repeat.waitMs(), NoLimit);
  repeat.start(Key::Down);
  EXPECT_EQ(repeat.waitMs(), 200);
  clock.moveOn(199);
  EXPECT_EQ(repeat.takeDue(), Key::NoKey);
  EXPECT_EQ(repeat.waitMs(), 1);
  clock.moveOn(1);
  EXPECT_EQ(repeat.takeDue(), Key::Down);
  EXPECT_EQ(repeat.waitMs(), 50);
  clock.moveOn(49);
  EXPECT_EQ(repeat.takeDue(), Key::NoKey);
  clock.moveOn(1);
  EXPECT_EQ(repeat.takeDue(), Key::Down);
  repeat.stop();
  clock.moveOn(1000);
  EXPECT_EQ(repeat.takeDue(), Key::NoKey);
  EXPECT_EQ(repeat.waitMs(), NoLimit);
}

TEST_F(KeyRepeatTest, WithoutAScrollDelayAtMostSixtyStrikesComeInASecond) {
  repeat.start(Key::Down);
  clock.moveOn(200);
  int strikes = 0;
  for (int ms = 0; ms < 1000; ++ms) {
    if (repeat.takeDue() != Key::NoKey) ++strikes;
    clock.moveOn(1);
  }
  EXPECT_GE(strikes, 55);
  EXPECT_LE(strikes, 60);
}

TEST_F(KeyRepeatTest, TimeThatWasMissedIsNotCaughtUp) {
  repeat.start(Key::Down);
  clock.moveOn(5000);
  EXPECT_EQ(repeat.takeDue(), Key::Down);
  EXPECT_EQ(repeat.takeDue(), Key::NoKey);
}

class ViewerMouse : public ViewerTest {
 protected:
  bool topShows(const std::string& text) const {
    const std::string row = rowText(1);
    return row.substr(0, row.find(' ')) == text;
  }
};

TEST_F(ViewerMouse, AWheelMovesThreeLinesWhereverItIsTurned) {
  queueWheel(-1);
  queueWheel(-1);
  queueWheel(1);
  const auto shots = view(numbered(100));
  EXPECT_EQ(shots[1].row(1), "4");
  EXPECT_EQ(shots[2].row(1), "7");
  EXPECT_EQ(shots[3].row(1), "4");
}

TEST_F(ViewerMouse, APressStrikesItsKeyOnceAndStopsWithTheRelease) {
  queueMouse(EventKind::Press, 40, 20);
  queueMouse(EventKind::Release, 40, 20);
  queueMouse(EventKind::Press, 40, 20, 2);
  queueMouse(EventKind::Release, 40, 20, 2);
  queueMouse(EventKind::Press, 40, 3);
  queueMouse(EventKind::Release, 40, 3);
  queueMouse(EventKind::Press, 40, 12);
  const auto shots = view(numbered(100));
  EXPECT_EQ(shots[1].row(1), "2");
  EXPECT_EQ(shots[3].row(1), "24") << "PgDn with the right button";
  EXPECT_EQ(shots[5].row(1), "23");
  EXPECT_EQ(shots[7].row(1), "23") << "nothing in the middle";
}

TEST_F(ViewerMouse, AButtonHeldDownStrikesAgainUntilTheNextEvent) {
  dir.write("file", numbered(1000));
  std::thread user([&] {
    queueMouse(EventKind::Press, 40, 20);
    EXPECT_TRUE(waitUntil([&] { return topShows("6"); }));
    queueMouse(EventKind::Drag, 41, 20);
    queueKey(Key::Home);
    EXPECT_TRUE(waitUntil([&] { return topShows("1"); }));
    queueMouse(EventKind::Press, 40, 20);
    EXPECT_TRUE(waitUntil([&] { return topShows("4"); }));
    queueKey(Key::F10);
  });
  Recorder viewer(dir.wide("file"));
  viewer.view(AnyPosition);
  user.join();
}

TEST_F(ViewerMouse, ADoubleClickIsPartOfThePressThatRepeats) {
  dir.write("file", numbered(1000));
  std::thread user([&] {
    queueMouse(EventKind::Press, 40, 20);
    queueMouse(EventKind::DoubleClick, 40, 20);
    EXPECT_TRUE(waitUntil([&] { return topShows("4"); }));
    queueMouse(EventKind::Release, 40, 20);
    queueKey(Key::F10);
  });
  Recorder viewer(dir.wide("file"));
  viewer.view(AnyPosition);
  user.join();
  EXPECT_EQ(viewer.shots[2].row(1), "2") << "it strikes no key of its own";
}

TEST_F(ViewerMouse, TheKeyBarRunsAKeyWhenTheButtonGoesUpOverIt) {
  queueMouse(EventKind::Press, 26, 24);
  queueMouse(EventKind::Release, 27, 24);
  queueMouse(EventKind::Press, 26, 24);
  queueMouse(EventKind::Release, 2, 24);
  const auto shots = view("text");
  EXPECT_EQ(shots[1].label(4), "4Hex");
  EXPECT_EQ(shots[2].label(4), "4ASCII");
  EXPECT_EQ(shots[4].label(4), "4ASCII") << "let go over another key";
}

TEST_F(ViewerMouse, TheRightButtonOnTheKeyBarIsShift) {
  queueMouse(EventKind::Press, 26, 24, 2);
  queueMouse(EventKind::Release, 26, 24, 2);
  view("text");
  EXPECT_EQ(left, Key::ShiftF4);
}

}  // namespace
