#include "e2e/program_test.h"

namespace {

constexpr int MarkedText = 0x30, PlainText = 0x1B;

// One file of the left panel in the editor, with real keys and the real mouse.
class Editor : public ProgramTest {
 protected:
  void edit(const std::string& text) {
    left().write("file.txt", text);
    start();
    moveTo("file.txt");
    press(XK_F4);
    expectText("Edit: ");
    expectText("3SaveAs");
  }
  // Saves and waits for what is then on disk.
  void expectSaved(const std::string& text) {
    press(XK_F2);
    expectSoon("the saved text " + text, [this, text] { return left().read("file.txt") == text; });
  }
  void leave() {
    press(XK_Escape);
    expectText("10Quit");
    expectNoText("3SaveAs");
    EXPECT_EQ(quit(), 0);
  }
  // Line and column as the status line tells them.
  void expectPlace(const std::string& line, const std::string& column) {
    expectSoon("line " + line + ", column " + column, [this, line, column] {
      return row(40, 0, 10) == ("Line " + line + "     ").substr(0, 10) &&
             row(51, 0, 9) == ("Col " + column + "     ").substr(0, 9);
    });
  }
};

TEST_F(Editor, F4EditsAFileAndEscComesBackToThePanels) {
  edit("one\ntwo\n");
  type("new ");
  press(XK_Return);
  expectText("new");
  expectSaved("new \none\ntwo\n");
  leave();
}

TEST_F(Editor, UnsavedChangesAreAskedAbout) {
  edit("one\n");
  type("x");
  press(XK_Escape);
  expectText("There are unsaved changes");
  press(XK_e);
  expectNoText("There are unsaved changes");
  press(XK_F10);
  expectText("There are unsaved changes");
  press(XK_d);
  expectNoText("3SaveAs");
  EXPECT_EQ(left().read("file.txt"), "one\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Editor, ShiftF10SavesAndLeaves) {
  edit("one\n");
  type("x");
  press(XK_F10, {XK_Shift_L});
  expectNoText("3SaveAs");
  EXPECT_EQ(left().read("file.txt"), "xone\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Editor, KeysWithModifiersReachTheirCommands) {
  edit("abcd efgh\nxy\n");
  press(XK_Right, {XK_Control_L});
  expectPlace("1", "5");
  press(XK_Down);
  expectPlace("2", "3");
  press(XK_space, {XK_Control_L});
  press(XK_space, {XK_Alt_L});
  expectText(
      "xyc"
      "d efgh");
  press(XK_Return, {XK_Shift_L});
  press(XK_Return, {XK_Alt_L});
  type("z");
  expectSaved("abcd efgh\n\nz\nxycd efgh\n");
  press(XK_z, {XK_Control_L});
  press(XK_z, {XK_Control_L});
  expectSaved("abcd efgh\n\nxycd efgh\n");
  press(XK_z, {XK_Control_L, XK_Shift_L});
  press(XK_z, {XK_Control_L, XK_Shift_L});
  expectSaved("abcd efgh\n\nz\nxycd efgh\n");
  press(XK_BackSpace, {XK_Alt_L});
  expectSaved("abcd efgh\n\n\nxycd efgh\n");
  leave();
}

TEST_F(Editor, BookmarksAreDigitsOfTheRowAndOfTheKeypad) {
  edit("1\n2\n3\n4\n");
  press(XK_Down);
  keys().pressDigitKey(5, {XK_Control_L, XK_Shift_L});
  press(XK_Next, {XK_Control_L});
  expectPlace("5", "1");
  keys().pressDigitKey(5, {XK_Control_L});
  expectPlace("2", "1");
  press(XK_Prior, {XK_Control_L});
  expectPlace("1", "1");
  press(XK_KP_Begin, {XK_Control_L});
  expectPlace("2", "1");
  leave();
}

TEST_F(Editor, CharactersOfAnyLayoutAreTyped) {
  edit("\n");
  type("aß€é");
  expectSaved("aß€é\n");
  leave();
}

TEST_F(Editor, BlocksGoThroughTheClipboard) {
  edit("one two\n");
  press(XK_Right, {XK_Control_L, XK_Shift_L});
  expectSoon("the marked word", [this] { return attrAt(2, 1) == MarkedText; });
  press(XK_c, {XK_Control_L});
  expectSoon("the word in the clipboard", [this] { return keys().readClipboard() == "one"; });
  press(XK_End);
  press(XK_v, {XK_Control_L});
  expectSaved("one twoone\n");
  leave();
}

TEST_F(Editor, TheMouseGoesMarksAndPressesKeys) {
  std::string text;
  for (int i = 1; i <= 60; ++i) text += "line " + std::to_string(i) + "\n";
  edit(text);
  keys().click(5, 3);
  expectPlace("3", "6");
  keys().moveTo(0, 2);
  keys().buttonDown(1);
  keys().moveTo(4, 2);
  keys().buttonUp(1);
  expectSoon("the drag", [this] { return attrAt(3, 2) == MarkedText; });
  EXPECT_EQ(attrAt(4, 2), PlainText);
  keys().doubleClick(5, 4);
  expectSoon("the word", [this] { return attrAt(5, 4) == MarkedText; });
  EXPECT_EQ(attrAt(4, 4), PlainText);
  keys().wheel(10, 10, -1);
  expectSoon("the wheel", [this] { return row(0, 1, 6) == "line 4"; });
  keys().click(10, 22, 3);
  expectSoon("the page", [this] { return row(0, 1, 7) == "line 25"; });
  keys().click(10, 24);
  expectNoText("*");
  keys().click(75, 24);
  expectNoText("3SaveAs");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Editor, TheProgramCanEditOneFileAlone) {
  home().write("story", "Once upon a time\n");
  startAlone({"-e", home().path("story")}, "Once upon a time");
  type("x");
  press(XK_F10, {XK_Shift_L});
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_EQ(home().read("story"), "xOnce upon a time\n");
}

TEST_F(Editor, WhatWasCopiedOutlivesTheProgramWhereTheDesktopKeepsIt) {
  keys().becomeClipboardManager();
  edit("one two\n");
  press(XK_Right, {XK_Control_L, XK_Shift_L});
  press(XK_c, {XK_Control_L});
  press(XK_Escape);
  expectText("2Menu");
  press(XK_F10);
  press(XK_Return);
  EXPECT_EQ(keys().takeClipboardOver(XKeys::ManagerAnswer::Given), "one");
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Editor, AManagerThatNeverAnswersDoesNotKeepTheProgram) {
  keys().becomeClipboardManager();
  edit("one two\n");
  press(XK_w, {XK_Control_L});
  press(XK_Escape);
  expectText("2Menu");
  press(XK_F10);
  press(XK_Return);
  EXPECT_EQ(keys().takeClipboardOver(XKeys::ManagerAnswer::Forgotten), "one");
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Editor, ShiftF4MakesANewFile) {
  start();
  press(XK_F4, {XK_Shift_L});
  type("made.txt");
  press(XK_Return);
  expectText("File does not exist, Create?");
  press(XK_Return);
  expectText("made.txt");
  expectText("3SaveAs");
  type("new");
  press(XK_F10, {XK_Shift_L});
  expectNoText("3SaveAs");
  EXPECT_EQ(left().read("made.txt"), "new");
  expectText("made.txt");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
