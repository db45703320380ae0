#include "editor/editor_test.h"

namespace {

class EditorMove : public EditorTest {};

TEST_F(EditorMove, LeftAndRightGoOnInTheNeighbouringLine) {
  open("ab\ncd");
  press({Key::Right, Key::Right, Key::Right});
  EXPECT_EQ(place(), "1:0");
  press({Key::Left});
  EXPECT_EQ(place(), "0:2");
  press({Key::CtrlPageDown, Key::Right});
  EXPECT_EQ(place(), "1:2") << "the text ends there";
  press({Key::CtrlPageUp, Key::Left});
  EXPECT_EQ(place(), "0:0");
}

TEST_F(EditorMove, HomeAndEndAreThoseOfTheLine) {
  open("abc\ndef");
  press({Key::Down, Key::End});
  EXPECT_EQ(place(), "1:3");
  press({Key::Home});
  EXPECT_EQ(place(), "1:0");
}

TEST_F(EditorMove, UpAndDownComeBackToTheColumnTheyBeganIn) {
  open("abcdef\nx\nabcdef");
  press({Key::End, Key::Down});
  EXPECT_EQ(place(), "1:1");
  press({Key::Down});
  EXPECT_EQ(place(), "2:6");
  press({Key::Up, Key::Left, Key::Down});
  EXPECT_EQ(place(), "2:0") << "Left has ended it";
}

TEST_F(EditorMove, ACursorMovedOntoATabStandsAtItsStart) {
  open("abcd\n\tx\nabcd");
  press({Key::Right, Key::Right, Key::Right, Key::Down});
  EXPECT_EQ(place(), "1:0");
  EXPECT_EQ(screenCursor(), "0,2");
  press({Key::Down});
  EXPECT_EQ(place(), "2:3") << "the wanted column is still that of the first line";
}

TEST_F(EditorMove, CtrlHomeAndCtrlEndAreTheEndsOfTheScreen) {
  open(numbered(60));
  press({Key::PageDown, Key::CtrlHome});
  EXPECT_EQ(place(), "21:0");
  press({Key::CtrlEnd});
  EXPECT_EQ(place(), "43:2");
  EXPECT_EQ(screenCursor(), "2,23");
}

TEST_F(EditorMove, CtrlEndOfAShortTextIsItsEnd) {
  open("ab\ncd");
  press({Key::CtrlEnd});
  EXPECT_EQ(place(), "1:2");
}

TEST_F(EditorMove, PagesMoveTheViewAndLeaveTheCursorInItsRow) {
  open(numbered(100));
  press({Key::Down, Key::Down, Key::PageDown});
  EXPECT_EQ(row(0), "22") << "21 of 23 rows further";
  EXPECT_EQ(place(), "23:0");
  EXPECT_EQ(screenCursor(), "0,3");
  press({Key::PageUp});
  EXPECT_EQ(row(0), "1");
  EXPECT_EQ(place(), "2:0");
}

TEST_F(EditorMove, AtTheEndsAPageTakesTheCursorToTheLastLine) {
  open(numbered(40));
  press({Key::PageDown});
  EXPECT_EQ(row(22), "40") << "no further than the last line";
  EXPECT_EQ(place(), "17:0");
  press({Key::PageDown});
  EXPECT_EQ(place(), "39:0");
  press({Key::PageUp, Key::PageUp});
  EXPECT_EQ(place(), "0:0");
  press({Key::Down, Key::PageUp});
  EXPECT_EQ(place(), "0:0");
}

TEST_F(EditorMove, TheViewFollowsByOneLineAtTheEdges) {
  open(numbered(50));
  press(Key::Down, 22);
  EXPECT_EQ(row(0), "1");
  EXPECT_EQ(screenCursor(), "0,23");
  press({Key::Down});
  EXPECT_EQ(row(0), "2");
  EXPECT_EQ(row(22), "24");
  EXPECT_EQ(screenCursor(), "0,23");
  press(Key::Up, 23);
  EXPECT_EQ(row(0), "1");
}

TEST_F(EditorMove, AFarPlaceComesToTheLastRowFromAboveAndToTheFirstFromBelow) {
  open(numbered(100));
  press({Key::CtrlPageDown});
  EXPECT_EQ(row(22), "100");
  press({Key::CtrlPageUp});
  EXPECT_EQ(row(0), "1");
}

TEST_F(EditorMove, CtrlUpAndCtrlDownScrollTheViewAndTakeTheCursorAlongAtItsEdge) {
  open(numbered(50));
  press({Key::Down, Key::CtrlDown});
  EXPECT_EQ(row(0), "2");
  EXPECT_EQ(place(), "1:0");
  EXPECT_EQ(screenCursor(), "0,1");
  press({Key::CtrlDown});
  EXPECT_EQ(place(), "2:0");
  press({Key::CtrlUp, Key::CtrlUp, Key::CtrlUp});
  EXPECT_EQ(row(0), "1");
  EXPECT_EQ(place(), "2:0");
  press({Key::CtrlPageDown, Key::CtrlDown});
  EXPECT_EQ(row(22), "50") << "the last line stays at the end of the screen";
}

TEST_F(EditorMove, TheViewMovesSidewaysInStepsOfFour) {
  open(std::string(100, 'x') + "\nshort");
  press({Key::End});
  EXPECT_EQ(editor().view.left, 24);
  EXPECT_EQ(screenCursor(), "76,1");
  press({Key::Down});
  EXPECT_EQ(editor().view.left, 0);
  EXPECT_EQ(row(1), "short");
}

TEST_F(EditorMove, EightColumnsOfTheLineStayInView) {
  open(std::string(100, 'x') + "\n" + std::string(30, 'y'));
  press({Key::End, Key::Down});
  EXPECT_EQ(screenCursor(), "10,2");
  EXPECT_EQ(editor().view.left, 20) << "at 24 only 6 columns of the line would show";
}

TEST_F(EditorMove, TheCursorStandsInTheLastColumnBeforeTheViewMoves) {
  open(std::string(100, 'x'));
  press(Key::Right, 79);
  EXPECT_EQ(screenCursor(), "79,1");
  EXPECT_EQ(editor().view.left, 0);
  press({Key::Right});
  EXPECT_EQ(screenCursor(), "76,1");
  EXPECT_EQ(editor().view.left, 4);
}

TEST_F(EditorMove, WordRightEndsBehindTheWord) {
  open("one two_2  three\nnext");
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "0:3");
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "0:9");
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "0:16") << "it stays at the end of the line";
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "1:0");
}

