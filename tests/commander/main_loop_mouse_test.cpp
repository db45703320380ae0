// Mouse events on their way through the main loop.

#include "commander/main_loop_test.h"
#include "commander/seam_log.h"
#include "language/association_set.h"

namespace {

class MainLoopMouse : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    log.connect();
    leftDir.makeDir("dir");
    leftDir.write("file", "");
    rightDir.write("other", "");
    openPanels();
  }
  void click(int x, int y, int button = 1, int state = 0) {
    queueMouse(EventKind::Press, x, y, button, state);
    queueMouse(EventKind::Release, x, y, button, state);
  }
  // As a real pointer sends it.
  void doubleClick(int x, int y) {
    click(x, y);
    queueMouse(EventKind::Press, x, y);
    queueMouse(EventKind::DoubleClick, x, y);
    queueMouse(EventKind::Release, x, y);
  }
  std::vector<std::string> calls() { return log.take(); }

  SeamLog log;
};

TEST_F(MainLoopMouse, AClickChoosesThePanelAndTheEntry) {
  click(45, 2);
  screenAfterQueued();
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(currentName(right()), "other");
}

TEST_F(MainLoopMouse, AClickInTheOtherPanelMovesThePrompt) {
  click(45, 2);
  screenAfterQueued();
  EXPECT_EQ(rowText(0, 23, static_cast<int>(rightDir.path().size())), rightDir.path());
}

TEST_F(MainLoopMouse, ADoubleClickEntersADirectory) {
  doubleClick(5, 2);
  screenAfterQueued();
  EXPECT_EQ(bytes(left().path), leftDir.path("dir"));
}

TEST_F(MainLoopMouse, ADoubleClickOpensAFileAlsoWithTextOnTheLine) {
  associationSets().associations.addPair(L"file", L"open");
  type("text");
  doubleClick(5, 3);
  screenAfterQueued();
  EXPECT_EQ(calls(), std::vector<std::string>{"run open file"});
  EXPECT_EQ(line(), "text");
}

TEST_F(MainLoopMouse, AClickOnTheKeyBarRunsItsKey) {
  cursorTo("file");
  click(17, 24);  // F3
  click(52, 24, 1, ShiftState::Shift);
  click(74, 24, 2);  // the right button takes the row of Alt: F10
  screenAfterQueued();
  EXPECT_EQ(calls(), (std::vector<std::string>{"view the list at file", "compress file", "tree"}));
}

TEST_F(MainLoopMouse, AReleaseOverAnotherKeyRunsNothing) {
  queueMouse(EventKind::Press, 9, 24);
  queueMouse(EventKind::Release, 20, 24);
  screenAfterQueued();
  EXPECT_TRUE(calls().empty());
}

TEST_F(MainLoopMouse, ARightPressOnTheTopRowOpensTheMenu) {
  cursorTo("file");
  queueMouse(EventKind::Press, 10, 0, 2);
  queueKey('f');
  queueKey('v');
  screenAfterQueued();
  EXPECT_EQ(calls(), std::vector<std::string>{"view the list at file"});
}

TEST_F(MainLoopMouse, ADoubleClickOnAnInfoPanelsNoteOpensItInTheEditor) {
  press(Key::ctrl('l'));
  doubleClick(60, 18);
  screenAfterQueued();
  EXPECT_EQ(calls(), std::vector<std::string>{"edit " + leftDir.path("dirinfo")});
}

TEST_F(MainLoopMouse, TheMiddleButtonAndTheLowerHalfDoNothing) {
  GlobalOptions::FullScreen = false;
  press(Key::AltF9);
  press(Key::AltF9);
  const std::string before = screenAfter({});
  queueMouse(EventKind::Press, 5, 2, 3);
  queueMouse(EventKind::Release, 5, 2, 3);
  doubleClick(5, 18);
  EXPECT_TRUE(screenAfterQueued() == before);
  EXPECT_TRUE(calls().empty());
}

TEST_F(MainLoopMouse, TheWheelMovesTheCursorByThree) {
  for (int i = 0; i < 9; ++i) leftDir.write("n" + std::to_string(i), "");
  press(Key::ctrl('r'));
  queueWheel(-1);
  queueWheel(-1);
  queueWheel(1);
  screenAfterQueued();
  EXPECT_EQ(left().currentIndex(), 3);
}

}  // namespace
