#include "terminal/terminal_keys.h"

#include <gtest/gtest.h>

#include "support/key_print.h"

namespace {
TEST(TerminalKeys, EachKeySendsItsBytes) {
  const std::pair<Key::Code, const char*> rows[] = {
      {'a', "a"},
      {Key::Enter, "\r"},
      {Key::Tab, "\t"},
      {Key::Esc, "\x1b"},
      {Key::ctrl('c'), "\x03"},
      {Key::CtrlEnter, "\n"},
      {Key::CtrlBackspace, "\x7f"},
      {Key::CtrlBackslash, "\x1c"},
      {L'\xE9', "\xC3\xA9"},
      {L'\x20AC', "\xE2\x82\xAC"},
      {L'\U0001F600', "\xF0\x9F\x98\x80"},
      {Key::AltSpace, "\x1b "},
      {Key::Home, "\x1b[H"},
      {Key::Up, "\x1b[A"},
      {Key::Down, "\x1b[B"},
      {Key::Right, "\x1b[C"},
      {Key::Left, "\x1b[D"},
      {Key::Backspace, "\b"},
      {Key::Delete, "\x1b[3~"},
      {Key::End, "\x1b[F"},
      {Key::PageUp, "\x1b[5~"},
      {Key::PageDown, "\x1b[6~"},
      {Key::Insert, "\x1b[L"},
      {Key::ShiftTab, "\x1b[Z"},
      {Key::F1, "\x1b[11~"},
      {Key::F5, "\x1b[15~"},
      {Key::F6, "\x1b[17~"},
      {Key::F10, "\x1b[21~"},
      {Key::F11, "\x1b[23~"},
      {Key::F12, "\x1b[24~"},
      {Key::CtrlLeft, "\x1b[1;5D"},
      {Key::CtrlRight, "\x1b[1;5C"},
      {Key::alt('b'),
       "\x1b"
       "b"},
      {Key::alt('.'), "\x1b."},
      {Key::shiftAlt('-'), "\x1b_"},
      {Key::GrayPlus, "+"},
      {Key::GrayMinus, "-"},
      {Key::GrayStar, "*"},
  };
  for (const auto& [code, bytes] : rows) EXPECT_EQ(keyBytes(code), bytes) << code;
}

TEST(TerminalKeys, EveryOtherKeySendsNothing) {
  for (const Key::Code code :
       {Key::ShiftChanged, Key::ShiftF1, Key::CtrlF5, Key::AltF7, Key::CtrlHome, Key::ShiftLeft,
        Key::AltEnter, Key::CtrlShiftEnter, Key::ctrlKeypadDigit(5), Key::AltGrayPlus,
        Key::CtrlShiftF, Key::MouseEvent, Key::NoKey}) {
    EXPECT_EQ(keyBytes(code), "") << code;
  }
}

TEST(TerminalKeys, PastedLinesEndInReturn) {
  EXPECT_EQ(pastedBytes(L"one\ntwo\r\nthree\rfour\n\n"), "one\rtwo\rthree\rfour\r\r");
  EXPECT_EQ(pastedBytes(L"\n\x20AC"), "\r\xE2\x82\xAC");
  EXPECT_EQ(pastedBytes(L""), "");
}
}  // namespace
