#include "console/key_table.h"

#include <gdk/gdkkeysyms.h>

namespace {
constexpr int None = 0;
constexpr int Shift = ShiftState::Shift;
constexpr int Ctrl = ShiftState::Ctrl;
constexpr int Alt = ShiftState::Alt;
constexpr int CtrlShift = Ctrl | Shift;
constexpr int AltShift = Alt | Shift;

// The layout of the lines below is by hand: one group of keys a line.
// clang-format off
constexpr KeyRow Table[] = {
    // no modifier
    {GDK_F1, None, Key::F1}, {GDK_F2, None, Key::F2}, {GDK_F3, None, Key::F3},
    {GDK_F4, None, Key::F4}, {GDK_F5, None, Key::F5}, {GDK_F6, None, Key::F6},
    {GDK_F7, None, Key::F7}, {GDK_F8, None, Key::F8}, {GDK_F9, None, Key::F9},
    {GDK_F10, None, Key::F10}, {GDK_F11, None, Key::F11}, {GDK_F12, None, Key::F12},
    {GDK_Return, None, Key::Enter}, {GDK_BackSpace, None, Key::Backspace},
    {GDK_Tab, None, Key::Tab}, {GDK_Escape, None, Key::Esc}, {GDK_Delete, None, Key::Delete},
    {GDK_Home, None, Key::Home}, {GDK_Left, None, Key::Left}, {GDK_Up, None, Key::Up},
    {GDK_Right, None, Key::Right}, {GDK_Down, None, Key::Down}, {GDK_Page_Up, None, Key::PageUp},
    {GDK_Page_Down, None, Key::PageDown}, {GDK_End, None, Key::End},
    {GDK_Insert, None, Key::Insert}, {GDK_KP_Add, None, Key::GrayPlus},
    {GDK_KP_Subtract, None, Key::GrayMinus}, {GDK_KP_Multiply, None, Key::GrayStar},
    // Alt
    {GDK_F1, Alt, Key::AltF1}, {GDK_F2, Alt, Key::AltF2}, {GDK_F3, Alt, Key::AltF3},
    {GDK_F4, Alt, Key::AltF4}, {GDK_F5, Alt, Key::AltF5}, {GDK_F6, Alt, Key::AltF6},
    {GDK_F7, Alt, Key::AltF7}, {GDK_F8, Alt, Key::AltF8}, {GDK_F9, Alt, Key::AltF9},
    {GDK_F10, Alt, Key::AltF10}, {GDK_F11, Alt, Key::AltF11}, {GDK_F12, Alt, Key::AltF12},
    {GDK_Return, Alt, Key::AltEnter}, {GDK_BackSpace, Alt, Key::AltBackspace},
    {GDK_Left, Alt, Key::AltLeft}, {GDK_Up, Alt, Key::AltUp}, {GDK_Right, Alt, Key::AltRight},
    {GDK_Down, Alt, Key::AltDown}, {GDK_Home, Alt, Key::AltHome},
    {GDK_KP_Add, Alt, Key::AltGrayPlus}, {GDK_KP_Subtract, Alt, Key::AltGrayMinus},
    {'0', Alt, Key::alt('0')}, {'1', Alt, Key::alt('1')}, {'2', Alt, Key::alt('2')},
    {'3', Alt, Key::alt('3')}, {'4', Alt, Key::alt('4')}, {'5', Alt, Key::alt('5')},
    {'6', Alt, Key::alt('6')}, {'7', Alt, Key::alt('7')}, {'8', Alt, Key::alt('8')},
    {'9', Alt, Key::alt('9')}, {'\\', Alt, Key::alt('\\')}, {'.', Alt, Key::alt('.')},
    {',', Alt, Key::alt(',')}, {'[', Alt, Key::alt('[')}, {']', Alt, Key::alt(']')},
    {'-', Alt, Key::alt('-')}, {'=', Alt, Key::alt('=')}, {';', Alt, Key::alt(';')},
    {'\'', Alt, Key::alt('\'')}, {'#', Alt, Key::shiftAlt('3')}, {'a', Alt, Key::alt('a')},
    {'b', Alt, Key::alt('b')}, {'c', Alt, Key::alt('c')}, {'d', Alt, Key::alt('d')},
    {'e', Alt, Key::alt('e')}, {'f', Alt, Key::alt('f')}, {'g', Alt, Key::alt('g')},
    {'h', Alt, Key::alt('h')}, {'i', Alt, Key::alt('i')}, {'j', Alt, Key::alt('j')},
    {'k', Alt, Key::alt('k')}, {'l', Alt, Key::alt('l')}, {'m', Alt, Key::alt('m')},
    {'n', Alt, Key::alt('n')}, {'o', Alt, Key::alt('o')}, {'p', Alt, Key::alt('p')},
    {'q', Alt, Key::alt('q')}, {'r', Alt, Key::alt('r')}, {'s', Alt, Key::alt('s')},
    {'t', Alt, Key::alt('t')}, {'u', Alt, Key::alt('u')}, {'v', Alt, Key::alt('v')},
    {'w', Alt, Key::alt('w')}, {'x', Alt, Key::alt('x')}, {'y', Alt, Key::alt('y')},
    {'z', Alt, Key::alt('z')},
    // Ctrl
    {GDK_F1, Ctrl, Key::CtrlF1}, {GDK_F2, Ctrl, Key::CtrlF2}, {GDK_F3, Ctrl, Key::CtrlF3},
    {GDK_F4, Ctrl, Key::CtrlF4}, {GDK_F5, Ctrl, Key::CtrlF5}, {GDK_F6, Ctrl, Key::CtrlF6},
    {GDK_F7, Ctrl, Key::CtrlF7}, {GDK_F8, Ctrl, Key::CtrlF8}, {GDK_F9, Ctrl, Key::CtrlF9},
    {GDK_F10, Ctrl, Key::CtrlF10}, {GDK_F11, Ctrl, Key::CtrlF11}, {GDK_F12, Ctrl, Key::CtrlF12},
    {GDK_BackSpace, Ctrl, Key::CtrlBackspace}, {GDK_Delete, Ctrl, Key::CtrlDelete},
    {GDK_Home, Ctrl, Key::CtrlHome}, {GDK_Left, Ctrl, Key::CtrlLeft}, {GDK_Up, Ctrl, Key::CtrlUp},
    {GDK_Right, Ctrl, Key::CtrlRight}, {GDK_Down, Ctrl, Key::CtrlDown},
    {GDK_Page_Up, Ctrl, Key::CtrlPageUp}, {GDK_Page_Down, Ctrl, Key::CtrlPageDown},
    {GDK_End, Ctrl, Key::CtrlEnd}, {GDK_Insert, Ctrl, Key::CtrlInsert},
    {GDK_Return, Ctrl, Key::CtrlEnter}, {'\\', Ctrl, Key::CtrlBackslash},
    {'#', Ctrl, Key::CtrlBackslash}, {'-', Ctrl, Key::CtrlUnderscore}, {'[', Ctrl, Key::Esc},
    {']', Ctrl, Key::CtrlBracketRight}, {'a', Ctrl, Key::ctrl('a')}, {'b', Ctrl, Key::ctrl('b')},
    {'c', Ctrl, Key::ctrl('c')}, {'d', Ctrl, Key::ctrl('d')}, {'e', Ctrl, Key::ctrl('e')},
    {'f', Ctrl, Key::ctrl('f')}, {'g', Ctrl, Key::ctrl('g')}, {'h', Ctrl, Key::ctrl('h')},
    {'i', Ctrl, Key::ctrl('i')}, {'j', Ctrl, Key::ctrl('j')}, {'k', Ctrl, Key::ctrl('k')},
    {'l', Ctrl, Key::ctrl('l')}, {'m', Ctrl, Key::ctrl('m')}, {'n', Ctrl, Key::ctrl('n')},
    {'o', Ctrl, Key::ctrl('o')}, {'p', Ctrl, Key::ctrl('p')}, {'q', Ctrl, Key::ctrl('q')},
    {'r', Ctrl, Key::ctrl('r')}, {'s', Ctrl, Key::ctrl('s')}, {'t', Ctrl, Key::ctrl('t')},
    {'u', Ctrl, Key::ctrl('u')}, {'v', Ctrl, Key::ctrl('v')}, {'w', Ctrl, Key::ctrl('w')},
    {'x', Ctrl, Key::ctrl('x')}, {'y', Ctrl, Key::ctrl('y')}, {'z', Ctrl, Key::ctrl('z')},
    {GDK_space, Ctrl, Key::Space}, {GDK_KP_Add, Ctrl, Key::CtrlGrayPlus},
    {GDK_KP_Subtract, Ctrl, Key::CtrlGrayMinus}, {GDK_KP_0, Ctrl, Key::ctrlKeypadDigit(0)},
    {GDK_KP_1, Ctrl, Key::ctrlKeypadDigit(1)}, {GDK_KP_2, Ctrl, Key::ctrlKeypadDigit(2)},
    {GDK_KP_3, Ctrl, Key::ctrlKeypadDigit(3)}, {GDK_KP_4, Ctrl, Key::ctrlKeypadDigit(4)},
    {GDK_KP_5, Ctrl, Key::ctrlKeypadDigit(5)}, {GDK_KP_6, Ctrl, Key::ctrlKeypadDigit(6)},
    {GDK_KP_7, Ctrl, Key::ctrlKeypadDigit(7)}, {GDK_KP_8, Ctrl, Key::ctrlKeypadDigit(8)},
    {GDK_KP_9, Ctrl, Key::ctrlKeypadDigit(9)}, {GDK_KP_Insert, Ctrl, Key::ctrlKeypadDigit(0)},
    {GDK_KP_End, Ctrl, Key::ctrlKeypadDigit(1)}, {GDK_KP_Down, Ctrl, Key::ctrlKeypadDigit(2)},
    {GDK_KP_Page_Down, Ctrl, Key::ctrlKeypadDigit(3)}, {GDK_KP_Left, Ctrl, Key::ctrlKeypadDigit(4)},
    {GDK_KP_Begin, Ctrl, Key::ctrlKeypadDigit(5)}, {GDK_KP_Right, Ctrl, Key::ctrlKeypadDigit(6)},
    {GDK_KP_Home, Ctrl, Key::ctrlKeypadDigit(7)}, {GDK_KP_Up, Ctrl, Key::ctrlKeypadDigit(8)},
    {GDK_KP_Page_Up, Ctrl, Key::ctrlKeypadDigit(9)},
    // Shift
    {GDK_F1, Shift, Key::ShiftF1}, {GDK_F2, Shift, Key::ShiftF2}, {GDK_F3, Shift, Key::ShiftF3},
    {GDK_F4, Shift, Key::ShiftF4}, {GDK_F5, Shift, Key::ShiftF5}, {GDK_F6, Shift, Key::ShiftF6},
    {GDK_F7, Shift, Key::ShiftF7}, {GDK_F8, Shift, Key::ShiftF8}, {GDK_F9, Shift, Key::ShiftF9},
    {GDK_F10, Shift, Key::ShiftF10}, {GDK_F11, Shift, Key::ShiftF11},
    {GDK_F12, Shift, Key::ShiftF12}, {GDK_Left, Shift, Key::ShiftLeft},
    {GDK_Up, Shift, Key::ShiftUp}, {GDK_Right, Shift, Key::ShiftRight},
    {GDK_Down, Shift, Key::ShiftDown}, {GDK_ISO_Left_Tab, Shift, Key::ShiftTab},
    {GDK_Delete, Shift, Key::ShiftDelete}, {GDK_Home, Shift, Key::ShiftHome},
    {GDK_Page_Up, Shift, Key::ShiftPageUp}, {GDK_Page_Down, Shift, Key::ShiftPageDown},
    {GDK_End, Shift, Key::ShiftEnd}, {GDK_Insert, Shift, Key::ShiftInsert},
    {GDK_Return, Shift, Key::Enter},
    // Ctrl and Shift
    {GDK_F1, CtrlShift, Key::CtrlShiftF1}, {GDK_F2, CtrlShift, Key::CtrlShiftF2},
    {GDK_F3, CtrlShift, Key::CtrlShiftF3}, {GDK_F4, CtrlShift, Key::CtrlShiftF4},
    {GDK_F5, CtrlShift, Key::CtrlShiftF5}, {GDK_F6, CtrlShift, Key::CtrlShiftF6},
    {GDK_F7, CtrlShift, Key::CtrlShiftF7}, {GDK_F8, CtrlShift, Key::CtrlShiftF8},
    {GDK_F9, CtrlShift, Key::CtrlShiftF9}, {GDK_F10, CtrlShift, Key::CtrlShiftF10},
    {GDK_F11, CtrlShift, Key::CtrlShiftF11}, {GDK_F12, CtrlShift, Key::CtrlShiftF12},
    {GDK_Left, CtrlShift, Key::CtrlShiftLeft}, {GDK_Right, CtrlShift, Key::CtrlShiftRight},
    {GDK_Home, CtrlShift, Key::CtrlShiftHome}, {GDK_End, CtrlShift, Key::CtrlShiftEnd},
    {GDK_Page_Up, CtrlShift, Key::CtrlShiftPageUp},
    {GDK_Page_Down, CtrlShift, Key::CtrlShiftPageDown},
    {GDK_Insert, CtrlShift, Key::CtrlShiftInsert}, {GDK_Return, CtrlShift, Key::CtrlShiftEnter},
    {GDK_KP_Add, CtrlShift, Key::CtrlShiftGrayPlus},
    {GDK_KP_Subtract, CtrlShift, Key::CtrlShiftGrayMinus},
    {'|', CtrlShift, Key::CtrlShiftBackslash}, {'\'', CtrlShift, Key::CtrlShiftBackslash},
    {'f', CtrlShift, Key::CtrlShiftF}, {'j', CtrlShift, Key::CtrlShiftJ},
    {GDK_KP_0, CtrlShift, Key::ctrlKeypadDigit(0) | Key::ShiftedKey},
    {GDK_KP_1, CtrlShift, Key::ctrlKeypadDigit(1) | Key::ShiftedKey},
    {GDK_KP_2, CtrlShift, Key::ctrlKeypadDigit(2) | Key::ShiftedKey},
    {GDK_KP_3, CtrlShift, Key::ctrlKeypadDigit(3) | Key::ShiftedKey},
    {GDK_KP_4, CtrlShift, Key::ctrlKeypadDigit(4) | Key::ShiftedKey},
    {GDK_KP_5, CtrlShift, Key::ctrlKeypadDigit(5) | Key::ShiftedKey},
    {GDK_KP_6, CtrlShift, Key::ctrlKeypadDigit(6) | Key::ShiftedKey},
    {GDK_KP_7, CtrlShift, Key::ctrlKeypadDigit(7) | Key::ShiftedKey},
    {GDK_KP_8, CtrlShift, Key::ctrlKeypadDigit(8) | Key::ShiftedKey},
    {GDK_KP_9, CtrlShift, Key::ctrlKeypadDigit(9) | Key::ShiftedKey},
    // Alt and Shift
    {GDK_BackSpace, AltShift, Key::ShiftAltBackspace}, {GDK_F1, AltShift, Key::ShiftAltF1},
    {GDK_F2, AltShift, Key::ShiftAltF2}, {GDK_F3, AltShift, Key::ShiftAltF3},
    {GDK_F4, AltShift, Key::ShiftAltF4}, {GDK_F5, AltShift, Key::ShiftAltF5},
    {GDK_F6, AltShift, Key::ShiftAltF6}, {GDK_F7, AltShift, Key::ShiftAltF7},
    {GDK_F8, AltShift, Key::ShiftAltF8}, {GDK_F9, AltShift, Key::ShiftAltF9},
    {GDK_F10, AltShift, Key::ShiftAltF10}, {GDK_F11, AltShift, Key::ShiftAltF11},
    {GDK_F12, AltShift, Key::ShiftAltF12}, {'_', AltShift, Key::shiftAlt('-')},
    {'+', AltShift, Key::shiftAlt('=')}, {'!', AltShift, Key::shiftAlt('1')},
    {'@', AltShift, Key::shiftAlt('2')}, {'#', AltShift, Key::shiftAlt('3')},
    {'$', AltShift, Key::shiftAlt('4')}, {'%', AltShift, Key::shiftAlt('5')},
    {'^', AltShift, Key::shiftAlt('6')}, {'&', AltShift, Key::shiftAlt('7')},
    {'(', AltShift, Key::shiftAlt('9')}, {')', AltShift, Key::shiftAlt('0')},
    {'{', AltShift, Key::shiftAlt('[')}, {'}', AltShift, Key::shiftAlt(']')},
    {'~', AltShift, Key::alt('`')}, {':', AltShift, Key::shiftAlt(';')},
    {'"', AltShift, Key::shiftAlt('\'')}, {'\'', AltShift, Key::alt('\'')},
    // the modifier keys themselves
    {GDK_Alt_L, AnyState, Key::ShiftChanged}, {GDK_Alt_R, AnyState, Key::ShiftChanged},
    {GDK_Control_L, AnyState, Key::ShiftChanged}, {GDK_Control_R, AnyState, Key::ShiftChanged},
    {GDK_Shift_L, AnyState, Key::ShiftChanged}, {GDK_Shift_R, AnyState, Key::ShiftChanged},
};
// clang-format on
static_assert(std::size(Table) == 270);

// Beside the table: keys that only the editor has commands for, and those of the keypad, whose
// symbol under Shift depends on Num Lock.
constexpr KeyRow MoreKeys[] = {
    {GDK_space, Alt, Key::AltSpace},
    {'c', CtrlShift, Key::CtrlShiftC},
    {'x', CtrlShift, Key::CtrlShiftX},
    {'z', CtrlShift, Key::CtrlShiftZ},
    {GDK_KP_Insert, CtrlShift, Key::ctrlKeypadDigit(0) | Key::ShiftedKey},
    {GDK_KP_End, CtrlShift, Key::ctrlKeypadDigit(1) | Key::ShiftedKey},
    {GDK_KP_Down, CtrlShift, Key::ctrlKeypadDigit(2) | Key::ShiftedKey},
    {GDK_KP_Page_Down, CtrlShift, Key::ctrlKeypadDigit(3) | Key::ShiftedKey},
    {GDK_KP_Left, CtrlShift, Key::ctrlKeypadDigit(4) | Key::ShiftedKey},
    {GDK_KP_Begin, CtrlShift, Key::ctrlKeypadDigit(5) | Key::ShiftedKey},
    {GDK_KP_Right, CtrlShift, Key::ctrlKeypadDigit(6) | Key::ShiftedKey},
    {GDK_KP_Home, CtrlShift, Key::ctrlKeypadDigit(7) | Key::ShiftedKey},
    {GDK_KP_Up, CtrlShift, Key::ctrlKeypadDigit(8) | Key::ShiftedKey},
    {GDK_KP_Page_Up, CtrlShift, Key::ctrlKeypadDigit(9) | Key::ShiftedKey},
};

Key::Code codeIn(std::span<const KeyRow> rows, unsigned symbol, int state) {
  for (const KeyRow& row : rows) {
    if (row.symbol == symbol && (row.state == AnyState || row.state == state) &&
        row.code != Key::NoKey) {
      return row.code;
    }
  }
  return Key::NoKey;
}

struct Twin {
  unsigned symbol;
  unsigned twin;
};

// Keys that mean what another key means: the keypad without Num Lock, the other names of Back Tab,
// and Meta, which is what many layouts make of Alt while Shift is down.
constexpr Twin Twins[] = {
    {GDK_KP_Home, GDK_Home},
    {GDK_KP_Left, GDK_Left},
    {GDK_KP_Up, GDK_Up},
    {GDK_KP_Right, GDK_Right},
    {GDK_KP_Down, GDK_Down},
    {GDK_KP_Page_Up, GDK_Page_Up},
    {GDK_KP_Page_Down, GDK_Page_Down},
    {GDK_KP_End, GDK_End},
    {GDK_KP_Insert, GDK_Insert},
    {GDK_KP_Delete, GDK_Delete},
    {GDK_KP_Begin, GDK_Begin},
    {GDK_KP_Enter, GDK_Return},
    {GDK_KP_Tab, GDK_Tab},
    {GDK_KP_Space, GDK_space},
    {GDK_3270_BackTab, GDK_ISO_Left_Tab},
    {GDK_Meta_L, GDK_Alt_L},
    {GDK_Meta_R, GDK_Alt_R},
};

unsigned twinOf(unsigned symbol) {
  for (const Twin& twin : Twins) {
    if (twin.symbol == symbol) return twin.twin;
  }
  return symbol;
}

// Which bit a modifier key stands for; 0 for any other key.
int modifierBit(unsigned symbol) {
  switch (symbol) {
    case GDK_Alt_L:
    case GDK_Alt_R:
      return Alt;
    case GDK_Control_L:
    case GDK_Control_R:
      return Ctrl;
    case GDK_Shift_L:
    case GDK_Shift_R:
      return Shift;
    default:
      return 0;
  }
}

unsigned lowered(unsigned symbol) {
  return symbol >= 'A' && symbol <= 'Z' ? symbol - 'A' + 'a' : symbol;
}

bool isKeypadOperator(unsigned symbol) {
  return symbol == GDK_KP_Add || symbol == GDK_KP_Subtract || symbol == GDK_KP_Multiply;
}

// The row of the symbol, else that of its twin; Shift counts for nothing with Backspace and with
// the keypad's operators, whose commands look at it themselves, and a Tab with Shift is a Back Tab
// whatever it is called.
Key::Code codeOf(unsigned symbol, int state) {
  const Key::Code own = lookUpKey(symbol, state);
  if (own != Key::NoKey) return own;
  const unsigned twin = twinOf(symbol);
  if (twin != symbol) {
    const Key::Code code = lookUpKey(twin, state);
    if (code != Key::NoKey) return code;
  }
  if (state != Shift) return Key::NoKey;
  if (twin == GDK_BackSpace || isKeypadOperator(twin)) return lookUpKey(twin, None);
  if (twin == GDK_Tab) return lookUpKey(GDK_ISO_Left_Tab, Shift);
  return Key::NoKey;
}
}  // namespace

