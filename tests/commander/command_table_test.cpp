// The table of commands as a whole: nothing twice, nothing out of reach, nothing forgotten.

#include "commander/command_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "commander/key_bar.h"
#include "commander/menu_items.h"
#include "console/key_table.h"
#include "console/text_state.h"
#include "support/key_print.h"

namespace {

struct Code {
  const char* name;
  int first, last;
};

// All codes that mean a command, as users' hands and the menus know them.
const Code ProgramCodes[] = {
    {"F1 to F10", 0x1003B, 0x10044},
    {"Shift-F1 to Shift-F10", 0x30054, 0x3005D},
    {"Ctrl-F1 to Ctrl-F8", 0x1005E, 0x10065},
    {"Alt-F1 to Alt-F10", 0x10068, 0x10071},
    {"Ctrl-Shift-F5", 0x30062, 0x30062},
    {"Shift-Alt-F1 to Shift-Alt-F5", 0x30068, 0x3006C},
    {"Shift-Alt-F7 to Shift-Alt-F9", 0x3006E, 0x30070},
    {"Alt-Backslash", 0x1002B, 0x1002B},
    {"Enter", 13, 13},
    {"Alt-Enter", 0x1001C, 0x1001C},
    {"Tab", 9, 9},
    {"Shift-Tab", 0x3000F, 0x3000F},
    {"Esc, also Ctrl-[", 27, 27},
    {"Ctrl-[", 0x9001A, 0x9001A},
    {"Ctrl-]", 29, 29},
    {"Ctrl-A", 1, 1},
    {"Ctrl-C to Ctrl-F", 3, 6},
    {"Ctrl-F", 0x90021, 0x90021},
    {"Ctrl-Shift-F", 0xB0021, 0xB0021},
    {"Ctrl-Shift-F", 0x20006, 0x20006},
    {"Ctrl-H", 8, 8},
    {"Ctrl-J, Ctrl-Enter", 10, 10},
    {"Ctrl-Enter", 0x9001C, 0x9001C},
    {"Ctrl-Shift-Enter", 0xB001C, 0xB001C},
    {"Ctrl-Shift-Enter", 0x3001C, 0x3001C},
    {"Ctrl-J", 0x90024, 0x90024},
    {"Ctrl-Shift-J", 0xB0024, 0xB0024},
    {"Ctrl-Shift-J", 0x2000A, 0x2000A},
    {"Ctrl-K", 11, 11},
    {"Ctrl-L", 12, 12},
    {"Ctrl-N to Ctrl-U", 14, 21},
    {"Ctrl-W to Ctrl-Y", 23, 25},
    {"Ctrl-Backslash", 28, 28},
    {"Ctrl-Shift-Backslash", 0x2001C, 0x2001C},
    {"Ctrl-_", 31, 31},
    {"Grey plus", 0x40002B, 0x40002B},
    {"Grey minus", 0x40002D, 0x40002D},
    {"Grey star", 0x40002A, 0x40002A},
    {"Alt-Grey-plus", 0x1004E, 0x1004E},
    {"Ctrl-Grey-plus", 0x10090, 0x10090},
    {"Ctrl-Shift-Grey-plus", 0x30090, 0x30090},
    {"Ctrl-Grey-minus", 0x1008E, 0x1008E},
    {"Ctrl-Shift-Grey-minus", 0x3008E, 0x3008E},
    {"Home, Up, Page Up", 0x10047, 0x10049},
    {"Left", 0x1004B, 0x1004B},
    {"Right", 0x1004D, 0x1004D},
    {"End, Down, Page Down, Ins, Del", 0x1004F, 0x10053},
    {"Shift-Ins", 0x30052, 0x30052},
    {"Ctrl-Left to Ctrl-Home", 0x10073, 0x10077},
    {"Ctrl-Page-Up", 0x10084, 0x10084},
    {"Ctrl-Up", 0x1008D, 0x1008D},
    {"Ctrl-Down, Ctrl-Ins, Ctrl-Del", 0x10091, 0x10093},
    {"Backspace", 0x10101, 0x10101},
    {"Ctrl-Backspace", 127, 127},
    {"Alt-Backspace", 0x1000E, 0x1000E},
    {"Alt-Home, Alt-Up", 0x10097, 0x10098},
    {"Alt-Left", 0x1009B, 0x1009B},
    {"Alt-Right", 0x1009D, 0x1009D},
    {"Alt-Down", 0x100A0, 0x100A0},
    {"Ctrl-0 to Ctrl-9", 0x40000, 0x40009},
    {"Ctrl and a digit of the keypad", 0x40030, 0x40039},
    {"Ctrl-Shift-0 to Ctrl-Shift-9", 0x60000, 0x60009},
    {"Ctrl-Shift and a digit of the keypad", 0x60030, 0x60039},
    {"panel menus: Info, sort orders, Brief, Full", 0x100000, 0x100010},
    {"panel menus: Filter, Re-read, Wide to Unix detail", 0x100012, 0x10001B},
    {"right menu: Info", 0x100193, 0x100193},
    {"right menu: Re-read, Filter", 0x10019B, 0x10019C},
    {"selection items", 0x10006D, 0x10006F},
    {"File Date/Time, Restore", 0x100071, 0x100072},
    {"Edit Associations, Edit User Menu", 0x1000D0, 0x1000D1},
    {"Configuration to Path Prompt", 0x10012C, 0x10012F},
    {"Full Screen to Retain Dir Count", 0x100131, 0x100137},
};

std::set<Key::Code> programCodes() {
  std::set<Key::Code> codes;
  for (const Code& row : ProgramCodes) {
    for (int code = row.first; code <= row.last; ++code) codes.insert(Key::Code(code));
  }
  return codes;
}

bool hasCode(const Command& command, Key::Code code) {
  return std::ranges::count(command.codes, code) > 0;
}

TEST(CommandTable, EveryCodeOfTheProgramRunsACommandAndNoOtherDoes) {
  const std::set<Key::Code> expected = programCodes();
  std::set<Key::Code> found;
  for (const Command& command : commandTable()) {
    for (Key::Code code : command.codes) {
      EXPECT_TRUE(expected.contains(code)) << command.name << " " << code;
      found.insert(code);
    }
  }
  for (const Code& row : ProgramCodes) {
    for (int code = row.first; code <= row.last; ++code) {
      EXPECT_TRUE(found.contains(Key::Code(code))) << row.name << " " << Key::Code(code);
    }
  }
}

TEST(CommandTable, EveryRowHasANameOfItsOwnAndACode) {
  std::set<std::string> names;
  for (const Command& command : commandTable()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_FALSE(command.codes.empty()) << command.name;
    EXPECT_EQ(std::set<Key::Code>(command.codes.begin(), command.codes.end()).size(),
              command.codes.size())
        << command.name;
  }
}

TEST(CommandTable, NoRowIsHiddenBehindAnEarlierOneOfItsCodes) {
  for (const Command& command : commandTable()) {
    EXPECT_FALSE(includes(command.when, When::ShiftHeld | When::ShiftUp)) << command.name;
    for (Key::Code code : command.codes) {
      for (const Command* earlier : commandsOf(code)) {
        if (earlier == &command) break;
        EXPECT_FALSE(includes(command.when, earlier->when))
            << std::hex << code << ": " << earlier->name << " hides " << command.name;
      }
    }
  }
}

// Keyboards that tell Ctrl with a letter or Enter by its scan code.
bool isScannedCtrl(Key::Code code) {
  return (code.value() & 0x80000) != 0 && code.value() < 0x100000;
}

TEST(CommandTable, EveryCodeIsAKeysOrAMenuItems) {
  std::set<Key::Code> reached;
  for (const KeyRow& row : keyTable()) reached.insert(row.code);
  for (const Menu& menu : menus()) {
    for (const menuItem& item : menu.items) reached.insert(item.code);
  }
  for (int digit = 0; digit <= 9; ++digit) {  // the digit row is told by its hardware codes
    reached.insert(Key::ctrlDigit(digit));
    reached.insert(Key::ctrlDigit(digit) | Key::ShiftedKey);
  }
  for (const Command& command : commandTable()) {
    for (Key::Code code : command.codes) {
      EXPECT_TRUE(reached.contains(code) || isScannedCtrl(code)) << command.name << " " << code;
    }
  }
}

TEST(CommandTable, EveryMenuItemIsARowAndEveryRowWithATextIsAnItem) {
  std::set<std::string> shown;
  for (const Menu& menu : menus()) {
    for (const menuItem& item : menu.items) {
      if (item.code == Key::NoKey) {
        EXPECT_TRUE(item.isSeparator());
        continue;
      }
      const auto rows = commandsOf(item.code);
      const auto row =
          std::ranges::find_if(rows, [&](const Command* c) { return c->menu.text == item.text; });
      ASSERT_NE(row, rows.end()) << std::hex << item.code;
      ASSERT_FALSE(item.isSeparator()) << (*row)->name;
      EXPECT_TRUE(shown.insert((*row)->name).second) << (*row)->name;
    }
  }
  for (const Command& command : commandTable()) {
    EXPECT_EQ(shown.contains(command.name), command.menu.text != nullptr) << command.name;
    EXPECT_TRUE(!command.mark || command.menu.text) << command.name;
  }
}

TEST(CommandTable, EveryLabelStandsOnTheKeyBarOverItsKey) {
  std::set<std::string> shown;
  for (int state = 0; state <= ShiftState::Mask; ++state) {
    if ((state & ShiftState::Mask) != state) continue;
    for (int number = 1; number <= KeyBarFields; ++number) {
      const Key::Code code = functionKey(number, state);
      if (code == Key::NoKey) continue;
      for (const Command& command : commandTable()) {
        if (!command.label || !hasCode(command, code)) continue;
        EXPECT_EQ(keyBarLabel(number, state), std::to_string(number) + command.label);
        EXPECT_TRUE(shown.insert(command.name).second) << command.name;
      }
    }
  }
  for (const Command& command : commandTable()) {
    EXPECT_EQ(shown.contains(command.name), command.label != nullptr) << command.name;
  }
}

TEST(CommandTable, EveryLabelOfTheKeyBarStandsOverAKeyThatRunsACommand) {
  int labels = 0;
  for (int state = 0; state <= ShiftState::Mask; ++state) {
    if ((state & ShiftState::Mask) != state) continue;
    for (int number = 1; number <= KeyBarFields; ++number) {
      if (keyBarLabel(number, state) == std::to_string(number)) continue;
      EXPECT_FALSE(commandsOf(functionKey(number, state)).empty()) << keyBarLabel(number, state);
      ++labels;
    }
  }
  EXPECT_EQ(labels, 47);
}

}  // namespace
