#include "editor/editor_test.h"

namespace {

class EditorMark : public EditorTest {};

TEST_F(EditorMark, ShiftAndAMovementExtendTheBlock) {
  open("abc\ndef");
  press({Key::Right, {Key::ShiftRight, Shift}});
  EXPECT_EQ(block(), "0:1-0:2*");
  press({{Key::ShiftDown, Shift}});
  EXPECT_EQ(block(), "0:1-1:2*");
}

TEST_F(EditorMark, TheEndsChangeOverWhenTheCursorPassesTheFixedOne) {
  open("abc");
  goTo(0, 2);
  press({{Key::ShiftRight, Shift}, {Key::ShiftHome, Shift}});
  EXPECT_EQ(block(), "0:0*-0:2");
  press({{Key::ShiftEnd, Shift}});
  EXPECT_EQ(block(), "0:2-0:3*");
}

TEST_F(EditorMark, EveryMovementKeyExtends) {
  const std::pair<Key::Code, const char*> rows[] = {
      {Key::ShiftUp, "29:1*-30:1"},        {Key::ShiftDown, "30:1-31:1*"},
      {Key::ShiftLeft, "30:0*-30:1"},      {Key::ShiftRight, "30:1-30:2*"},
      {Key::ShiftHome, "30:0*-30:1"},      {Key::ShiftEnd, "30:1-30:2*"},
      {Key::ShiftPageUp, "10:1*-30:1"},    {Key::ShiftPageDown, "30:1-51:1*"},
      {Key::CtrlShiftHome, "20:0*-30:1"},  {Key::CtrlShiftEnd, "30:1-42:2*"},
      {Key::CtrlShiftPageUp, "0:0*-30:1"}, {Key::CtrlShiftPageDown, "30:1-99:3*"},
      {Key::CtrlShiftLeft, "29:2*-30:1"},  {Key::CtrlShiftRight, "30:1-30:2*"},
  };
  for (const auto& [key, expected] : rows) {
    open(numbered(100));
    editor().scrollTo(20);
    goTo(30, 1);
    press({{key, Shift}});
    EXPECT_EQ(block(), expected) << std::hex << key.value();
  }
}

TEST_F(EditorMark, AMovementWithoutShiftDropsTheBlock) {
  open("abc\ndef");
  press({{Key::ShiftDown, Shift}, Key::Right});
  EXPECT_EQ(block(), "");
  EXPECT_EQ(attrs(0, 0, 3), "1B 1B 1B");
}

TEST_F(EditorMark, TheStickyMarkExtendsWithoutShift) {
  open("abc\ndef");
  press({Key::alt('s'), Key::Right, Key::Down});
  EXPECT_EQ(block(), "0:0-1:1*");
  press({Key::alt('s')});
  EXPECT_EQ(block(), "");
  press({Key::Right});
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMark, TheStickyMarkGoesOnWithWhatIsMarked) {
  open("abcdef");
  press({{Key::ShiftRight, Shift}, Key::alt('s')});
  EXPECT_EQ(block(), "0:0-0:1*");
  press({Key::Right});
  EXPECT_EQ(block(), "0:0-0:2*");
}

TEST_F(EditorMark, TheStickyMarkBeginsWhereItWasSet) {
  open("abc\ndef\n");
  press({Key::ctrlDigit(1) | Key::ShiftedKey, Key::Down, Key::alt('s'), Key::ctrlDigit(1)});
  press({Key::Right});
  EXPECT_EQ(block(), "0:1*-1:0");
}

TEST_F(EditorMark, UnderTheStickyMarkAKeyThatChangesNoTextKeepsTheBlock) {
  for (const Key::Code key :
       {Key::Insert, Key::Insert, Key::alt('i'), Key::alt('i'), Key::alt('4'), Key::alt('u'),
        Key::alt('h'), Key::F9, Key::ctrl('q'), Key::ctrl('l')}) {
    open("abc\ndef\n");
    press({Key::alt('s'), Key::Down, key});
    EXPECT_EQ(block(), "0:0-1:0*") << key;
  }
}

TEST_F(EditorMark, ADeletionUnderTheStickyMarkBeginsItAnew) {
  open("abcdef");
  press({Key::alt('s'), Key::Right, Key::Backspace});
  EXPECT_EQ(bytes(), "bcdef");
  EXPECT_EQ(block(), "");
  press({Key::Right});
  EXPECT_EQ(block(), "0:0-0:1*");
}

TEST_F(EditorMark, TypingEndsTheStickyMark) {
  open("abc");
  press({Key::alt('s'), Key::Right});
  type("x");
  EXPECT_EQ(bytes(), "xbc");
  press({Key::Right});
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMark, SomeKeysKeepTheBlockOthersDropIt) {
  for (const Key::Code key : {Key::F1, Key::AltLeft, Key::AltRight, Key::ctrl('l'), Key::CtrlUp}) {
    open("abc\ndef\n");
    press({{Key::ShiftDown, Shift}, key});
    EXPECT_NE(block(), "") << std::hex << key.value();
  }
  for (const Key::Code key : {Key::Insert, Key::Insert, Key::alt('i'), Key::alt('i'), Key::alt('u'),
                              Key::alt('4'), Key::F9, Key::Up}) {
    open("abc\ndef\n");
    press({{Key::ShiftDown, Shift}, key});
    EXPECT_EQ(block(), "") << std::hex << key.value();
  }
}

TEST_F(EditorMark, ABookmarkLeavesTheBlockAlone) {
  open("abc\ndef\n");
  press({Key::ctrlDigit(1) | Key::ShiftedKey, {Key::ShiftDown, Shift}, Key::ctrlDigit(1)});
  EXPECT_EQ(block(), "0:0-1:0*");
  EXPECT_EQ(place(), "0:0");
  press({Key::F1});
  EXPECT_EQ(block(), "") << "a key that keeps it only does with the cursor at its end";
}

TEST_F(EditorMark, ABlockWithoutTextIsNone) {
  open("abc\ndef\n");
  press({Key::ctrlDigit(1) | Key::ShiftedKey,
         Key::Down,
         {Key::ShiftRight, Shift},
         {Key::ShiftLeft, Shift},
         Key::ctrlDigit(1)});
  type("x");
  EXPECT_EQ(bytes(), "xabc\ndef\n") << "at the cursor, not where the block was";
  GlobalOptions::IndentWidth = 1;
  press({{Key::ShiftRight, Shift}, {Key::ShiftLeft, Shift}, {Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), " xabc\ndef\n");
}

TEST_F(EditorMark, CtrlAMarksAllAndGoesToTheEnd) {
  open("abc\ndef");
  press({Key::ctrl('a')});
  EXPECT_EQ(block(), "0:0-1:3*");
  EXPECT_EQ(place(), "1:3");
}

// ---- indents

TEST_F(EditorMark, AltRightAndAltLeftMoveTheLine) {
  GlobalOptions::IndentWidth = 2;
  open("  a\nb");
  goTo(0, 2);
  press({{Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), "    a\nb");
  EXPECT_EQ(place(), "0:4") << "the cursor stays at its character";
  press({{Key::AltLeft, Alt}, {Key::AltLeft, Alt}});
  EXPECT_EQ(bytes(), "a\nb");
}

TEST_F(EditorMark, TheBlocksLastLineIsNotIndented) {
  GlobalOptions::IndentWidth = 1;
  open("a\nb\nc");
  press({{Key::ShiftDown, Shift}, {Key::ShiftDown, Shift}, {Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), " a\n b\nc");
  EXPECT_EQ(block(), "0:0-2:0*") << "still marked";
  open("a\nb\nc");
  press({{Key::ShiftDown, Shift}, {Key::ShiftEnd, Shift}, {Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), " a\nb\nc");
  open("abc");
  press({{Key::ShiftEnd, Shift}, {Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), "abc");
}

TEST_F(EditorMark, ALineWithASmallerIndentStays) {
  GlobalOptions::IndentWidth = 4;
  open("      a\n  b\n\n   \n        c\n");
  press({Key::ctrl('a'), {Key::AltLeft, Alt}});
  EXPECT_EQ(bytes(), "  a\n  b\n\n   \n    c\n");
  press({Key::AltBackspace});
  EXPECT_EQ(bytes(), "      a\n  b\n\n   \n        c\n") << "one step";
}

TEST_F(EditorMark, TabsOfAnIndentBecomeBlanks) {
  GlobalOptions::IndentWidth = 1;
  open("\ta\r\nb\n");
  press({{Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), "         a\r\nb\n") << "and the line keeps its end";
}

TEST_F(EditorMark, AnIndentWidthOutOfRangeIsTheNearest) {
  GlobalOptions::IndentWidth = 1000;
  open("a");
  press({{Key::AltRight, Alt}});
  EXPECT_EQ(bytes(), std::string(100, ' ') + "a");
  GlobalOptions::IndentWidth = -3;
  open(" a");
  press({{Key::AltLeft, Alt}});
  EXPECT_EQ(bytes(), "a");
}

// ---- the picture

TEST_F(EditorMark, TheMarkedCellsHaveTheColourOfTheSelection) {
  open("\tabc\nd\nxyz");
  press({Key::Right, Key::Right, {Key::ShiftDown, Shift}, {Key::ShiftDown, Shift}});
  EXPECT_EQ(block(), "0:2-2:3*");
  EXPECT_EQ(attrs(0, 7, 4), "1B 1B 30 30") << "from its start";
  EXPECT_EQ(attrAt(79, 1), Marked) << "to the edge";
  EXPECT_EQ(attrAt(0, 2), Marked);
  EXPECT_EQ(attrAt(79, 2), Marked);
  EXPECT_EQ(attrs(2, 0, 5), "30 30 30 1B 1B") << "up to its end";
}

TEST_F(EditorMark, ABlockShowsInAViewMovedSideways) {
  open(std::string(100, 'x'));
  goTo(0, 90);
  press({{Key::ShiftEnd, Shift}});
  EXPECT_EQ(editor().view.left, 24);
  EXPECT_EQ(attrs(0, 65, 3), "1B 30 30");
  EXPECT_EQ(attrs(0, 74, 3), "30 30 1B");
}

}  // namespace
