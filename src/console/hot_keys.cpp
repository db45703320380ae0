#include <array>

#include "console/key_codes.h"

namespace {
struct HotKey {
  Key::Code code;
  char character;
};

// One code stands for the grave accent and for '~'; the first one found wins.
// clang-format off
constexpr std::array<HotKey, 61> HotKeys = {{
    {Key::alt('a'), 'a'}, {Key::alt('b'), 'b'}, {Key::alt('c'), 'c'}, {Key::alt('d'), 'd'},
    {Key::alt('e'), 'e'}, {Key::alt('f'), 'f'}, {Key::alt('g'), 'g'}, {Key::alt('h'), 'h'},
    {Key::alt('i'), 'i'}, {Key::alt('j'), 'j'}, {Key::alt('k'), 'k'}, {Key::alt('l'), 'l'},
    {Key::alt('m'), 'm'}, {Key::alt('n'), 'n'}, {Key::alt('o'), 'o'}, {Key::alt('p'), 'p'},
    {Key::alt('q'), 'q'}, {Key::alt('r'), 'r'}, {Key::alt('s'), 's'}, {Key::alt('t'), 't'},
    {Key::alt('u'), 'u'}, {Key::alt('v'), 'v'}, {Key::alt('w'), 'w'}, {Key::alt('x'), 'x'},
    {Key::alt('y'), 'y'}, {Key::alt('z'), 'z'}, {Key::alt(','), ','}, {Key::alt('1'), '1'},
    {Key::alt('2'), '2'}, {Key::alt('3'), '3'}, {Key::alt('4'), '4'}, {Key::alt('5'), '5'},
    {Key::alt('6'), '6'}, {Key::alt('7'), '7'}, {Key::alt('8'), '8'}, {Key::alt('9'), '9'},
    {Key::alt('0'), '0'}, {Key::alt('.'), '.'}, {Key::alt(';'), ';'}, {Key::alt('\''), '\''},
    {Key::alt('['), '['}, {Key::alt(']'), ']'}, {Key::alt('-'), '-'}, {Key::alt('='), '='},
    {Key::alt('`'), '`'}, {Key::alt('\\'), '\\'}, {Key::shiftAlt('-'), '_'},
    {Key::shiftAlt('='), '+'}, {Key::shiftAlt('1'), '!'}, {Key::shiftAlt('2'), '@'},
    {Key::shiftAlt('3'), '#'}, {Key::shiftAlt('4'), '$'}, {Key::shiftAlt('5'), '%'},
    {Key::shiftAlt('6'), '^'}, {Key::shiftAlt('7'), '&'}, {Key::shiftAlt('9'), '('},
    {Key::shiftAlt('0'), ')'}, {Key::shiftAlt('['), '{'}, {Key::shiftAlt(']'), '}'},
    {Key::alt('`'), '~'}, {Key::shiftAlt('\''), '"'},
}};
// clang-format on
}  // namespace

Key::Code hotKeyChar(Key::Code code) {
  for (const HotKey& key : HotKeys) {
    if (key.code == code) return key.character;
  }
  return code;
}

Key::Code functionKey(int number, int shiftState) {
  const auto numbered = [number](Key::Code first) { return Key::Code(first.value() + number - 1); };
  switch (shiftState & ShiftState::Mask) {
    case 0:
      return numbered(Key::F1);
    case ShiftState::Shift:
      return numbered(Key::ShiftF1);
    case ShiftState::Ctrl:
      return numbered(Key::CtrlF1);
    case ShiftState::Alt:
      return numbered(Key::AltF1);
    case ShiftState::Shift | ShiftState::Alt:
      return numbered(Key::ShiftAltF1);
    case ShiftState::Shift | ShiftState::Ctrl:
      return numbered(Key::CtrlShiftF1);
    default:
      return Key::NoKey;
  }
}
