#include "editor/editor_test.h"

namespace {

class EditorDelete : public EditorTest {};

TEST_F(EditorDelete, BackspaceDeletesLeftAndJoinsAtTheStartOfALine) {
  open("ab\ncd");
  goTo(1, 1);
  press({Key::Backspace});
  EXPECT_EQ(bytes(), "ab\nd");
  press({Key::Backspace});
  EXPECT_EQ(bytes(), "abd");
  EXPECT_EQ(place(), "0:2");
  EXPECT_EQ(row(0), "abd");
  EXPECT_EQ(row(1), "");
}

TEST_F(EditorDelete, BackspaceAtTheStartOfTheTextDoesNothing) {
  open("ab");
  press({Key::Backspace});
  EXPECT_EQ(bytes(), "ab");
  EXPECT_FALSE(editor().isModified);
  EXPECT_TRUE(editor().history.undo.empty());
}

TEST_F(EditorDelete, DelDeletesTheCharacterAndJoinsAtTheEndOfALine) {
  open("ab\ncd");
  press({Key::Delete, Key::End, Key::Delete});
  EXPECT_EQ(bytes(), "bcd");
  EXPECT_EQ(place(), "0:1");
  press({Key::End, Key::Delete});
  EXPECT_EQ(bytes(), "bcd") << "nothing stands behind the end of the text";
}

TEST_F(EditorDelete, BothDeleteTheBlock) {
  for (const Key::Code key : {Key::Backspace, Key::Delete, Key::CtrlDelete}) {
    open("abc\ndef");
    press({Key::Right, {Key::ShiftDown, Shift}, key});
    EXPECT_EQ(bytes(), "aef") << key.value();
    EXPECT_EQ(place(), "0:1");
    EXPECT_EQ(block(), "");
  }
}

TEST_F(EditorDelete, AnEmptyBlockIsNone) {
  open("ab");
  press({{Key::ShiftLeft, Shift}, Key::Delete});
  EXPECT_EQ(bytes(), "b");
}

TEST_F(EditorDelete, CtrlBackspaceDeletesTheWordLeftAndStopsAtTheStartOfTheLine) {
  open("x\na bc  ");
  press({Key::CtrlPageDown, {Key::CtrlBackspace, Ctrl}});
  EXPECT_EQ(line(1), "a ");
  press({{Key::CtrlBackspace, Ctrl}});
  EXPECT_EQ(line(1), "") << "Word left would leave the line";
  EXPECT_EQ(place(), "1:0");
  press({{Key::CtrlBackspace, Ctrl}});
  EXPECT_EQ(bytes(), "x");
}

TEST_F(EditorDelete, CtrlDelDeletesToTheWordBoundary) {
  open("one two\nx");
  press({{Key::CtrlDelete, Ctrl}});
  EXPECT_EQ(bytes(), " two\nx");
  press({{Key::CtrlDelete, Ctrl}, {Key::CtrlDelete, Ctrl}});
  EXPECT_EQ(bytes(), "x") << "at the end of the line it joins";
}

TEST_F(EditorDelete, CtrlDelOfTheLastWordLeavesTheLineEnd) {
  GlobalOptions::BriefWordRight = false;
  open("one two\nx");
  press({{Key::CtrlDelete, Ctrl}});
  EXPECT_EQ(bytes(), "two\nx");
  press({{Key::CtrlDelete, Ctrl}});
  EXPECT_EQ(bytes(), "\nx");
}

TEST_F(EditorDelete, CtrlYDeletesTheLine) {
  open("a\nbc\nd");
  goTo(1, 1);
  press({Key::ctrl('y')});
  EXPECT_EQ(bytes(), "a\nd");
  EXPECT_EQ(place(), "1:0");
}

TEST_F(EditorDelete, CtrlYOnlyEmptiesTheLastLine) {
  open("a\nbc");
  press({Key::CtrlPageDown, Key::ctrl('y')});
  EXPECT_EQ(bytes(), "a\n");
  press({Key::AltBackspace});
  EXPECT_EQ(bytes(), "a\nbc");
}

TEST_F(EditorDelete, LinesThatWouldBeTooLongTogetherAreNotJoined) {
  const std::string text = std::string(40000, 'x') + "\n" + std::string(30000, 'y');
  open(text);
  press({Key::End, Key::Delete, Key::CtrlDelete, Key::Right, Key::Backspace});
  EXPECT_EQ(bytes(), text);
  EXPECT_FALSE(editor().isModified);
}

TEST_F(EditorDelete, ALineThatIsTooLongAlreadyCanBecomeShorter) {
  open(std::string(70000, 'x') + "\n");
  press({Key::Delete, Key::End, Key::Backspace, Key::Delete});
  EXPECT_EQ(bytes(), std::string(69998, 'x')) << "and take an empty line";
}

}  // namespace
