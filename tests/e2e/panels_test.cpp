#include "e2e/program_test.h"

namespace {

class PanelKeys : public ProgramTest {};

TEST_F(PanelKeys, EnterGoesDownAndTheParentEntryGoesUpToWhereItWas) {
  left().makeDir("alpha");
  left().makeDir("beta");
  left().write("beta/inner", "");
  start();
  moveTo("beta");
  press(XK_Return);
  expectText("inner");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("beta");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, TabMovesTheBarToTheOtherPanel) {
  right().write("there", "");
  start();
  press(XK_Tab);
  expectSoon("the bar on the right", [this] { return attrAt(42, 1) == 0x20; });
  press(XK_Down);
  expectCursorOn("there");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, CtrlODropsBothPanelsAndBringsThemBack) {
  left().write("here", "");
  start();
  expectText("here");
  press(XK_o, {XK_Control_L});
  expectNoText("here");
  press(XK_o, {XK_Control_L});
  expectText("here");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, AltLettersSearchQuickly) {
  for (const char* name : {"apple", "banana", "band", "cherry"}) left().write(name, "");
  start();
  press(XK_b, {XK_Alt_L});
  expectCursorOn("banana");
  expectText("Search: b");
  press(XK_a, {XK_Alt_L});
  press(XK_n, {XK_Alt_L});
  press(XK_d, {XK_Alt_L});
  expectCursorOn("band");
  press(XK_Escape);
  expectNoText("Search:");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, GrayPlusTagsAGroup) {
  for (const char* name : {"a.c", "b.c", "c.h"}) left().write(name, "xx");
  start();
  press(XK_KP_Add);
  expectText("Select the files");
  type("*.c");
  press(XK_Return);
  expectText("2 selected files");
  press(XK_KP_Multiply);
  expectText("1 selected file");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, StylesAndSortOrdersFollowTheirKeys) {
  left().write("big", std::string(5000, 'x'));
  left().write("small", "x");
  start();
  press(XK_F6, {XK_Control_L});
  moveTo("big");
  press(XK_Down);
  expectCursorOn("small");
  press(XK_F8, {XK_Control_L});
  moveTo("small");
  press(XK_F5, {XK_Shift_L, XK_Alt_L});
  expectText("rw-");
  press(XK_F1, {XK_Shift_L, XK_Alt_L});
  expectNoText("rw-");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, HiddenFilesComeAndGoWithCtrlH) {
  left().write(".secret", "");
  start();
  expectNoText(".secret");
  press(XK_h, {XK_Control_L});
  expectText(".secret");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, CtrlUSwapsThePanels) {
  left().write("left-file", "");
  right().write("right-file", "");
  start();
  press(XK_u, {XK_Control_L});
  expectSoon("the right file on the left",
             [this] { return row(0, 2, 40).find("right-file") != std::string::npos; });
  expectSoon("the left file on the right",
             [this] { return row(40, 2, 40).find("left-file") != std::string::npos; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, TheInfoPanelTellsAboutTheOtherDirectory) {
  left().write("one", "123");
  start();
  press(XK_l, {XK_Control_L});
  expectText(" total physical memory");
  expectText("file uses");
  press(XK_l, {XK_Control_L});
  expectNoText(" total physical memory");
  EXPECT_EQ(quit(), 0);
}

TEST_F(PanelKeys, AClickMovesTheBarAndADoubleClickEnters) {
  left().makeDir("folder");
  left().write("folder/inside", "");
  start();
  keys().click(5, 2);
  expectCursorOn("folder");
  keys().doubleClick(5, 2);
  expectText("inside");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
