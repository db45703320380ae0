#include "editor/editor_test.h"
#include "editor/window/type_commands.h"

namespace {

class EditorType : public EditorTest {};

constexpr int64_t Longest = 65535;

TEST_F(EditorType, CharactersComeInAtTheCursor) {
  open("ad");
  press({Key::Right});
  type("bc");
  EXPECT_EQ(bytes(), "abcd");
  EXPECT_EQ(place(), "0:3");
  EXPECT_EQ(row(0), "abcd");
  EXPECT_TRUE(editor().isModified);
}

TEST_F(EditorType, CharactersOfAllPlanesComeIn) {
  open("");
  queueText("ä€😀");
  runQueued();
  EXPECT_EQ(bytes(), "ä€😀");
  EXPECT_EQ(place(), "0:3");
}

TEST_F(EditorType, TheKeypadsOperatorsAreTheirCharacters) {
  open("");
  press({Key::GrayPlus, Key::GrayMinus, Key::GrayStar});
  EXPECT_EQ(bytes(), "+-*");
}

TEST_F(EditorType, ControlCharactersAreNoText) {
  open("");
  press({Key::CtrlEnter, Key::ctrl('b'), Key::ctrl('k'), Key::CtrlBracketRight, Key::F9, Key::F11,
         Key::AltF1, Key::alt('z'), Key::AltUp});
  EXPECT_EQ(bytes(), "");
  EXPECT_FALSE(editor().isModified);
}

TEST_F(EditorType, ATabGoesToTheNextStop) {
  open("x");
  press({Key::Right, Key::Tab});
  EXPECT_EQ(bytes(), "x\t");
  EXPECT_EQ(screenCursor(), "8,1");
}

TEST_F(EditorType, OverStrikeReplacesTheCharacterUnderTheCursor) {
  open("abc");
  press({Key::Insert});
  EXPECT_EQ(textState.cursorShape, 80);
  type("x");
  EXPECT_EQ(bytes(), "xbc");
  press({Key::End});
  type("y");
  EXPECT_EQ(bytes(), "xbcy") << "at the end of the line it inserts";
  press({Key::Insert});
  EXPECT_EQ(textState.cursorShape, 15);
  EXPECT_FALSE(GlobalOptions::OverStrike);
}

TEST_F(EditorType, ATabTypedInOverStrikeReplacesOneCharacter) {
  open("abc");
  press({Key::Insert, Key::Tab});
  EXPECT_EQ(bytes(), "\tbc");
}

TEST_F(EditorType, TypingReplacesTheBlockAsOneStep) {
  open("one two");
  press({{Key::CtrlShiftRight, Ctrl | Shift}});
  type("x");
  EXPECT_EQ(bytes(), "x two");
  EXPECT_EQ(block(), "");
  press({Key::AltBackspace});
  EXPECT_EQ(bytes(), "one two");
}

TEST_F(EditorType, AFullLineTakesNoMore) {
  open(std::string(Longest - 1, 'x'));
  press({Key::End});
  type("ab");
  EXPECT_EQ(editor().document.lineLength(0), Longest);
  EXPECT_EQ(editor().history.undo.size(), 1);
}

TEST_F(EditorType, InAFullLineAReplacedBlockMakesRoom) {
  open(std::string(Longest, 'x'));
  press({{Key::ShiftRight, Shift}, {Key::ShiftRight, Shift}});
  type("ab");
  EXPECT_EQ(editor().document.lineLength(0), Longest);
  EXPECT_EQ(line(0).substr(0, 4), "abxx");
}

TEST_F(EditorType, WhatIsRefusedLeavesTheBlockAndItsText) {
  open(std::string(70000, 'x'));
  press({{Key::ShiftRight, Shift}});
  type("a");
  EXPECT_EQ(editor().document.lineLength(0), 70000);
  EXPECT_FALSE(editor().isModified);
  EXPECT_TRUE(editor().history.undo.empty());
}

TEST_F(EditorType, OverStrikeWorksInAFullLine) {
  open(std::string(Longest, 'x'));
  press({Key::Insert});
  type("a");
  EXPECT_EQ(line(0).substr(0, 3), "axx");
  EXPECT_EQ(editor().document.lineLength(0), Longest);
}

// ---- quoting

TEST_F(EditorType, TheQuotedKeyIsTextWhateverItIs) {
  open("");
  press({Key::ctrl('q'), Key::Esc, Key::ctrl('q'), Key::ctrl('b'), Key::ctrl('q'),
         Key::CtrlBackspace});
  EXPECT_EQ(bytes(), "\x1b\x02\x7f");
}

TEST_F(EditorType, AQuotedNulIsIgnored) {
  open("ab");
  press({{Key::ShiftRight, Shift}});
  insertQuoted(editor(), L'\0');
  EXPECT_EQ(bytes(), "ab") << "what is marked stays";
  EXPECT_FALSE(editor().isModified);
}

TEST_F(EditorType, QuotedLineEndsSplitTheLineWithThatVeryEnd) {
  open("ab\n");
  press({Key::Right, Key::ctrl('q'), Key::Enter});
  EXPECT_EQ(bytes(), "a\rb\n");
  EXPECT_EQ(place(), "1:0");
  press({Key::Right, Key::ctrl('q'), Key::CtrlEnter});
  EXPECT_EQ(bytes(), "a\rb\n\n");
}

TEST_F(EditorType, TheQuoteShowsAndEndsWithTheNextKeyOfAnyKind) {
  open("a");
  press({Key::ctrl('q')});
  EXPECT_EQ(rowText(0)[38], '"');
  press({Key::ShiftChanged});
  EXPECT_TRUE(editor().quoteNext) << "a modifier alone is no key";
  press({Key::Right});
  EXPECT_EQ(place(), "0:1") << "an extended key does what it does";
  EXPECT_FALSE(editor().quoteNext);
  EXPECT_EQ(rowText(0)[38], ' ');
}

// ---- lines

TEST_F(EditorType, ReturnSplitsTheLine) {
  open("  abcd");
  goTo(0, 4);
  press({Key::Enter});
  EXPECT_EQ(bytes(), "  ab\ncd");
  EXPECT_EQ(place(), "1:0");
  EXPECT_EQ(row(0), "  ab");
  EXPECT_EQ(row(1), "cd");
}

TEST_F(EditorType, NewLinesEndAsThoseOfTheFile) {
  open("a\r\nb");
  press({Key::End, Key::Enter});
  EXPECT_EQ(bytes(), "a\r\n\r\nb");
}

TEST_F(EditorType, AutoIndentLeadsTheNewLineWithTheBlanksAsTheyStand) {
  GlobalOptions::AutoIndent = true;
  open(" \t if x   then");
  goTo(0, 7);
  press({Key::Enter});
  EXPECT_EQ(bytes(), " \t if x   \n \t then") << "the skipped blanks end the old line";
  EXPECT_EQ(place(), "1:3");
  press({Key::AltBackspace});
  EXPECT_EQ(bytes(), " \t if x   then");
  EXPECT_EQ(place(), "0:7");
}

TEST_F(EditorType, AutoIndentLooksUpwardsForALineWithText) {
  GlobalOptions::AutoIndent = true;
  open("    a\n\n   ");
  goTo(2, 1);
  press({Key::Enter});
  EXPECT_EQ(bytes(), "    a\n\n   \n    ");
}

TEST_F(EditorType, AutoIndentTakesTheOwnLineOnlyLeftOfTheCursor) {
  GlobalOptions::AutoIndent = true;
  open("  up\n      own");
  goTo(1, 3);
  press({Key::Enter});
  EXPECT_EQ(bytes(), "  up\n      \n  own");
}

TEST_F(EditorType, WithoutALineToTakeItFromTheSplitIsPlain) {
  GlobalOptions::AutoIndent = true;
  open("   abc");
  goTo(0, 2);
  press({Key::Enter});
  EXPECT_EQ(bytes(), "  \n abc");
}

TEST_F(EditorType, ShiftReturnOpensALineAbove) {
  open("ab\ncd");
  goTo(1, 1);
  press({{Key::Enter, Shift}});
  EXPECT_EQ(bytes(), "ab\n\ncd");
  EXPECT_EQ(place(), "1:0");
  EXPECT_EQ(block(), "") << "it is no movement";
}

TEST_F(EditorType, ShiftReturnIndentsTheNewLine) {
  GlobalOptions::AutoIndent = true;
  open("  ab\n    cd");
  goTo(1, 6);
  press({{Key::Enter, Shift}});
  EXPECT_EQ(bytes(), "  ab\n    \n    cd");
  EXPECT_EQ(place(), "1:4");
}

TEST_F(EditorType, AltReturnSplitsAtTheEndOfTheLine) {
  open("abc\nd");
  press({Key::Right, {Key::AltEnter, Alt}});
  EXPECT_EQ(bytes(), "abc\n\nd");
  EXPECT_EQ(place(), "1:0");
}

TEST_F(EditorType, CtrlDDuplicatesTheLineBelowItselfWithItsEnd) {
  open("a\r\nbc\nd");
  goTo(1, 1);
  press({Key::ctrl('d')});
  EXPECT_EQ(bytes(), "a\r\nbc\nbc\nd");
  EXPECT_EQ(place(), "1:1");
  press({Key::CtrlPageDown, Key::ctrl('d')});
  EXPECT_EQ(bytes(), "a\r\nbc\nbc\nd\r\nd") << "the last line has no end of its own";
}

// ---- what stands above

TEST_F(EditorType, CtrlSpaceRepeatsTheCharacterAboveByColumns) {
  open("a\tbc\n........");
  goTo(1, 8);
  press({{Key::Space, Ctrl}, {Key::Space, Ctrl}, {Key::Space, Ctrl}});
  EXPECT_EQ(line(1), "........bc") << "there are only two";
}

TEST_F(EditorType, CtrlSpaceInTheFirstLineDoesNothing) {
  open("a");
  press({{Key::Space, Ctrl}});
  EXPECT_EQ(bytes(), "a");
  press({Key::Space});
  EXPECT_EQ(bytes(), " a") << "without Ctrl it is a blank";
}

TEST_F(EditorType, AltSpaceRepeatsTheRestOfTheLineAbove) {
  open("one two three\nabcd");
  press({Key::Down, Key::End, {Key::AltSpace, Alt}});
  EXPECT_EQ(line(1), "abcdtwo three");
  EXPECT_EQ(place(), "1:13");
  press({Key::AltBackspace});
  EXPECT_EQ(line(1), "abcd") << "one step";
}

TEST_F(EditorType, AltSpaceIsRefusedWhereTheLineWouldBecomeTooLong) {
  open(std::string(40000, 'x') + "\n" + std::string(30000, 'y'));
  press({Key::Down, {Key::AltSpace, Alt}});
  EXPECT_EQ(editor().document.lineLength(1), 30000);
  EXPECT_FALSE(editor().isModified);
}

}  // namespace
