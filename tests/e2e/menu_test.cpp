#include "e2e/program_test.h"

namespace {

class Menus : public ProgramTest {};

TEST_F(Menus, F9OpensTheMenuOfTheActiveSide) {
  start();
  press(XK_F9);
  expectText("    Left    Files    Commands    Options    Right  ");
  EXPECT_EQ(attrAt(2, 0), 0x0F);
  press(XK_Return);
  expectText("Brief-Wide  AlSh-F4");
  press(XK_Escape);
  expectNoText("Brief-Wide  AlSh-F4");
  press(XK_Escape);
  expectNoText("Commands    Options");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Menus, AnItemIsChosenByItsQuickLetter) {
  left().write("file", "");
  start();
  press(XK_F9);
  expectText("Commands    Options");
  type("f");
  expectText("Make Directory     F7");
  type("m");
  expectText("Create the directory");
  press(XK_Escape);
  expectNoText("Create the directory");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Menus, ShiftF10ReturnsToTheLastPlace) {
  start();
  press(XK_F9);
  expectText("Commands    Options");
  type("o");
  expectText("Tag Directories");
  type("t");
  expectNoText("Tag Directories");
  press(XK_F10, {XK_Shift_L});
  expectText("\u221ATag Directories");
  press(XK_F10);
  expectNoText("Tag Directories");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Menus, TheMouseOpensATitleAndChoosesAnItemOnRelease) {
  start();
  press(XK_F9);
  expectText("Commands    Options");
  keys().click(33, 0);
  expectSoon("the title chosen", [this] { return attrAt(33, 0) == 0x0F; });
  keys().click(33, 0);
  expectText("Thousand Separator");
  keys().click(36, 7);
  expectNoText("Thousand Separator");
  expectSoon("the short prompt", [this] { return row(0, 23, 3) == "/t>"; });
  EXPECT_EQ(quit(), 0);
}

}  // namespace
