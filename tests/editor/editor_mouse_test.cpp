#include "editor/editor_test.h"

namespace {

class EditorMouse : public EditorTest {
 protected:
  struct Step {
    EventKind kind;
    int x, y;
  };
  // The left button does all that.
  void leftButton(std::initializer_list<Step> steps) {
    for (const Step& step : steps) queueMouse(step.kind, step.x, step.y);
    runQueued();
  }
  void drag(int fromX, int fromY, int toX, int toY) {
    leftButton({{EventKind::Press, fromX, fromY},
                {EventKind::Drag, toX, toY},
                {EventKind::Release, toX, toY}});
  }
};

TEST_F(EditorMouse, AClickTakesTheCursorThere) {
  open("abc\ndef");
  click(2, 2);
  EXPECT_EQ(place(), "1:2");
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMouse, ClicksBesideTheTextGoToTheNearestPlace) {
  open("abc\ndef");
  click(50, 1);
  EXPECT_EQ(place(), "0:3") << "right of a line";
  click(1, 20);
  EXPECT_EQ(place(), "1:1") << "below the text";
  click(5, 0);
  EXPECT_EQ(place(), "1:1") << "the status line is no text";
}

TEST_F(EditorMouse, AClickOnATabGoesToItsStart) {
  open("a\tb");
  click(4, 1);
  EXPECT_EQ(place(), "0:1");
  EXPECT_EQ(screenCursor(), "1,1");
}

TEST_F(EditorMouse, AClickCountsInTheViewMovedSideways) {
  open(std::string(100, 'x'));
  press({Key::End});
  click(10, 1);
  EXPECT_EQ(place(), "0:34");
}

TEST_F(EditorMouse, AClickDropsTheBlock) {
  open("abc\ndef");
  press({{Key::ShiftDown, Shift}});
  click(1, 1);
  EXPECT_EQ(block(), "");
  EXPECT_EQ(attrs(0, 0, 3), "1B 1B 1B");
}

TEST_F(EditorMouse, ShiftAndAClickExtendTheBlock) {
  open("abc\ndef");
  press({Key::Right});
  click(2, 2, Shift);
  EXPECT_EQ(block(), "0:1-1:2*");
  click(0, 1, Shift);
  EXPECT_EQ(block(), "0:0*-0:1");
}

TEST_F(EditorMouse, ADragMarksFromWhereItBegan) {
  open("abcdef\nghijkl");
  drag(4, 1, 2, 2);
  EXPECT_EQ(block(), "0:4-1:2*");
  EXPECT_EQ(place(), "1:2");
  drag(4, 2, 1, 1);
  EXPECT_EQ(block(), "0:1*-1:4");
}

TEST_F(EditorMouse, ADragThatComesBackMarksNothing) {
  open("abcdef");
  leftButton({{EventKind::Press, 2, 1},
              {EventKind::Drag, 4, 1},
              {EventKind::Drag, 2, 1},
              {EventKind::Release, 2, 1}});
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMouse, ADragBeyondTheFirstOrTheLastRowScrollsAtOnceAndGoesOn) {
  open(numbered(60));
  leftButton({{EventKind::Press, 0, 20}, {EventKind::Drag, 1, 24}});
  EXPECT_EQ(row(0), "2");
  EXPECT_EQ(block(), "19:0-23:1*");
  {
    // Nothing is queued: the wait for the next repeat runs out by itself.
    std::thread stopper([this] {
      waitUntil([this] { return row(0) != "2" && row(0) != "3"; });
      queueKey(TestedScreen::Stop);
    });
    runScreen();
    stopper.join();
  }
  mouse(EventKind::Release, 1, 24);
  const std::string top = row(0);
  EXPECT_NE(top, "2");
  drag(0, 10, 0, 0);
  EXPECT_EQ(std::stoi(row(0)), std::stoi(top) - 1);
}

TEST_F(EditorMouse, AReleaseOnTheKeyBarAfterADragIsNoKey) {
  open("abc\ndef");
  drag(1, 1, 5, 24);
  EXPECT_EQ(block(), "0:1-1:3*");
}

TEST_F(EditorMouse, ADragThatEndedOnTheKeyBarIsOver) {
  open("abcdefgh\ndef");
  drag(1, 1, 5, 24);
  drag(70, 24, 7, 1);
  EXPECT_EQ(block(), "0:1-1:3*");
  EXPECT_EQ(place(), "1:3");
}

TEST_F(EditorMouse, ADoubleClickMarksTheWord) {
  open("one two_2, x");
  leftButton({{EventKind::Press, 6, 1},
              {EventKind::Release, 6, 1},
              {EventKind::Press, 6, 1},
              {EventKind::DoubleClick, 6, 1},
              {EventKind::Release, 6, 1}});
  EXPECT_EQ(block(), "0:4*-0:9");
  EXPECT_EQ(place(), "0:4");
}

TEST_F(EditorMouse, ADragAfterADoubleClickExtendsByCharacters) {
  open("one two three");
  leftButton({{EventKind::Press, 5, 1},
              {EventKind::DoubleClick, 5, 1},
              {EventKind::Drag, 1, 1},
              {EventKind::Release, 1, 1}});
  EXPECT_EQ(block(), "0:1*-0:7");
}

TEST_F(EditorMouse, ADoubleClickBehindAWordTakesItAndBesideWordsNothing) {
  open("one   two");
  mouse(EventKind::DoubleClick, 3, 1);
  EXPECT_EQ(block(), "0:0*-0:3");
  mouse(EventKind::DoubleClick, 4, 1);
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMouse, TheRightButtonPagesInTheOuterThirds) {
  open(numbered(100));
  mouse(EventKind::Press, 10, 17, 2);
  EXPECT_EQ(row(0), "22");
  mouse(EventKind::Release, 10, 17, 2);
  mouse(EventKind::Press, 10, 16, 2);
  mouse(EventKind::Release, 10, 16, 2);
  mouse(EventKind::Press, 10, 9, 2);
  mouse(EventKind::Release, 10, 9, 2);
  EXPECT_EQ(row(0), "22") << "nothing in the middle";
  mouse(EventKind::Press, 10, 8, 2);
  EXPECT_EQ(row(0), "1");
  mouse(EventKind::Release, 10, 8, 2);
}

TEST_F(EditorMouse, TheRightButtonGoesOnWhileItIsHeld) {
  open(numbered(1000));
  queueMouse(EventKind::Press, 10, 20, 2);
  std::thread stopper([this] {
    waitUntil([this] { return row(0) == "43"; });
    queueMouse(EventKind::Release, 10, 20, 2);
    queueKey(TestedScreen::Stop);
  });
  runScreen();
  stopper.join();
  EXPECT_EQ(row(0), "43");
}

TEST_F(EditorMouse, TheMiddleButtonDoesNothing) {
  open("abc");
  mouse(EventKind::Press, 2, 1, 3);
  EXPECT_EQ(place(), "0:0");
}

TEST_F(EditorMouse, TheWheelMovesTheViewByThreeLines) {
  open(numbered(60));
  press({Key::Down});
  queueWheel(-1);
  runQueued();
  EXPECT_EQ(row(0), "4");
  EXPECT_EQ(place(), "4:0") << "the cursor keeps its row";
  queueWheel(1);
  queueWheel(1);
  runQueued();
  EXPECT_EQ(row(0), "1");
}

TEST_F(EditorMouse, TheWheelStopsWithTheLastLineOnTheScreen) {
  open(numbered(25));
  queueWheel(-1);
  runQueued();
  EXPECT_EQ(row(22), "25");
  EXPECT_EQ(row(0), "3");
}

TEST_F(EditorMouse, TheBlockStaysUntilTheViewMoves) {
  open(numbered(60));
  const auto wheel = [this](int direction) {
    queueWheel(direction);
    runQueued();
  };
  press({{Key::ShiftRight, Shift}});
  wheel(1);
  EXPECT_EQ(block(), "0:0-0:1*") << "already at the start";
  mouse(EventKind::Press, 10, 12, 2);
  mouse(EventKind::Release, 10, 12, 2);
  EXPECT_EQ(block(), "0:0-0:1*") << "nothing in the middle";
  wheel(-1);
  EXPECT_EQ(block(), "");
}

TEST_F(EditorMouse, ShiftAndTheWheelExtendTheBlock) {
  open(numbered(60));
  press({{Key::ShiftRight, Shift}});
  queueWheel(-1, Shift);
  runQueued();
  EXPECT_EQ(block(), "0:0-3:1*");
}

TEST_F(EditorMouse, TheKeyBarIsPressedAndReleasedOverOneKey) {
  open("abc");
  leftButton({{EventKind::Press, 2, 24}, {EventKind::Release, 30, 24}});
  EXPECT_EQ(place(), "0:0");
  press({Key::alt('i'), Key::alt('i')});
  EXPECT_EQ(keyBarKeyOf(6, 0), Key::F1);
  EXPECT_EQ(keyBarKeyOf(7, 0), Key::F2);
  EXPECT_EQ(keyBarKeyOf(79, 0), Key::F10);
}

}  // namespace
