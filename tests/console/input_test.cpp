#include "console/input.h"

#include "console/key_codes.h"
#include "foundation/break_state.h"
#include "support/console_test.h"

namespace {
using Input = ConsoleTest;

TEvent keyEvent(Key::Code key, int state, int hwCode) {
  TEvent event;
  event.key = key;
  event.state = state;
  event.hwCode = hwCode;
  return event;
}

TEST_F(Input, ATimeOutGivesNoKey) {
  EXPECT_EQ(getKey(nullptr, 0), Key::NoKey);
}

TEST_F(Input, AKeyComesWithItsState) {
  queueKey(Key::F5, ShiftState::Alt);
  MouseMessage mouse;
  EXPECT_EQ(getKey(&mouse, 0), Key::F5);
  EXPECT_EQ(mouse.state, ShiftState::Alt);
  EXPECT_EQ(lastShiftState(), ShiftState::Alt);
}

TEST_F(Input, CtrlWithADigitOfTheDigitRowIsTheDigit) {
  console->events().put(keyEvent('1', ShiftState::Ctrl, 10));
  console->events().put(keyEvent('!', ShiftState::Ctrl | ShiftState::Shift, 10));
  console->events().put(keyEvent('0', ShiftState::Ctrl, 19));
  console->events().put(keyEvent('9', ShiftState::Ctrl, 18));
  console->events().put(keyEvent('1', 0, 10));
  EXPECT_EQ(getKey(nullptr, 0), Key::Code(0x40001));
  EXPECT_EQ(getKey(nullptr, 0), Key::Code(0x60001));
  EXPECT_EQ(getKey(nullptr, 0), Key::Code(0x40000));
  EXPECT_EQ(getKey(nullptr, 0), Key::Code(0x40009));
  EXPECT_EQ(getKey(nullptr, 0), '1');
}

TEST_F(Input, TheShiftStateIsThatOfTheLastKeyAndNotOfTypedText) {
  queueKey(Key::ShiftChanged, ShiftState::Shift);
  queueText("A");
  EXPECT_EQ(getKey(nullptr, 0), Key::ShiftChanged);
  EXPECT_EQ(lastShiftState(), ShiftState::Shift);
  EXPECT_EQ(getKey(nullptr, 0), 'A');
  EXPECT_EQ(lastShiftState(), ShiftState::Shift);
  queueKey(Key::ShiftChanged, 0);
  getKey(nullptr, 0);
  EXPECT_EQ(lastShiftState(), 0);
}

struct MouseRow {
  EventKind kind;
  int button;
  Key::Code result;
  MouseKind message;
};

TEST_F(Input, EachMouseEventBecomesItsMessage) {
  const MouseRow rows[] = {
      {EventKind::Press, 1, Key::MouseEvent, MouseKind::LeftPress},
      {EventKind::Press, 2, Key::MouseEvent, MouseKind::RightPress},
      {EventKind::Drag, 1, Key::MouseEvent, MouseKind::LeftDrag},
      {EventKind::Drag, 2, Key::MouseEvent, MouseKind::RightDrag},
      {EventKind::Release, 1, Key::MouseEvent, MouseKind::LeftRelease},
      {EventKind::Release, 2, Key::MouseEvent, MouseKind::RightRelease},
      {EventKind::DoubleClick, 1, Key::MouseEvent, MouseKind::LeftDoubleClick},
      {EventKind::DoubleClick, 2, Key::MouseEvent, MouseKind::RightPress},
  };
  for (const MouseRow& row : rows) {
    queueMouse(row.kind, 12, 7, row.button, ShiftState::Ctrl);
    MouseMessage message;
    message.wheel = 5;
    EXPECT_EQ(getKey(&message, 0), row.result);
    EXPECT_EQ(message.kind, row.message);
    EXPECT_EQ(message.x, 12);
    EXPECT_EQ(message.y, 7);
    EXPECT_EQ(message.state, ShiftState::Ctrl);
    EXPECT_EQ(message.wheel, 0);
  }
}

TEST_F(Input, AThirdButtonGivesNoMessage) {
  for (const EventKind kind :
       {EventKind::Press, EventKind::Release, EventKind::DoubleClick, EventKind::Drag}) {
    MouseMessage message;
    queueMouse(kind, 1, 1, 3);
    EXPECT_EQ(getKey(&message, 0), Key::NoKey);
    queueMouse(kind, 1, 1, 0);
    EXPECT_EQ(getKey(&message, 0), Key::NoKey);
  }
}

TEST_F(Input, WithoutAMessageToFillTheMouseCountsAsTranslated) {
  queueMouse(EventKind::Press, 1, 1, 3);
  EXPECT_EQ(getKey(nullptr, 0), Key::MouseEvent);
}

TEST_F(Input, TheWheelGivesItsDirection) {
  for (const int direction : {1, -1}) {
    queueWheel(direction, ShiftState::Shift);
    MouseMessage message;
    EXPECT_EQ(getKey(&message, 0), Key::MouseEvent);
    EXPECT_EQ(message.kind, MouseKind::Wheel);
    EXPECT_EQ(message.wheel, direction);
    EXPECT_EQ(message.state, ShiftState::Shift);
  }
}

TEST_F(Input, GetKeyPutsTheCursorAtTheTextPosition) {
  setTextPos(17, 9);
  getKey(nullptr, 0);
  EXPECT_EQ(console->getCursorPos().x, 17);
  EXPECT_EQ(console->getCursorPos().y, 9);
}

TEST_F(Input, KeyPendingTellsOfQueuedEvents) {
  EXPECT_FALSE(keyPending());
  queueKey('x');
  EXPECT_TRUE(keyPending());
  EXPECT_EQ(console->eventCount(), 1);
}

TEST_F(Input, AnAbortLookLosesAnyOtherKey) {
  queueKey('x');
  EXPECT_FALSE(escapePressed());
  EXPECT_FALSE(keyPending());
}

TEST_F(Input, AnAbortLookFindsEscBehindMouseAndShift) {
  queueMouse(EventKind::Release, 1, 1);
  queueKey(Key::ShiftChanged);
  queueKey(Key::Esc);
  EXPECT_TRUE(escapePressed());
  EXPECT_EQ(console->eventCount(), 2);
  EXPECT_FALSE(escapePressed());
}

TEST_F(Input, CtrlBracketCountsAsEscForAnAbort) {
  queueKey(Key::Esc, ShiftState::Ctrl);
  EXPECT_TRUE(escapePressed());
}

TEST_F(Input, ReadEventCopiesTheRecordAndTellsOfATimeOut) {
  queueMouse(EventKind::Press, 3, 4, 2);
  TEvent event;
  EXPECT_TRUE(console->readEvent(event, 0));
  EXPECT_EQ(event.kind, EventKind::Press);
  EXPECT_EQ(event.button, 2);
  EXPECT_EQ(event.x, 3);
  EXPECT_EQ(event.y, 4);
  EXPECT_EQ(event.hwCode, 0);
  EXPECT_FALSE(console->readEvent(event, 0));
}
}  // namespace
