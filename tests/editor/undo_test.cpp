#include "editor/editor_test.h"

namespace {

class EditorUndo : public EditorTest {};

constexpr Key::Code Undo = Key::AltBackspace, Redo = Key::ShiftAltBackspace;
constexpr Key::Code UndoCommand = Key::ctrl('z'), RedoCommand = Key::CtrlShiftZ;

TEST_F(EditorUndo, EveryKeyIsAStepOfItsOwn) {
  open("");
  type("abc");
  press({Undo});
  EXPECT_EQ(bytes(), "ab");
  press({Undo, Undo});
  EXPECT_EQ(bytes(), "");
  press({Redo, Redo});
  EXPECT_EQ(bytes(), "ab");
  EXPECT_EQ(row(0), "ab");
  EXPECT_TRUE(editor().isModified);
}

TEST_F(EditorUndo, WithTheCursorElsewhereTheFirstPressOnlyGoesThere) {
  open("x\ny\n");
  type("ab");
  press({Key::CtrlPageDown, Undo});
  EXPECT_EQ(bytes(), "abx\ny\n");
  EXPECT_EQ(place(), "0:2");
  press({Undo});
  EXPECT_EQ(bytes(), "ax\ny\n");
}

TEST_F(EditorUndo, AfterAThousandStepsTheOldestGoes) {
  open("");
  for (int i = 0; i < 1001; ++i) queueKey(L'x');
  runQueued();
  press({Undo}, 1);
  for (int i = 0; i < 1100; ++i) queueKey(Undo);
  runQueued();
  EXPECT_EQ(bytes(), "x") << "the first one can't be taken back";
  EXPECT_TRUE(editor().isModified);
}

TEST_F(EditorUndo, TypingAfterUndoEndsWhatCouldBeMadeAgain) {
  open("");
  type("ab");
  press({Undo});
  type("c");
  press({Redo});
  EXPECT_EQ(bytes(), "ac");
}

TEST_F(EditorUndo, CtrlZTakesBackAWholeRunOfTypedCharacters) {
  open("");
  type("one");
  press({Key::Home});
  type("two");
  press({UndoCommand});
  EXPECT_EQ(bytes(), "one");
  press({UndoCommand});
  EXPECT_EQ(bytes(), "");
  press({RedoCommand});
  EXPECT_EQ(bytes(), "one");
  press({RedoCommand});
  EXPECT_EQ(bytes(), "twoone");
}

TEST_F(EditorUndo, CtrlZNeedsNoExtraPressForMoving) {
  open("x\ny");
  type("ab");
  press({Key::CtrlPageDown, UndoCommand});
  EXPECT_EQ(bytes(), "x\ny");
  EXPECT_EQ(place(), "0:0");
}

TEST_F(EditorUndo, AMoveBetweenTypedCharactersEndsTheRunEvenWhenItComesBack) {
  open("");
  type("a");
  press({Key::Left, Key::Right});
  type("b");
  press({UndoCommand});
  EXPECT_EQ(bytes(), "a");
}

TEST_F(EditorUndo, AltBackspaceTakesBackOneKeyOfARun) {
  open("");
  type("abc");
  press({Undo, UndoCommand});
  EXPECT_EQ(bytes(), "");
  press({RedoCommand});
  EXPECT_EQ(bytes(), "abc") << "it is still the same command";
}

TEST_F(EditorUndo, AnEmptyStackDoesNothing) {
  open("a");
  press({Undo, Redo, UndoCommand, RedoCommand});
  EXPECT_EQ(bytes(), "a");
  EXPECT_FALSE(editor().isModified);
}

TEST_F(EditorUndo, ALineEndComesBackAsItWas) {
  open("a\r\nb\nc");
  press({Key::End, Key::Delete, Undo});
  EXPECT_EQ(bytes(), "a\r\nb\nc");
  press({Key::CtrlPageDown, Key::Home, Key::Backspace, Undo});
  EXPECT_EQ(bytes(), "a\r\nb\nc");
}

TEST_F(EditorUndo, StepsOfAnEarlierEditOfAChangedFileAreAskedAboutOnce) {
  open("");
  type("ab");
  editor().stepsAreForeign = true;
  press({Undo, Key::Esc});
  EXPECT_EQ(bytes(), "ab");
  press({Undo, Key::Enter});
  EXPECT_EQ(bytes(), "a");
  press({Undo});
  EXPECT_EQ(bytes(), "");
}

}  // namespace