TEST_F(EditorMove, WordRightMayEndAtTheStartOfTheNextWord) {
  GlobalOptions::BriefWordRight = false;
  open("one two\nnext");
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "0:4");
  press({Key::CtrlRight});
  EXPECT_EQ(place(), "1:0");
}

TEST_F(EditorMove, WordLeftEndsOnTheFirstCharacterOfAWord) {
  open("x\nabc  def");
  press({Key::Down, Key::End, Key::CtrlLeft});
  EXPECT_EQ(place(), "1:5");
  press({Key::CtrlLeft});
  EXPECT_EQ(place(), "1:0");
  press({Key::CtrlLeft});
  EXPECT_EQ(place(), "0:1");
}

TEST_F(EditorMove, WordLeftJumpsOverAWordOfOneLetterAtTheStartOfALine) {
  for (const int from : {1, 2}) {
    open("x\na b");
    goTo(1, from);
    press({Key::CtrlLeft});
    EXPECT_EQ(place(), "0:1") << from;
  }
}

TEST_F(EditorMove, TheBracketsPartnerIsFoundAcrossLines) {
  open("f(a,\n g[(1)]\n) <x>");
  goTo(0, 1);
  press({Key::alt('[')});
  EXPECT_EQ(place(), "2:0");
  press({Key::alt('m')});
  EXPECT_EQ(place(), "0:1");
  goTo(1, 2);
  press({Key::alt('[')});
  EXPECT_EQ(place(), "1:6");
  goTo(2, 2);
  press({Key::alt('[')});
  EXPECT_EQ(place(), "2:4");
}

TEST_F(EditorMove, ABracketWithoutAPartnerLeavesTheCursor) {
  open("((a)\nb}");
  press({Key::alt('[')});
  EXPECT_EQ(place(), "0:0");
  goTo(1, 1);
  press({Key::alt('[')});
  EXPECT_EQ(place(), "1:1");
  goTo(1, 0);
  press({Key::alt('[')});
  EXPECT_EQ(place(), "1:0") << "no bracket at all";
}

TEST_F(EditorMove, BookmarksAreSetWithShiftAndGoneTo) {
  open(numbered(60));
  goTo(10, 1);
  press({Key::ctrlDigit(3) | Key::ShiftedKey, Key::CtrlPageDown, Key::ctrlKeypadDigit(3)});
  EXPECT_EQ(place(), "10:1");
  press({Key::ctrlDigit(4)});
  EXPECT_EQ(place(), "10:1") << "that one isn't set";
}

TEST_F(EditorMove, ABookmarkMovesWithTheText) {
  open("a\nb\nc");
  goTo(2, 0);
  press({Key::ctrlDigit(0) | Key::ShiftedKey, Key::CtrlPageUp, Key::Enter, Key::ctrlDigit(0)});
  EXPECT_EQ(place(), "3:0");
}

TEST_F(EditorMove, ARememberedPlaceBehindTheTextBecomesItsLastLine) {
  open(numbered(40));
  editor().view.top = 90;
  editor().view.cursor = {100, 5};
  editor().makeSafe();
  runQueued();
  EXPECT_EQ(place(), "39:2");
  EXPECT_EQ(row(0), "19");
  EXPECT_EQ(row(21), "40") << "one row above the last";
}

TEST_F(EditorMove, ARememberedPlaceBelowASmallerScreenComesIntoView) {
  open(numbered(100));
  editor().view.top = 10;
  editor().view.cursor = {50, 0};
  editor().makeSafe();
  runQueued();
  EXPECT_EQ(row(22), "51");
}

TEST_F(EditorMove, GotoLineShowsFiveLinesAboveIt) {
  open(numbered(100));
  queueKey(Key::alt('l'));
  queueText("50");
  queueKey(Key::Enter);
  runQueued();
  EXPECT_EQ(place(), "49:0");
  EXPECT_EQ(row(0), "45");
  queueKey(Key::alt('l'));
  queueText("3");
  queueKey(Key::Enter);
  runQueued();
  EXPECT_EQ(row(0), "1");
  EXPECT_EQ(place(), "2:0");
}

}  // namespace
