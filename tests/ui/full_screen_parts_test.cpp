// What full screens share: the mouse on the key bar, and leaving everything as it was.

#include "ui/key_bar_press.h"
#include "ui/screen_state_guard.h"
#include "ui/ui_test.h"

namespace {

class FullScreenParts : public UiTest {
 protected:
  static MouseMessage mouse(MouseKind kind, int x, int y, int state = 0) {
    MouseMessage message;
    message.kind = kind;
    message.x = x;
    message.y = y;
    message.state = static_cast<int16_t>(state);
    return message;
  }
  // Pressed at `from` and let go at `to` of the last row.
  static Key::Code pressed(int from, int to, MouseKind press = MouseKind::LeftPress,
                           MouseKind release = MouseKind::LeftRelease, int state = 0) {
    KeyBarPress bar;
    Key::Code key;
    const int row = console->rows() - 1;
    EXPECT_TRUE(bar.take(mouse(press, from, row, state), key));
    EXPECT_EQ(key, Key::NoKey) << "nothing happens before the button goes up";
    EXPECT_TRUE(bar.take(mouse(release, to, row, state), key));
    return key;
  }
};

TEST_F(FullScreenParts, AKeyOfTheKeyBarIsATenthOfTheWidthOneCellEarly) {
  const struct {
    int x;
    Key::Code key;
  } rows[] = {{0, Key::F1},  {6, Key::F1},  {7, Key::F2},   {14, Key::F2},
              {15, Key::F3}, {70, Key::F9}, {71, Key::F10}, {79, Key::F10}};
  for (const auto& row : rows) EXPECT_EQ(keyBarKeyOf(row.x, 0), row.key) << row.x;
  console->setGeometry(132, 50, Estring(), 0);
  EXPECT_EQ(keyBarKeyOf(11, 0), Key::F1);
  EXPECT_EQ(keyBarKeyOf(12, 0), Key::F2);
  EXPECT_EQ(keyBarKeyOf(115, 0), Key::F9);
  for (int x : {116, 129, 130, 131}) EXPECT_EQ(keyBarKeyOf(x, 0), Key::F10) << x;
}

TEST_F(FullScreenParts, AKeyCountsWhenTheButtonGoesUpOverTheSameKey) {
  EXPECT_EQ(pressed(50, 52), Key::F7);
  EXPECT_EQ(pressed(50, 20), Key::NoKey);
  KeyBarPress bar;
  Key::Code key;
  EXPECT_TRUE(bar.take(mouse(MouseKind::LeftRelease, 50, 24), key));
  EXPECT_EQ(key, Key::NoKey) << "a release alone";
  bar.take(mouse(MouseKind::LeftPress, 50, 24), key);
  EXPECT_FALSE(bar.take(mouse(MouseKind::LeftRelease, 50, 23), key)) << "let go elsewhere";
  EXPECT_TRUE(bar.take(mouse(MouseKind::LeftRelease, 50, 24), key));
  EXPECT_EQ(key, Key::NoKey);
}

TEST_F(FullScreenParts, TheRightButtonAndAltStandForShift) {
  EXPECT_EQ(pressed(50, 50, MouseKind::RightPress, MouseKind::RightRelease), Key::ShiftF7);
  EXPECT_EQ(pressed(50, 50, MouseKind::LeftPress, MouseKind::LeftRelease, ShiftState::Alt),
            Key::ShiftF7);
  EXPECT_EQ(pressed(50, 50, MouseKind::LeftPress, MouseKind::LeftRelease, ShiftState::Ctrl),
            Key::CtrlF7);
}

TEST_F(FullScreenParts, EventsElsewhereAreNotMeantForTheKeyBar) {
  KeyBarPress bar;
  Key::Code key;
  EXPECT_FALSE(bar.take(mouse(MouseKind::LeftPress, 50, 23), key));
  EXPECT_FALSE(bar.take(mouse(MouseKind::Wheel, 50, 24), key)) << "a wheel has no place";
  EXPECT_TRUE(bar.take(mouse(MouseKind::LeftDrag, 50, 24), key));
  EXPECT_EQ(key, Key::NoKey);
}

TEST_F(FullScreenParts, ClockCursorTextStateAndTitleComeBack) {
  GlobalOptions::Clock = true;
  console->setTitle(L"gr\u00FCn");
  setCursorShape(14);
  setTextPos(3, 4);
  {
    ScreenStateGuard guard;
    EXPECT_FALSE(GlobalOptions::Clock);
    console->setTitle(L"other");
    setCursorShape(0);
    setTextPos(0, 0);
  }
  EXPECT_TRUE(GlobalOptions::Clock);
  EXPECT_EQ(console->title(), "gr\xC3\xBCn");
  EXPECT_EQ(console->cursorSize(), 14);
  EXPECT_EQ(textState.textX, 3);
  GlobalOptions::Clock = false;
  { ScreenStateGuard guard; }
  EXPECT_FALSE(GlobalOptions::Clock);
}

}  // namespace
