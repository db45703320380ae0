#include "console/clipboard.h"
#include "editor/edit_test.h"

namespace {

class BlockCommands : public EditTest {};

std::string desktopText() {
  return toUtf8(clipboardGetText()).data();
}

}  // namespace

TEST_F(BlockCommands, WhatIsCopiedIsPasted) {
  Edit edit("one two\nthree");
  edit.mark({0, 4}, {1, 2});
  edit.key(Key::F5);
  EXPECT_EQ(edit.marked(), "-");
  EXPECT_FALSE(edit.editor.isModified);
  edit.editor.moveTo({0, 0});
  edit.key(Key::F6);
  EXPECT_EQ(edit.text(), "two\nthone two\nthree");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{1, 2}));
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(edit.editor.history.undo.size(), 1);
}

TEST_F(BlockCommands, CopyByCtrlKeepsTheBlock) {
  Edit edit("one two");
  edit.mark({0, 0}, {0, 3});
  edit.key(Key::CtrlInsert);
  EXPECT_EQ(edit.marked(), "one");
  EXPECT_EQ(desktopText(), "one");
}

TEST_F(BlockCommands, CutTakesTheBlockAway) {
  for (const Key::Code key : {Key::F4, Key::ShiftDelete, Key::ctrl('x')}) {
    Edit edit("one two");
    edit.mark({0, 0}, {0, 4});
    edit.key(key);
    EXPECT_EQ(edit.text(), "two");
    EXPECT_EQ(desktopText(), "one ");
  }
}

TEST_F(BlockCommands, ACutThatWouldJoinLinesToOneThatIsTooLongDoesNothing) {
  const std::string text = std::string(40000, 'x') + "ab\ncd" + std::string(30000, 'y');
  Edit edit(text);
  edit.mark({0, 0}, {0, 1});
  edit.key(Key::F5);
  for (const Key::Code key : {Key::F4, Key::ShiftF4, Key::ctrl('x')}) {
    edit.mark({0, 40000}, {1, 2});
    edit.key(key);
    EXPECT_EQ(edit.text(), text);
    EXPECT_EQ(desktopText(), "x");
  }
  EXPECT_FALSE(edit.editor.isModified);
  edit.mark({0, 20000}, {1, 2});
  edit.key(Key::F4);
  EXPECT_EQ(edit.editor.document.lineLength(0), 50000);
}

TEST_F(BlockCommands, WithoutABlockNothingIsCopiedOrCut) {
  Edit edit("one two");
  edit.mark({0, 0}, {0, 3});
  edit.key(Key::F5);
  edit.keys({Key::F5, Key::F4, Key::ctrl('x'), Key::ctrl('c')});
  EXPECT_EQ(edit.text(), "one two");
  EXPECT_EQ(desktopText(), "one");
}

TEST_F(BlockCommands, AppendingJoinsTheFirstNewLineToTheLastOldOne) {
  Edit edit("one\ntwo\nthree");
  edit.mark({0, 0}, {1, 1});
  edit.key(Key::F5);
  edit.mark({1, 2}, {2, 2});
  edit.key(Key::CtrlShiftInsert);
  EXPECT_EQ(desktopText(), "one\nto\nth");
  edit.mark({2, 3}, {2, 5});
  edit.key(Key::CtrlShiftC, ShiftState::Shift | ShiftState::Ctrl);
  EXPECT_EQ(desktopText(), "one\nto\nthee");
  edit.mark({0, 0}, {0, 1});
  edit.key(Key::CtrlShiftX, ShiftState::Shift | ShiftState::Ctrl);
  EXPECT_EQ(desktopText(), "one\nto\ntheeo");
  EXPECT_EQ(edit.text(), "ne\ntwo\nthree");
}

TEST_F(BlockCommands, PasteReplacesTheBlockAsOneStep) {
  Edit edit("one two");
  edit.mark({0, 0}, {0, 3});
  edit.key(Key::F5);
  edit.mark({0, 4}, {0, 7});
  edit.key(Key::ctrl('v'));
  EXPECT_EQ(edit.text(), "one one");
  EXPECT_EQ(edit.editor.history.undo.size(), 1);
  EXPECT_EQ(edit.editor.history.undo.top().text.text(), L"two");
}

