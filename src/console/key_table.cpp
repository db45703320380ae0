#include "console/key_table.h"

#include <gdk/gdkkeysyms.h>

#include "console/key_codes.h"

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
    {GDK_F1, None, 0x1003B}, {GDK_F2, None, 0x1003C}, {GDK_F3, None, 0x1003D},
    {GDK_F4, None, 0x1003E}, {GDK_F5, None, 0x1003F}, {GDK_F6, None, 0x10040},
    {GDK_F7, None, 0x10041}, {GDK_F8, None, 0x10042}, {GDK_F9, None, 0x10043},
    {GDK_F10, None, 0x10044}, {GDK_F11, None, 0x10085}, {GDK_F12, None, 0x10086},
    {GDK_Return, None, 13}, {GDK_BackSpace, None, 0x10101}, {GDK_Tab, None, 9},
    {GDK_Escape, None, 27}, {GDK_Delete, None, 0x10053}, {GDK_Home, None, 0x10047},
    {GDK_Left, None, 0x1004B}, {GDK_Up, None, 0x10048}, {GDK_Right, None, 0x1004D},
    {GDK_Down, None, 0x10050}, {GDK_Page_Up, None, 0x10049}, {GDK_Page_Down, None, 0x10051},
    {GDK_End, None, 0x1004F}, {GDK_Insert, None, 0x10052},
    {GDK_KP_Add, None, 0x40002B}, {GDK_KP_Subtract, None, 0x40002D},
    {GDK_KP_Multiply, None, 0x40002A},
    // Alt
    {GDK_F1, Alt, 0x10068}, {GDK_F2, Alt, 0x10069}, {GDK_F3, Alt, 0x1006A},
    {GDK_F4, Alt, 0x1006B}, {GDK_F5, Alt, 0x1006C}, {GDK_F6, Alt, 0x1006D},
    {GDK_F7, Alt, 0x1006E}, {GDK_F8, Alt, 0x1006F}, {GDK_F9, Alt, 0x10070},
    {GDK_F10, Alt, 0x10071}, {GDK_F11, Alt, 0x1008B}, {GDK_F12, Alt, 0x1008C},
    {GDK_Return, Alt, 0x1001C}, {GDK_BackSpace, Alt, 0x1000E}, {GDK_Left, Alt, 0x1009B},
    {GDK_Up, Alt, 0x10098}, {GDK_Right, Alt, 0x1009D}, {GDK_Down, Alt, 0x100A0},
    {GDK_Home, Alt, 0x10097}, {GDK_KP_Add, Alt, 0x1004E}, {GDK_KP_Subtract, Alt, 0x1004A},
    {'0', Alt, 0x10081}, {'1', Alt, 0x10078}, {'2', Alt, 0x10079}, {'3', Alt, 0x1007A},
    {'4', Alt, 0x1007B}, {'5', Alt, 0x1007C}, {'6', Alt, 0x1007D}, {'7', Alt, 0x1007E},
    {'8', Alt, 0x1007F}, {'9', Alt, 0x10080},
    {'\\', Alt, 0x1002B}, {'.', Alt, 0x10034}, {',', Alt, 0x10033}, {'[', Alt, 0x1001A},
    {']', Alt, 0x1001B}, {'-', Alt, 0x10082}, {'=', Alt, 0x10083}, {';', Alt, 0x10027},
    {'\'', Alt, 0x10028}, {'#', Alt, 0x3007A},
    {'a', Alt, 0x1001E}, {'b', Alt, 0x10030}, {'c', Alt, 0x1002E}, {'d', Alt, 0x10020},
    {'e', Alt, 0x10012}, {'f', Alt, 0x10021}, {'g', Alt, 0x10022}, {'h', Alt, 0x10023},
    {'i', Alt, 0x10017}, {'j', Alt, 0x10024}, {'k', Alt, 0x10025}, {'l', Alt, 0x10026},
    {'m', Alt, 0x10032}, {'n', Alt, 0x10031}, {'o', Alt, 0x10018}, {'p', Alt, 0x10019},
    {'q', Alt, 0x10010}, {'r', Alt, 0x10013}, {'s', Alt, 0x1001F}, {'t', Alt, 0x10014},
    {'u', Alt, 0x10016}, {'v', Alt, 0x1002F}, {'w', Alt, 0x10011}, {'x', Alt, 0x1002D},
    {'y', Alt, 0x10015}, {'z', Alt, 0x1002C},
    // Ctrl
    {GDK_F1, Ctrl, 0x1005E}, {GDK_F2, Ctrl, 0x1005F}, {GDK_F3, Ctrl, 0x10060},
    {GDK_F4, Ctrl, 0x10061}, {GDK_F5, Ctrl, 0x10062}, {GDK_F6, Ctrl, 0x10063},
    {GDK_F7, Ctrl, 0x10064}, {GDK_F8, Ctrl, 0x10065}, {GDK_F9, Ctrl, 0x10066},
    {GDK_F10, Ctrl, 0x10067}, {GDK_F11, Ctrl, 0x10089}, {GDK_F12, Ctrl, 0x1008A},
    {GDK_BackSpace, Ctrl, 127}, {GDK_Delete, Ctrl, 0x10093}, {GDK_Home, Ctrl, 0x10077},
    {GDK_Left, Ctrl, 0x10073}, {GDK_Up, Ctrl, 0x1008D}, {GDK_Right, Ctrl, 0x10074},
    {GDK_Down, Ctrl, 0x10091}, {GDK_Page_Up, Ctrl, 0x10084}, {GDK_Page_Down, Ctrl, 0x10076},
    {GDK_End, Ctrl, 0x10075}, {GDK_Insert, Ctrl, 0x10092}, {GDK_Return, Ctrl, 10},
    {'\\', Ctrl, 28}, {'#', Ctrl, 28}, {'-', Ctrl, 31}, {'[', Ctrl, 27}, {']', Ctrl, 29},
    {'a', Ctrl, 1}, {'b', Ctrl, 2}, {'c', Ctrl, 3}, {'d', Ctrl, 4}, {'e', Ctrl, 5},
    {'f', Ctrl, 6}, {'g', Ctrl, 7}, {'h', Ctrl, 8}, {'i', Ctrl, 9}, {'j', Ctrl, 10},
    {'k', Ctrl, 11}, {'l', Ctrl, 12}, {'m', Ctrl, 13}, {'n', Ctrl, 14}, {'o', Ctrl, 15},
    {'p', Ctrl, 16}, {'q', Ctrl, 17}, {'r', Ctrl, 18}, {'s', Ctrl, 19}, {'t', Ctrl, 20},
    {'u', Ctrl, 21}, {'v', Ctrl, 22}, {'w', Ctrl, 23}, {'x', Ctrl, 24}, {'y', Ctrl, 25},
    {'z', Ctrl, 26}, {GDK_space, Ctrl, 32},
    {GDK_KP_Add, Ctrl, 0x10090}, {GDK_KP_Subtract, Ctrl, 0x1008E},
    {GDK_KP_0, Ctrl, 0x40030}, {GDK_KP_1, Ctrl, 0x40031}, {GDK_KP_2, Ctrl, 0x40032},
    {GDK_KP_3, Ctrl, 0x40033}, {GDK_KP_4, Ctrl, 0x40034}, {GDK_KP_5, Ctrl, 0x40035},
    {GDK_KP_6, Ctrl, 0x40036}, {GDK_KP_7, Ctrl, 0x40037}, {GDK_KP_8, Ctrl, 0x40038},
    {GDK_KP_9, Ctrl, 0x40039},
    {GDK_KP_Insert, Ctrl, 0x40030}, {GDK_KP_End, Ctrl, 0x40031}, {GDK_KP_Down, Ctrl, 0x40032},
    {GDK_KP_Page_Down, Ctrl, 0x40033}, {GDK_KP_Left, Ctrl, 0x40034}, {GDK_KP_Begin, Ctrl, 0x40035},
    {GDK_KP_Right, Ctrl, 0x40036}, {GDK_KP_Home, Ctrl, 0x40037}, {GDK_KP_Up, Ctrl, 0x40038},
    {GDK_KP_Page_Up, Ctrl, 0x40039},
    // Shift
    {GDK_F1, Shift, 0x30054}, {GDK_F2, Shift, 0x30055}, {GDK_F3, Shift, 0x30056},
    {GDK_F4, Shift, 0x30057}, {GDK_F5, Shift, 0x30058}, {GDK_F6, Shift, 0x30059},
    {GDK_F7, Shift, 0x3005A}, {GDK_F8, Shift, 0x3005B}, {GDK_F9, Shift, 0x3005C},
    {GDK_F10, Shift, 0x3005D}, {GDK_F11, Shift, 0x30087}, {GDK_F12, Shift, 0x30088},
    {GDK_Left, Shift, 0x3004B}, {GDK_Up, Shift, 0x30048}, {GDK_Right, Shift, 0x3004D},
    {GDK_Down, Shift, 0x30050}, {GDK_ISO_Left_Tab, Shift, 0x3000F}, {GDK_Delete, Shift, 0x30053},
    {GDK_Home, Shift, 0x30047}, {GDK_Page_Up, Shift, 0x30049}, {GDK_Page_Down, Shift, 0x30051},
    {GDK_End, Shift, 0x3004F}, {GDK_Insert, Shift, 0x30052}, {GDK_Return, Shift, 13},
    // Ctrl and Shift
    {GDK_F1, CtrlShift, 0x3005E}, {GDK_F2, CtrlShift, 0x3005F}, {GDK_F3, CtrlShift, 0x30060},
    {GDK_F4, CtrlShift, 0x30061}, {GDK_F5, CtrlShift, 0x30062}, {GDK_F6, CtrlShift, 0x30063},
    {GDK_F7, CtrlShift, 0x30064}, {GDK_F8, CtrlShift, 0x30065}, {GDK_F9, CtrlShift, 0x30066},
    {GDK_F10, CtrlShift, 0x30067}, {GDK_F11, CtrlShift, 0x30089}, {GDK_F12, CtrlShift, 0x3008A},
    {GDK_Left, CtrlShift, 0x30073}, {GDK_Right, CtrlShift, 0x30074},
    {GDK_Home, CtrlShift, 0x30077}, {GDK_End, CtrlShift, 0x30075},
    {GDK_Page_Up, CtrlShift, 0x30084}, {GDK_Page_Down, CtrlShift, 0x30076},
    {GDK_Insert, CtrlShift, 0x30092}, {GDK_Return, CtrlShift, 0x3001C},
    {GDK_KP_Add, CtrlShift, 0x30090}, {GDK_KP_Subtract, CtrlShift, 0x3008E},
    {'|', CtrlShift, 0x2001C}, {'\'', CtrlShift, 0x2001C},
    {'f', CtrlShift, 0x20006}, {'j', CtrlShift, 0x2000A},
    {GDK_KP_0, CtrlShift, 0x60030}, {GDK_KP_1, CtrlShift, 0x60031}, {GDK_KP_2, CtrlShift, 0x60032},
    {GDK_KP_3, CtrlShift, 0x60033}, {GDK_KP_4, CtrlShift, 0x60034}, {GDK_KP_5, CtrlShift, 0x60035},
    {GDK_KP_6, CtrlShift, 0x60036}, {GDK_KP_7, CtrlShift, 0x60037}, {GDK_KP_8, CtrlShift, 0x60038},
    {GDK_KP_9, CtrlShift, 0x60039},
    // Alt and Shift
    {GDK_BackSpace, AltShift, 0x3000E},
    {GDK_F1, AltShift, 0x30068}, {GDK_F2, AltShift, 0x30069}, {GDK_F3, AltShift, 0x3006A},
    {GDK_F4, AltShift, 0x3006B}, {GDK_F5, AltShift, 0x3006C}, {GDK_F6, AltShift, 0x3006D},
    {GDK_F7, AltShift, 0x3006E}, {GDK_F8, AltShift, 0x3006F}, {GDK_F9, AltShift, 0x30070},
    {GDK_F10, AltShift, 0x30071}, {GDK_F11, AltShift, 0x3008B}, {GDK_F12, AltShift, 0x3008C},
    {'_', AltShift, 0x30082}, {'+', AltShift, 0x30083}, {'!', AltShift, 0x30078},
    {'@', AltShift, 0x30079}, {'#', AltShift, 0x3007A}, {'$', AltShift, 0x3007B},
    {'%', AltShift, 0x3007C}, {'^', AltShift, 0x3007D}, {'&', AltShift, 0x3007E},
    {'(', AltShift, 0x30080}, {')', AltShift, 0x30081}, {'{', AltShift, 0x3001A},
    {'}', AltShift, 0x3001B}, {'~', AltShift, 0x10029}, {':', AltShift, 0x30027},
    {'"', AltShift, 0x30028}, {'\'', AltShift, 0x10028},
    // the modifier keys themselves
    {GDK_Alt_L, AnyState, 0x10100}, {GDK_Alt_R, AnyState, 0x10100},
    {GDK_Control_L, AnyState, 0x10100}, {GDK_Control_R, AnyState, 0x10100},
    {GDK_Shift_L, AnyState, 0x10100}, {GDK_Shift_R, AnyState, 0x10100},
};
// clang-format on
static_assert(std::size(Table) == 270);

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
int codeOf(unsigned symbol, int state) {
  if (const int code = lookUpKey(symbol, state)) return code;
  const unsigned twin = twinOf(symbol);
  if (twin != symbol) {
    if (const int code = lookUpKey(twin, state)) return code;
  }
  if (state != Shift) return 0;
  if (twin == GDK_BackSpace || isKeypadOperator(twin)) return lookUpKey(twin, None);
  if (twin == GDK_Tab) return lookUpKey(GDK_ISO_Left_Tab, Shift);
  return 0;
}
}  // namespace

std::span<const KeyRow> keyTable() {
  return Table;
}

int lookUpKey(unsigned symbol, int state) {
  for (const KeyRow& row : Table) {
    if (row.symbol == symbol && (row.state == AnyState || row.state == state) && row.code != 0) {
      return row.code;
    }
  }
  return 0;
}

KeyResult translateKey(const KeyInput& input) {
  int state = static_cast<int>(input.state) & ShiftState::Mask;
  const int modifier = modifierBit(twinOf(input.symbol));
  if (modifier != 0) state = input.press ? state | modifier : state & ~modifier;
  if (input.symbol == GDK_Break) return {KeyAction::Break, 0, state};
  if (!input.press && modifier == 0) return {KeyAction::Drop, 0, state};

  int code = codeOf(lowered(input.symbol), state);
  if (code == 0 && input.baseSymbol != 0 && (state & (Alt | Ctrl)) != 0) {
    code = codeOf(lowered(input.baseSymbol), state);
  }
  if ((state & Ctrl) != 0 && HardwareKey::isDigit(input.hwCode)) {
    code = static_cast<int>(input.symbol);
  }
  if (code == 0) return {KeyAction::InputMethod, 0, state};
  return {KeyAction::Queue, code, state};
}
