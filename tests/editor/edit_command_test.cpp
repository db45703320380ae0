#include "editor/window/edit_command.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

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
      const auto [owner, isNew] = owners.emplace(std::pair(code, command.modifiers), command.name);
      EXPECT_TRUE(isNew) << code << ": " << owner->second << ", " << command.name;
    }
  }
}

TEST(EditCommands, ARowForHeldModifiersIsFoundBeforeThePlainOne) {
  for (const EditCommand& command : allEditCommands()) {
    for (const Key::Code code : command.codes) {
      EXPECT_EQ(findEditCommand(code, command.modifiers), &command) << command.name;
    }
  }
}

TEST(EditCommands, AModifierMakesNoOtherCommandOfAPlainRow) {
  const EditCommand* plain = findEditCommand(Key::Backspace, 0);
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(findEditCommand(Key::Backspace, ShiftState::Shift), plain);
  EXPECT_EQ(findEditCommand(Key::Space, 0), nullptr);
  EXPECT_EQ(findEditCommand(Key::F9, 0), nullptr);
}

}  // namespace
