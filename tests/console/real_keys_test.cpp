#include <X11/keysym.h>

#include "console/key_codes.h"
#include "foundation/break_state.h"
#include "support/console_test.h"
#include "support/x_keys.h"

namespace {
using RealKeys = RealKeysTest;
using Symbols = std::vector<unsigned long>;

struct KeyRow {
  const char* name;
  unsigned long symbol;
  Symbols modifiers;
  Key::Code code;
};

TEST_F(RealKeys, ASampleOfEachStateArrivesAsItsCode) {
  const Symbols none, shift{XK_Shift_L}, ctrl{XK_Control_L}, alt{XK_Alt_L};
  const Symbols ctrlShift{XK_Control_L, XK_Shift_L}, altShift{XK_Alt_L, XK_Shift_L};
  const KeyRow rows[] = {
      {"F1", XK_F1, none, Key::F1},
      {"F12", XK_F12, none, Key::F12},
      {"Return", XK_Return, none, Key::Enter},
      {"BackSpace", XK_BackSpace, none, Key::Backspace},
      {"Tab", XK_Tab, none, Key::Tab},
      {"Escape", XK_Escape, none, Key::Esc},
      {"Delete", XK_Delete, none, Key::Delete},
      {"Page_Up", XK_Page_Up, none, Key::PageUp},
      {"keypad plus", XK_KP_Add, none, Key::GrayPlus},
      {"keypad minus", XK_KP_Subtract, none, Key::GrayMinus},
      {"keypad star", XK_KP_Multiply, none, Key::GrayStar},
      {"keypad Enter", XK_KP_Enter, none, Key::Enter},
      {"Shift-keypad star", XK_KP_Multiply, shift, Key::GrayStar},
      {"Shift-keypad plus", XK_KP_Add, shift, Key::GrayPlus},
      {"keypad Home", XK_KP_Home, none, Key::Home},
      {"keypad Delete", XK_KP_Delete, none, Key::Delete},
      {"Alt-F7", XK_F7, alt, Key::AltF7},
      {"Alt-Return", XK_Return, alt, Key::AltEnter},
      {"Alt-a", XK_a, alt, Key::Code(0x1001E)},
      {"Alt-backslash", XK_backslash, alt, Key::AltBackslash},
      {"Alt-5", XK_5, alt, Key::Code(0x1007C)},
      {"Alt-keypad plus", XK_KP_Add, alt, Key::AltGrayPlus},
      {"Ctrl-F10", XK_F10, ctrl, Key::CtrlF10},
      {"Ctrl-a", XK_a, ctrl, Key::ctrl('a')},
      {"Ctrl-space", XK_space, ctrl, Key::Space},
      {"Ctrl-BackSpace", XK_BackSpace, ctrl, Key::CtrlBackspace},
      {"Ctrl-bracket", XK_bracketleft, ctrl, Key::Esc},
      {"Ctrl-Left", XK_Left, ctrl, Key::CtrlLeft},
      {"Ctrl-Return", XK_Return, ctrl, Key::CtrlEnter},
      {"Shift-F5", XK_F5, shift, Key::ShiftF5},
      {"Shift-Left", XK_Left, shift, Key::ShiftLeft},
      {"Shift-Tab", XK_Tab, shift, Key::ShiftTab},
      {"Shift-BackSpace", XK_BackSpace, shift, Key::Backspace},
      {"Shift-Insert", XK_Insert, shift, Key::ShiftInsert},
      {"Ctrl-Shift-f", XK_f, ctrlShift, Key::Code(0x20006)},
      {"Ctrl-Shift-Return", XK_Return, ctrlShift, Key::CtrlShiftEnter},
      {"Ctrl-Shift-backslash", XK_backslash, ctrlShift, Key::Code(0x2001C)},
      {"Shift-Alt-F8", XK_F8, altShift, Key::ShiftAltF8},
      {"Shift-Alt-1", XK_1, altShift, Key::Code(0x30078)},
      {"Shift-Alt-quote", XK_apostrophe, altShift, Key::Code(0x30028)},
  };
  for (const KeyRow& row : rows) {
    XKeys::get().press(row.symbol, row.modifiers);
    EXPECT_EQ(waitKey(), row.code) << row.name;
  }
}

TEST_F(RealKeys, ShiftAloneYieldsTwoEvents) {
  XKeys::get().press(XK_Shift_L);
  TEvent event;
  ASSERT_TRUE(console->readEvent(event, PatienceMs));
  EXPECT_EQ(event.key, Key::ShiftChanged);
  EXPECT_EQ(event.state, 1);
  ASSERT_TRUE(console->readEvent(event, PatienceMs));
  EXPECT_EQ(event.key, Key::ShiftChanged);
  EXPECT_EQ(event.state, 0);
}

TEST_F(RealKeys, AltWithACapitalLockedIsAltWithTheLetter) {
  XKeys::get().press(XK_Caps_Lock);
  XKeys::get().press(XK_a, {XK_Alt_L});
  EXPECT_EQ(waitKey(), Key::Code(0x1001E));
  XKeys::get().press(XK_Caps_Lock);
}

TEST_F(RealKeys, CtrlOnTheDigitRow) {
  XKeys::get().pressDigitKey(1, {XK_Control_L});
  EXPECT_EQ(waitKey(), Key::Code(0x40001));
  XKeys::get().pressDigitKey(1, {XK_Control_L, XK_Shift_L});
  EXPECT_EQ(waitKey(), Key::Code(0x60001));
  XKeys::get().pressDigitKey(0, {XK_Control_L});
  EXPECT_EQ(waitKey(), Key::Code(0x40000));
}

TEST_F(RealKeys, CtrlOnTheKeypadDigits) {
  XKeys::get().press(XK_KP_Home, {XK_Control_L});
  EXPECT_EQ(waitKey(), Key::Code(0x40037));
  XKeys::get().press(XK_KP_Begin, {XK_Control_L});
  EXPECT_EQ(waitKey(), Key::Code(0x40035));
}

TEST_F(RealKeys, TypedTextArrivesCharacterByCharacter) {
  XKeys::get().type("Ab 1!~\xC3\xA4\xD0\xB6");
  for (const wchar_t expected : {L'A', L'b', L' ', L'1', L'!', L'~', L'\xE4', L'\x436'}) {
    EXPECT_EQ(waitKey(), expected);
  }
}

TEST_F(RealKeys, AnUmlautComesThroughTheInputMethodWithStateZero) {
  XKeys::get().type("\xC3\xA4");
  TEvent event;
  ASSERT_TRUE(console->readEvent(event, PatienceMs));
  EXPECT_EQ(event.kind, EventKind::Key);
  EXPECT_EQ(event.key, L'\xE4');
  EXPECT_EQ(event.state, 0);
  EXPECT_EQ(event.hwCode, 0);
}

TEST_F(RealKeys, ACharacterBeyondTheFirstPlaneIsMarked) {
  XKeys::get().type("\xF0\x9F\x98\x80");
  EXPECT_EQ(waitKey(), Key::Code(0x1F600) | Key::WideCharacter);
}

TEST_F(RealKeys, ACapitalLeavesTheShiftStateToTheKeys) {
  XKeys::get().keyDown(XK_Shift_L);
  XKeys::get().press(XK_a);
  EXPECT_EQ(waitKey(), 'A');
  EXPECT_EQ(lastShiftState(), ShiftState::Shift);
  XKeys::get().keyUp(XK_Shift_L);
  EXPECT_TRUE(waitUntil([] {
    getKey(nullptr, 10);
    return lastShiftState() == 0;
  }));
}

TEST_F(RealKeys, AltLettersWorkWhileAnotherScriptIsOn) {
  XKeys::get().mapSecondLayout(XK_a, XK_Cyrillic_ef);
  XKeys::get().switchLayout(1);
  XKeys::get().press(XK_a);
  EXPECT_EQ(waitKey(), Key::Code(0x444));
  XKeys::get().keyDown(XK_Alt_L);
  XKeys::get().press(XK_a);
  XKeys::get().keyUp(XK_Alt_L);
  EXPECT_EQ(waitKey(), Key::Code(0x1001E));
  XKeys::get().switchLayout(0);
}

TEST_F(RealKeys, OnAnotherScriptShiftStillChoosesTheCharacterOfTheKey) {
  XKeys::get().mapKey(XK_w, {XK_w, XK_dollar, XK_Cyrillic_a, XK_Cyrillic_A});
  XKeys::get().switchLayout(1);
  XKeys::get().press(XK_w, {XK_Alt_L, XK_Shift_L});
  XKeys::get().switchLayout(0);
  EXPECT_EQ(waitKey(), Key::Code(0x3007B));
}

TEST_F(RealKeys, TheReleaseOfALetterQueuesNothing) {
  XKeys::get().press(XK_a);
  XKeys::get().press(XK_F1);
  EXPECT_EQ(waitKey(), 'a');
  EXPECT_EQ(waitKey(), Key::F1);
  EXPECT_FALSE(keyPending());
}

TEST_F(RealKeys, BreakWithNothingArmedDoesNothing) {
  XKeys::get().press(XK_Pause, {XK_Control_L});
  XKeys::get().press(XK_F1);
  EXPECT_EQ(waitKey(), Key::F1);
  EXPECT_EQ(breakState.load(), BreakState::Idle);
}

TEST_F(RealKeys, BreakReachesAnArmedOperation) {
  BreakScope scope;
  XKeys::get().press(XK_Pause, {XK_Control_L});
  EXPECT_TRUE(waitUntil(breakRequested));
  EXPECT_EQ(waitKey(nullptr, 200), Key::NoKey);
}

TEST_F(RealKeys, TheCloseButtonIsF10) {
  XKeys::get().closeWindow(console->windowId());
  TEvent event;
  ASSERT_TRUE(console->readEvent(event, PatienceMs));
  EXPECT_EQ(event.kind, EventKind::Key);
  EXPECT_EQ(event.key, Key::F10);
  EXPECT_EQ(event.state, 0);
  EXPECT_EQ(event.hwCode, 0);
  XKeys::get().press(XK_F1);
  EXPECT_EQ(waitKey(), Key::F1) << "the window is still there";
}

TEST_F(RealKeys, LosingTheFocusLetsGoOfTheModifiers) {
  XKeys::get().keyDown(XK_Alt_L);
  EXPECT_TRUE(waitUntil([] {
    getKey(nullptr, 10);
    return lastShiftState() == ShiftState::Alt;
  }));
  XKeys::get().takeFocusAway();
  EXPECT_TRUE(waitUntil([] {
    getKey(nullptr, 10);
    return lastShiftState() == 0;
  }));
  XKeys::get().keyUp(XK_Alt_L);
  XKeys::get().giveFocus(console->windowId());
  EXPECT_TRUE(XKeys::get().waitForFocus(console->windowId()));
}

TEST_F(RealKeys, AKeyShowsTheCursorAtOnce) {
  console->setCursorSize(100);
  setTextPos(0, 0);
  const auto shown = [&] { return cellPixels(console->picture(), 0, 0).front() == 0xFFFFFFu; };
  ASSERT_TRUE(waitUntil([&] { return !shown(); }, 2000));
  XKeys::get().press(XK_F1);
  EXPECT_EQ(waitKey(), Key::F1);
  EXPECT_TRUE(waitUntil(shown, 250));
}

TEST_F(RealKeys, KeysThatArriveBesideAnAnswerOfTheServerAreSeen) {
  for (int i = 0; i < 100; ++i) {
    XKeys::get().press(XK_F1);
    console->picture();
    ASSERT_EQ(waitKey(nullptr, 2000), Key::F1) << i;
  }
}

TEST_F(RealKeys, TheTitleReachesTheWindow) {
  console->setTitle(Westring(L"Tandem \x00E4"));
  EXPECT_TRUE(
      waitUntil([] { return XKeys::get().windowTitle(console->windowId()) == "Tandem \xC3\xA4"; }));
}

class RealMouse : public RealKeysTest {
 protected:
  void expectMouse(EventKind kind, int button, int x, int y) {
    TEvent event;
    ASSERT_TRUE(console->readEvent(event, PatienceMs));
    EXPECT_EQ(event.kind, kind);
    EXPECT_EQ(event.button, button);
    EXPECT_EQ(event.x, x);
    EXPECT_EQ(event.y, y);
    EXPECT_EQ(event.hwCode, 0);
  }
};

TEST_F(RealMouse, AClickIsAPressAndAReleaseOnItsCell) {
  const int buttons[] = {0, 1, 3, 2};
  for (const int button : {1, 2, 3}) {
    XKeys::get().click(10 * button, 5 + button, button);
    expectMouse(EventKind::Press, buttons[button], 10 * button, 5 + button);
    expectMouse(EventKind::Release, buttons[button], 10 * button, 5 + button);
  }
}

TEST_F(RealMouse, ADoubleClickComesAfterASingleOne) {
  XKeys::get().doubleClick(20, 10);
  expectMouse(EventKind::Press, 1, 20, 10);
  expectMouse(EventKind::Release, 1, 20, 10);
  expectMouse(EventKind::Press, 1, 20, 10);
  expectMouse(EventKind::DoubleClick, 1, 20, 10);
  expectMouse(EventKind::Release, 1, 20, 10);
}

TEST_F(RealMouse, ADragTellsWhichButtonIsHeld) {
  for (const int button : {1, 3}) {
    XKeys::get().moveTo(4, 4);
    XKeys::get().buttonDown(button);
    XKeys::get().moveTo(9, 6);
    XKeys::get().buttonUp(button);
    const int queued = button == 1 ? 1 : 2;
    expectMouse(EventKind::Press, queued, 4, 4);
    expectMouse(EventKind::Drag, queued, 9, 6);
    expectMouse(EventKind::Release, queued, 9, 6);
  }
}

TEST_F(RealMouse, MovingWithoutAButtonQueuesNothing) {
  XKeys::get().moveTo(1, 1);
  XKeys::get().moveTo(30, 20);
  XKeys::get().press(XK_F1);
  EXPECT_EQ(waitKey(), Key::F1);
}

TEST_F(RealMouse, AWheelTurnGivesItsDirectionAnywhere) {
  for (const int direction : {1, -1}) {
    XKeys::get().wheel(40 + direction, 12, direction);
    MouseMessage message;
    EXPECT_EQ(waitKey(&message), Key::MouseEvent);
    EXPECT_EQ(message.kind, MouseKind::Wheel);
    EXPECT_EQ(message.wheel, direction);
  }
}

TEST_F(RealMouse, AMiddleClickIsNoKeyAndNoMessage) {
  XKeys::get().click(3, 3, 2);
  ASSERT_TRUE(waitUntil([] { return console->eventCount() == 2; }));
  MouseMessage message;
  EXPECT_EQ(getKey(&message, 0), Key::NoKey);
  EXPECT_EQ(getKey(&message, 0), Key::NoKey);
}

TEST_F(RealMouse, ShiftStatesComeWithAClick) {
  XKeys::get().keyDown(XK_Control_L);
  XKeys::get().click(3, 3);
  XKeys::get().keyUp(XK_Control_L);
  MouseMessage message;
  EXPECT_EQ(waitKey(&message), Key::MouseEvent);
  EXPECT_EQ(message.state, ShiftState::Ctrl);
}
}  // namespace