std::span<const KeyRow> keyTable() {
  return Table;
}

Key::Code lookUpKey(unsigned symbol, int state) {
  const Key::Code code = codeIn(Table, symbol, state);
  return code != Key::NoKey ? code : codeIn(MoreKeys, symbol, state);
}

KeyResult translateKey(const KeyInput& input) {
  int state = static_cast<int>(input.state) & ShiftState::Mask;
  const int modifier = modifierBit(twinOf(input.symbol));
  if (modifier != 0) state = input.press ? state | modifier : state & ~modifier;
  if (input.symbol == GDK_Break) return {KeyAction::Break, Key::NoKey, state};
  if (!input.press && modifier == 0) return {KeyAction::Drop, Key::NoKey, state};

  Key::Code code = codeOf(lowered(input.symbol), state);
  if (code == Key::NoKey && input.baseSymbol != 0 && (state & (Alt | Ctrl)) != 0) {
    code = codeOf(lowered(input.baseSymbol), state);
  }
  if ((state & Ctrl) != 0 && HardwareKey::isDigit(input.hwCode)) {
    code = Key::Code(static_cast<int>(input.symbol));
  }
  if (code == Key::NoKey) return {KeyAction::InputMethod, Key::NoKey, state};
  return {KeyAction::Queue, code, state};
}