TEST_F(BlockCommands, APasteThatMakesTheFirstLineTooLongDoesNothingAtAll) {
  const std::string line(65530, 'x');
  Edit edit(line + "\nabcdef");
  edit.mark({1, 0}, {1, 6});
  edit.key(Key::F5);
  edit.mark({0, 10}, {0, 10});
  edit.key(Key::F6);
  EXPECT_EQ(edit.text(), line + "\nabcdef");
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_TRUE(edit.editor.history.undo.empty());
  // With one character of it marked there is just room.
  edit.mark({0, 10}, {0, 11});
  edit.key(Key::F6);
  EXPECT_EQ(edit.editor.document.lineLength(0), 65535);
}

TEST_F(BlockCommands, ARefusedPasteLeavesTheBlockInTheText) {
  const std::string line(65535, 'x');
  Edit edit(line + "\nabcdef");
  edit.mark({1, 0}, {1, 6});
  edit.key(Key::F5);
  edit.mark({0, 10}, {0, 15});
  edit.key(Key::F6);
  EXPECT_EQ(edit.text(), line + "\nabcdef");
  EXPECT_TRUE(edit.editor.history.undo.empty());
}

TEST_F(BlockCommands, TextOfOtherProgramsComesWithTheLineEndsOfTheFile) {
  clipboardSetText(Westring(L"a\nb\r\nc\rd"));
  Edit edit("x\r\ny\r\n");
  edit.key(Key::ShiftInsert);
  EXPECT_EQ(edit.text(), "a\r\nb\r\nc\r\ndx\r\ny\r\n");
}

TEST_F(BlockCommands, AnEmptyClipboardPastesNothingInSilence) {
  clipboardSetText(Westring(L""));
  Edit edit("x");
  edit.key(Key::F6);
  EXPECT_EQ(edit.text(), "x");
  EXPECT_FALSE(edit.editor.isModified);
}

TEST_F(BlockCommands, OwnTextKeepsItsBytesAndLineEndsOthersSeeASign) {
  Edit edit(std::string("a\xFFz\r\nb\nrest", 11));
  edit.mark({0, 0}, {2, 0});
  edit.key(Key::F5);
  edit.editor.moveTo(edit.editor.document.end());
  edit.key(Key::F6);
  EXPECT_EQ(edit.text(), "a\xFFz\r\nb\nresta\xFFz\r\nb\n");
  EXPECT_EQ(desktopText(), "a\xE2\x8C\x82z\nb\n");
}

TEST_F(BlockCommands, TheWordAtTheCursorIsMarkedAndCopied) {
  Edit edit("one two_3, four");
  edit.editor.moveTo({0, 6});
  edit.key(Key::ctrl('w'));
  EXPECT_EQ(edit.marked(), "two_3");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 4}));
  EXPECT_EQ(desktopText(), "two_3");
  edit.editor.moveTo({0, 9});  // behind the word
  edit.key(Key::ctrl('w'));
  EXPECT_EQ(edit.marked(), "two_3");
}

TEST_F(BlockCommands, CutCopyAndPasteEndTheStickyMark) {
  Edit edit("one two");
  for (const Key::Code key : {Key::F4, Key::F5, Key::F6}) {
    edit.key(Key::alt('s'));
    EXPECT_TRUE(edit.editor.stickyMark);
    edit.key(key);
    EXPECT_FALSE(edit.editor.stickyMark);
  }
}

TEST_F(BlockCommands, ACutOverSeveralLinesBringsTheViewToItsStart) {
  std::string text;
  for (int i = 1; i <= 100; ++i) text += std::to_string(i) + "\n";
  Edit edit(text);
  edit.mark({2, 0}, {80, 0});
  edit.key(Key::F4);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{2, 0}));
  EXPECT_LE(edit.editor.view.top, 2);
  EXPECT_EQ(edit.editor.document.text(2), L"81");
}
