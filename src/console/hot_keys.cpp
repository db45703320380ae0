#include <array>

#include "console/key_codes.h"

namespace {
struct HotKey {
  int code;
  char character;
};

// 0x10029 stands for the grave accent and for '~'; the first one found wins.
// clang-format off
constexpr std::array<HotKey, 61> HotKeys = {{
    {0x1001E, 'a'}, {0x10030, 'b'}, {0x1002E, 'c'}, {0x10020, 'd'}, {0x10012, 'e'}, {0x10021, 'f'},
    {0x10022, 'g'}, {0x10023, 'h'}, {0x10017, 'i'}, {0x10024, 'j'}, {0x10025, 'k'}, {0x10026, 'l'},
    {0x10032, 'm'}, {0x10031, 'n'}, {0x10018, 'o'}, {0x10019, 'p'}, {0x10010, 'q'}, {0x10013, 'r'},
    {0x1001F, 's'}, {0x10014, 't'}, {0x10016, 'u'}, {0x1002F, 'v'}, {0x10011, 'w'}, {0x1002D, 'x'},
    {0x10015, 'y'}, {0x1002C, 'z'}, {0x10033, ','}, {0x10078, '1'}, {0x10079, '2'}, {0x1007A, '3'},
    {0x1007B, '4'}, {0x1007C, '5'}, {0x1007D, '6'}, {0x1007E, '7'}, {0x1007F, '8'}, {0x10080, '9'},
    {0x10081, '0'}, {0x10034, '.'}, {0x10027, ';'}, {0x10028, '\''}, {0x1001A, '['}, {0x1001B, ']'},
    {0x10082, '-'}, {0x10083, '='}, {0x10029, '`'}, {0x1002B, '\\'}, {0x30082, '_'}, {0x30083, '+'},
    {0x30078, '!'}, {0x30079, '@'}, {0x3007A, '#'}, {0x3007B, '$'}, {0x3007C, '%'}, {0x3007D, '^'},
    {0x3007E, '&'}, {0x30080, '('}, {0x30081, ')'}, {0x3001A, '{'}, {0x3001B, '}'}, {0x10029, '~'},
    {0x30028, '"'},
}};
// clang-format on
}  // namespace

int hotKeyChar(int code) {
  for (const HotKey& key : HotKeys) {
    if (key.code == code) return key.character;
  }
  return code;
}

Key::Code functionKey(int number, int shiftState) {
  const int index = number - 1;
  switch (shiftState & ShiftState::Mask) {
    case 0:
      return Key::F1 + index;
    case ShiftState::Shift:
      return Key::ShiftF1 + index;
    case ShiftState::Ctrl:
      return Key::CtrlF1 + index;
    case ShiftState::Alt:
      return Key::AltF1 + index;
    case ShiftState::Shift | ShiftState::Alt:
      return Key::ShiftAltF1 + index;
    case ShiftState::Shift | ShiftState::Ctrl:
      return Key::CtrlShiftF1 + index;
    default:
      return 0;
  }
}
