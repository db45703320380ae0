#include "editor/window/edit_command.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/key_print.h"

namespace {

TEST(EditCommands, EachHasANameOfItsOwnAndAKey) {
  std::set<std::string_view> names;
  for (const EditCommand& command : allEditCommands()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_FALSE(command.codes.empty()) << command.name;
  }
  EXPECT_GT(names.size(), 50u);
}

TEST(EditCommands, NoKeyMeansTwoOfThem) {
  std::map<std::pair<Key::Code, int>, std::string_view> owners;
  for (const EditCommand& command : allEditCommands()) {
    for (const Key::Code code : command.codes) {
      const auto [owner, isNew] =
          owners.emplace(std::pair(code, command.traits.modifiers), command.name);
      EXPECT_TRUE(isNew) << code << ": " << owner->second << ", " << command.name;
    }
  }
}

TEST(EditCommands, ARowForHeldModifiersIsFoundBeforeThePlainOne) {
  for (const EditCommand& command : allEditCommands()) {
    for (const Key::Code code : command.codes) {
      EXPECT_EQ(findEditCommand(code, command.traits.modifiers), &command) << command.name;
    }
  }
}

TEST(EditCommands, AllKeysOfTheEditorHaveOne) {
  using namespace Key;
  std::vector<Code> keys = {F1,
                            F2,
                            F3,
                            F4,
                            ShiftDelete,
                            ctrl('x'),
                            ShiftF4,
                            F5,
                            CtrlInsert,
                            ctrl('c'),
                            CtrlShiftInsert,
                            F6,
                            ShiftInsert,
                            ctrl('v'),
                            F7,
                            ShiftF7,
                            AltF7,
                            F8,
                            F10,
                            Esc,
                            ShiftF10,
                            Up,
                            Down,
                            Left,
                            Right,
                            Home,
                            End,
                            PageUp,
                            PageDown,
                            CtrlHome,
                            CtrlEnd,
                            CtrlPageUp,
                            CtrlPageDown,
                            CtrlLeft,
                            CtrlRight,
                            ShiftUp,
                            ShiftDown,
                            ShiftLeft,
                            ShiftRight,
                            ShiftHome,
                            ShiftEnd,
                            ShiftPageUp,
                            ShiftPageDown,
                            CtrlShiftHome,
                            CtrlShiftEnd,
                            CtrlShiftPageUp,
                            CtrlShiftPageDown,
                            CtrlShiftLeft,
                            CtrlShiftRight,
                            Backspace,
                            Key::Delete,
                            CtrlBackspace,
                            CtrlDelete,
                            ctrl('y'),
                            ctrl('d'),
                            ctrl('w'),
                            ctrl('a'),
                            ctrl('q'),
                            Enter,
                            AltEnter,
                            AltSpace,
                            Key::Insert,
                            AltBackspace,
                            ShiftAltBackspace,
                            AltLeft,
                            AltRight,
                            ctrl('z'),
                            CtrlShiftZ,
                            CtrlShiftX,
                            CtrlShiftC,
                            ctrl('s'),
                            ctrl('f'),
                            CtrlUp,
                            CtrlDown,
                            ctrl('l')};
  for (const char letter : std::string("12345678isulhect[m,.")) keys.push_back(alt(letter));
  for (const Code key : keys) EXPECT_NE(findEditCommand(key, 0), nullptr) << key;
  EXPECT_NE(findEditCommand(Space, ShiftState::Ctrl), nullptr);
  EXPECT_NE(findEditCommand(Enter, ShiftState::Shift), findEditCommand(Enter, 0));
}

TEST(EditCommands, AModifierMakesNoOtherCommandOfAPlainRow) {
  const EditCommand* plain = findEditCommand(Key::Backspace, 0);
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(findEditCommand(Key::Backspace, ShiftState::Shift), plain);
  EXPECT_EQ(findEditCommand(Key::Space, 0), nullptr);
  EXPECT_EQ(findEditCommand(Key::F9, 0), nullptr);
}

}  // namespace
