#include <X11/keysym.h>

#include "editor/window/edit_command.h"
#include "support/console_test.h"
#include "support/x_keys.h"

namespace {

using Symbols = std::vector<unsigned long>;
const Symbols None, Shift{XK_Shift_L}, Ctrl{XK_Control_L}, Alt{XK_Alt_L};
const Symbols CtrlShift{XK_Control_L, XK_Shift_L}, AltShift{XK_Alt_L, XK_Shift_L};

struct KeyRow {
  unsigned long symbol;
  Symbols modifiers;
  const char* command;
};

// The keys of the keypad, by what they are without Num Lock.
constexpr unsigned long KeypadDigits[] = {XK_KP_Insert, XK_KP_End,   XK_KP_Down,  XK_KP_Next,
                                          XK_KP_Left,   XK_KP_Begin, XK_KP_Right, XK_KP_Home,
                                          XK_KP_Up,     XK_KP_Prior};

// From a key of the keyboard to the command of the editor that it runs.
class EditorRealKeys : public RealKeysTest {
 protected:
  // The name of the command, of a bookmark, or "" for none.
  std::string commandOf(unsigned long symbol, const Symbols& modifiers) {
    XKeys::get().press(symbol, modifiers);
    return awaitedCommand();
  }
  std::string awaitedCommand() {
    MouseMessage message;
    const Key::Code key = waitKey(&message);
    if (key.has(Key::CtrlDigitKey)) {
      return (key.has(Key::ShiftedKey) ? "set " : "go to ") + std::to_string(Key::digitOf(key));
    }
    const EditCommand* command = findEditCommand(key, message.state);
    return command ? std::string(command->name) : "";
  }
};

TEST_F(EditorRealKeys, EachReachesItsCommand) {
  const KeyRow rows[] = {
      {XK_F1, None, "Help"},
      {XK_F2, None, "Save"},
      {XK_s, Ctrl, "Save"},
      {XK_F3, None, "Save as"},
      {XK_F4, None, "Cut"},
      {XK_Delete, Shift, "Cut"},
      {XK_x, Ctrl, "Cut"},
      {XK_F4, Shift, "Cut behind"},
      {XK_x, CtrlShift, "Cut behind"},
      {XK_F5, None, "Copy"},
      {XK_Insert, Ctrl, "Copy, still marked"},
      {XK_c, Ctrl, "Copy, still marked"},
      {XK_F5, Shift, "Copy behind"},
      {XK_Insert, CtrlShift, "Copy behind, still marked"},
      {XK_c, CtrlShift, "Copy behind, still marked"},
      {XK_F6, None, "Paste"},
      {XK_Insert, Shift, "Paste"},
      {XK_v, Ctrl, "Paste"},
      {XK_F7, None, "Search"},
      {XK_f, Ctrl, "Search"},
      {XK_F7, Shift, "Search again"},
      {XK_F7, Alt, "Search the other way"},
      {XK_F8, None, "Replace"},
      {XK_F9, None, ""},
      {XK_F10, None, "Leave"},
      {XK_Escape, None, "Leave"},
      {XK_F10, Shift, "Save and leave"},
      {XK_Up, None, "Up"},
      {XK_Down, None, "Down"},
      {XK_Left, None, "Left"},
      {XK_Right, None, "Right"},
      {XK_Home, None, "Start of the line"},
      {XK_End, None, "End of the line"},
      {XK_Prior, None, "Page up"},
      {XK_Next, None, "Page down"},
      {XK_Home, Ctrl, "Start of the screen"},
      {XK_End, Ctrl, "End of the screen"},
      {XK_Prior, Ctrl, "Start of the text"},
      {XK_Next, Ctrl, "End of the text"},
      {XK_Left, Ctrl, "Word left"},
      {XK_Right, Ctrl, "Word right"},
      {XK_Up, Shift, "Up"},
      {XK_Down, Shift, "Down"},
      {XK_Left, Shift, "Left"},
      {XK_Right, Shift, "Right"},
      {XK_Home, Shift, "Start of the line"},
      {XK_End, Shift, "End of the line"},
      {XK_Prior, Shift, "Page up"},
      {XK_Next, Shift, "Page down"},
      {XK_Home, CtrlShift, "Start of the screen"},
      {XK_End, CtrlShift, "End of the screen"},
      {XK_Prior, CtrlShift, "Start of the text"},
      {XK_Next, CtrlShift, "End of the text"},
      {XK_Left, CtrlShift, "Word left"},
      {XK_Right, CtrlShift, "Word right"},
      {XK_Up, Ctrl, "Scroll up"},
      {XK_Down, Ctrl, "Scroll down"},
      {XK_l, Ctrl, "Repaint"},
      {XK_BackSpace, None, "Delete left"},
      {XK_BackSpace, Shift, "Delete left"},
      {XK_Delete, None, "Delete right"},
      {XK_BackSpace, Ctrl, "Delete word left"},
      {XK_Delete, Ctrl, "Delete word right"},
      {XK_y, Ctrl, "Delete the line"},
      {XK_d, Ctrl, "Duplicate the line"},
      {XK_w, Ctrl, "Copy word"},
      {XK_a, Ctrl, "Select all"},
      {XK_q, Ctrl, "Quote the next key"},
      {XK_Return, None, "Split the line"},
      {XK_KP_Enter, None, "Split the line"},
      {XK_Return, Shift, "Open a line above"},
      {XK_Return, Alt, "New line below"},
      {XK_space, Ctrl, "Character above"},
      {XK_space, Alt, "Rest of the line above"},
      {XK_Insert, None, "OverStrike"},
      {XK_BackSpace, Alt, "Undo a key"},
      {XK_BackSpace, AltShift, "Redo a key"},
      {XK_z, Ctrl, "Undo a command"},
      {XK_z, CtrlShift, "Redo a command"},
      {XK_Left, Alt, "Indent less"},
      {XK_Right, Alt, "Indent more"},
      {XK_1, Alt, "Tab width 1"},
      {XK_2, Alt, "Tab width 2"},
      {XK_3, Alt, "Tab width 3"},
      {XK_4, Alt, "Tab width 4"},
      {XK_5, Alt, "Tab width 5"},
      {XK_6, Alt, "Tab width 6"},
      {XK_7, Alt, "Tab width 7"},
      {XK_8, Alt, "Tab width 8"},
      {XK_i, Alt, "AutoIndent"},
      {XK_s, Alt, "Sticky mark"},
      {XK_u, Alt, "Line ends"},
      {XK_l, Alt, "Goto line"},
      {XK_h, Alt, "Colours"},
      {XK_e, Alt, "Encoding"},
      {XK_c, Alt, "Code page list"},
      {XK_t, Alt, "Next code page"},
      {XK_bracketleft, Alt, "Matching bracket"},
      {XK_m, Alt, "Matching bracket"},
      {XK_comma, Alt, "Search the word backward"},
      {XK_period, Alt, "Search the word forward"},
  };
  for (const KeyRow& row : rows) {
    SCOPED_TRACE(row.symbol);
    EXPECT_EQ(commandOf(row.symbol, row.modifiers), row.command);
  }
}

TEST_F(EditorRealKeys, CtrlAndADigitIsABookmarkWithAndWithoutNumLock) {
  for (const char* lock : {"off", "on", "off again"}) {
    for (int digit = 0; digit <= 9; ++digit) {
      SCOPED_TRACE(lock);
      EXPECT_EQ(commandOf(KeypadDigits[digit], Ctrl), "go to " + std::to_string(digit));
      EXPECT_EQ(commandOf(KeypadDigits[digit], CtrlShift), "set " + std::to_string(digit));
      XKeys::get().pressDigitKey(digit, Ctrl);
      EXPECT_EQ(awaitedCommand(), "go to " + std::to_string(digit));
      XKeys::get().pressDigitKey(digit, CtrlShift);
      EXPECT_EQ(awaitedCommand(), "set " + std::to_string(digit));
    }
    XKeys::get().press(XK_Num_Lock);
  }
  XKeys::get().press(XK_Num_Lock);
}

}  // namespace
