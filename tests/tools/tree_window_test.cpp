#include "tools/tree_window.h"

#include <gtest/gtest.h>

#include "tools/tools_test.h"

namespace {

constexpr int ListTop = 3, ListRows = 15, ListLeft = 5;  // on a screen of 80 by 25

class TreeWindowTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    for (const char* name : {"/bin", "/home/anna/docs", "/home/anna/letters", "/home/bert",
                             "/usr/lib", "/usr/local/lib", "/usr/share/doc", "/var"}) {
      grow(tree, name);
    }
    tree.loaded = true;
  }

  // The path that comes of these keys, or "" when the window is left by Esc.
  std::string chosenBy(std::initializer_list<Key::Code> keys, const std::string& from = "/") {
    for (Key::Code key : keys) queueKey(key);
    return run(from);
  }
  std::string run(const std::string& from = "/", TreeWindowUse use = TreeWindowUse::Command) {
    TreeWindow window(tree, decodeFileName(from.c_str()), use, [this] {
      ++rescans;
      return rescan && rescan();
    });
    return bytes(window.choose());
  }
  // The screen once the window shows `text`, behind these keys; the rows above it are drawn then.
  std::string screenWith(const std::string& text, std::initializer_list<Key::Code> keys,
                         const std::string& from = "/") {
    for (Key::Code key : keys) queueKey(key);
    std::string picture;
    Beside user([&] {
      waitToShow(text);
      picture = screenText();
      queueKey(Key::Esc);
    });
    run(from);
    return picture;
  }
  CTree tree;
  int rescans = 0;
  std::function<bool()> rescan;
};

TEST_F(TreeWindowTest, ShowsTheTreeWithTheCursorOnThePanelsDirectory) {
  Beside user([this] {
    EXPECT_TRUE(waitToShow(" /usr/share "));
    expectGolden("tree_window");
    queueKey(Key::Esc);
  });
  EXPECT_EQ(run("/usr/share"), "");
}

TEST_F(TreeWindowTest, BesideAFieldItStandsOnTheRightHalfWithoutTheHint) {
  Beside user([this] {
    EXPECT_TRUE(waitToShow(" /home "));
    expectGolden("tree_window_of_a_field");
    queueKey(Key::Esc);
  });
  EXPECT_EQ(run("/home", TreeWindowUse::Field), "");
}

TEST_F(TreeWindowTest, ADirectoryThatTheTreeDoesntHoldLeavesTheCursorAtTheTop) {
  EXPECT_EQ(chosenBy({Key::Enter}, "/unknown/place"), "/");
}

TEST_F(TreeWindowTest, TheWayToThePanelsDirectoryIsOpened) {
  expandSubtree(tree.root(), Branch::Closed);
  EXPECT_EQ(chosenBy({Key::Enter}, "/home/anna/docs"), "/home/anna/docs");
  EXPECT_TRUE(at(tree, "/home/anna")->expanded) << "and stays so";
  EXPECT_FALSE(at(tree, "/usr")->expanded);
}

TEST_F(TreeWindowTest, ADirectoryFarDownStandsInTheMiddleAndTheLastOnesFillTheWindow) {
  tree.makeRoot();
  for (int i = 100; i < 140; ++i) grow(tree, "/d" + std::to_string(i));
  std::string picture = screenWith(" /d120 ", {}, "/d120");
  EXPECT_EQ(picture.find("d112"), std::string::npos) << picture;
  EXPECT_NE(picture.find("d113"), std::string::npos) << picture;
  EXPECT_NE(picture.find("d127"), std::string::npos) << picture;
  picture = screenWith(" /d139 ", {}, "/d139");
  EXPECT_EQ(picture.find("d124"), std::string::npos) << picture;
  EXPECT_NE(picture.find("d125"), std::string::npos) << picture;
}

TEST_F(TreeWindowTest, EnterTakesAndEscLeaves) {
  EXPECT_EQ(chosenBy({Key::Down, Key::Down, Key::Enter}), "/home");
  EXPECT_EQ(chosenBy({Key::Down, Key::Esc}), "");
}

TEST_F(TreeWindowTest, HomeAndEndPageUpAndPageDownMoveTheCursor) {
  EXPECT_EQ(chosenBy({Key::End, Key::Enter}), "/var");
  EXPECT_EQ(chosenBy({Key::End, Key::Home, Key::Enter}), "/");
  EXPECT_EQ(chosenBy({Key::Up, Key::Enter}), "/");
  EXPECT_EQ(chosenBy({Key::End, Key::Down, Key::Enter}), "/var");
  EXPECT_EQ(chosenBy({Key::PageDown, Key::Enter}), "/var") << "all fits into one page";
  EXPECT_EQ(chosenBy({Key::End, Key::PageUp, Key::Enter}), "/");
}

TEST_F(TreeWindowTest, PagesOfALongListKeepTheRow) {
  tree.makeRoot();
  for (int i = 100; i < 140; ++i) grow(tree, "/d" + std::to_string(i));
  EXPECT_EQ(chosenBy({Key::Down, Key::PageDown, Key::Enter}), "/d115");
  EXPECT_EQ(chosenBy({Key::Down, Key::PageDown, Key::PageUp, Key::Enter}), "/d100");
  EXPECT_EQ(chosenBy({Key::Down, Key::PageDown, Key::PageDown, Key::PageDown, Key::Enter}),
            "/d139");
  EXPECT_EQ(chosenBy({Key::End, Key::PageUp, Key::Enter}), "/d124");
}

TEST_F(TreeWindowTest, AltUpAndDownGoToSiblingsOnly) {
  EXPECT_EQ(chosenBy({Key::AltDown, Key::Enter}, "/home"), "/usr");
  EXPECT_EQ(chosenBy({Key::AltUp, Key::Enter}, "/usr"), "/home");
  EXPECT_EQ(chosenBy({Key::AltDown, Key::Enter}, "/home/bert"), "/home/bert");
  EXPECT_EQ(chosenBy({Key::AltUp, Key::Enter}, "/home/anna"), "/home/anna");
  EXPECT_EQ(chosenBy({Key::AltDown, Key::Enter}, "/home/anna"), "/home/bert");
}

TEST_F(TreeWindowTest, PlusAndMinusOpenAndCloseTheLine) {
  EXPECT_EQ(chosenBy({'-', Key::Down, Key::Enter}, "/home"), "/usr");
  EXPECT_FALSE(at(tree, "/home")->expanded);
  EXPECT_EQ(chosenBy({'+', Key::Down, Key::Enter}, "/home"), "/home/anna");
  EXPECT_EQ(chosenBy({Key::GrayMinus, Key::Down, Key::Enter}, "/home"), "/usr");
  EXPECT_EQ(chosenBy({Key::GrayPlus, Key::Down, Key::Enter}, "/home"), "/home/anna");
}

TEST_F(TreeWindowTest, TheRootStaysOpen) {
  EXPECT_EQ(chosenBy({'-', Key::Down, Key::Enter}), "/bin");
}

TEST_F(TreeWindowTest, CtrlPlusAndMinusReachEverythingBelow) {
  EXPECT_EQ(chosenBy({Key::CtrlGrayMinus, '+', Key::Down, Key::Down, Key::Enter}, "/home"),
            "/home/bert");
  EXPECT_EQ(chosenBy({Key::CtrlGrayPlus, Key::Down, Key::Down, Key::Enter}, "/home"),
            "/home/anna/docs");
}

TEST_F(TreeWindowTest, TypedTextSearchesFromTheCursorOn) {
  EXPECT_EQ(chosenBy({'l', 'i', Key::Enter}), "/usr/lib");
  EXPECT_EQ(chosenBy({'L', 'o', Key::Enter}), "/usr/local");
  EXPECT_EQ(chosenBy({'d', 'o', Key::Enter}, "/usr"), "/usr/share/doc");
  EXPECT_EQ(chosenBy({'b', Key::Enter}, "/var"), "/bin") << "around the end";
}

TEST_F(TreeWindowTest, AHitInAClosedDirectoryOpensTheWay) {
  expandSubtree(tree.root(), Branch::Closed);
  EXPECT_EQ(chosenBy({'l', 'e', 't', Key::Enter}), "/home/anna/letters");
  EXPECT_TRUE(at(tree, "/home")->expanded);
}

TEST_F(TreeWindowTest, APrefixWithoutAMatchKeepsTheCursorAndTheText) {
  EXPECT_EQ(chosenBy({'x', 'y', Key::Enter}, "/usr"), "/usr");
  const std::string picture = screenWith("Search: xy ", {'x', 'y'}, "/usr");
  EXPECT_NE(picture.find("Search: xy "), std::string::npos) << picture;
}

TEST_F(TreeWindowTest, BackspaceTakesACharacterAway) {
  EXPECT_EQ(chosenBy({'d', 'x', Key::Backspace, 'o', Key::Enter}), "/home/anna/docs");
  EXPECT_EQ(chosenBy({Key::Backspace, Key::Enter}, "/usr"), "/usr");
}

TEST_F(TreeWindowTest, AtMostTwentyCharactersAreTaken) {
  for (int i = 0; i < 30; ++i) queueKey('y');
  const std::string text = "Search: " + std::string(20, 'y') + " ";
  const std::string picture = screenWith(text, {});
  EXPECT_NE(picture.find(text), std::string::npos) << picture;
  EXPECT_EQ(picture.find(std::string(21, 'y')), std::string::npos) << picture;
}

TEST_F(TreeWindowTest, CtrlEnterGoesToTheNextMatchAndAround) {
  EXPECT_EQ(chosenBy({'l', 'i', Key::CtrlEnter, Key::Enter}), "/usr/local/lib");
  EXPECT_EQ(chosenBy({'l', 'i', Key::CtrlEnter, Key::CtrlEnter, Key::Enter}), "/usr/lib");
  EXPECT_EQ(chosenBy({Key::End, 'v', Key::CtrlEnter, Key::Enter}), "/var") << "itself, around";
}

TEST_F(TreeWindowTest, CtrlEnterWithoutATextDoesNothing) {
  EXPECT_EQ(chosenBy({Key::CtrlEnter, Key::Enter}, "/usr"), "/usr");
}

TEST_F(TreeWindowTest, UpAndDownEndTheSearch) {
  EXPECT_EQ(chosenBy({'l', 'i', Key::Down, 'v', Key::Enter}), "/var");
}

TEST_F(TreeWindowTest, ARescanThatTheUserEndsEndsTheWindow) {
  rescan = [this] {
    tree.dropRoot();
    return false;
  };
  EXPECT_EQ(chosenBy({Key::ctrl('r'), Key::Enter}, "/usr"), "");
  EXPECT_EQ(rescans, 1);
  drainEvents();
}

TEST_F(TreeWindowTest, ARescanKeepsTheRowUnlessTheListIsShorterNow) {
  rescan = [this] {
    tree.makeRoot();
    for (const char* name : {"/a", "/b", "/c"}) grow(tree, name);
    return true;
  };
  EXPECT_EQ(chosenBy({Key::Down, Key::ctrl('r'), Key::Enter}), "/a");
  EXPECT_EQ(chosenBy({Key::Down, Key::Down, Key::ctrl('r'), Key::Enter}), "/b");
  grow(tree, "/a/more/and/more");
  EXPECT_EQ(chosenBy({Key::End, Key::ctrl('r'), Key::Enter}), "/");
}

// ---- the mouse

TEST_F(TreeWindowTest, APressMovesTheCursorAndADoubleClickTakes) {
  queueMouse(EventKind::Press, ListLeft + 3, ListTop + 2);
  queueMouse(EventKind::Release, ListLeft + 3, ListTop + 2);
  EXPECT_EQ(chosenBy({Key::Enter}), "/home");
  queueMouse(EventKind::Press, ListLeft + 3, ListTop + 1);
  queueMouse(EventKind::Drag, ListLeft + 3, ListTop + 3);
  queueMouse(EventKind::Release, ListLeft + 3, ListTop + 3);
  EXPECT_EQ(chosenBy({Key::Enter}), "/home/anna");
  queueMouse(EventKind::DoubleClick, ListLeft + 3, ListTop + 1);
  EXPECT_EQ(run(), "/bin");
}

TEST_F(TreeWindowTest, APressBehindTheListsEndChangesNothing) {
  tree.makeRoot();
  grow(tree, "/only");
  queueMouse(EventKind::Press, ListLeft + 3, ListTop + 5);
  queueMouse(EventKind::Release, ListLeft + 3, ListTop + 5);
  EXPECT_EQ(chosenBy({Key::Enter}), "/");
}

TEST_F(TreeWindowTest, AReleaseOutsideEndsItUnlessThePressWasInside) {
  queueMouse(EventKind::Press, ListLeft + 3, ListTop + 1);
  queueMouse(EventKind::Release, 0, 0);
  EXPECT_EQ(chosenBy({Key::Enter}), "/bin");
  queueMouse(EventKind::Press, 0, 0);
  queueMouse(EventKind::Release, 0, 0);
  EXPECT_EQ(run(), "");
}

TEST_F(TreeWindowTest, ABorderHeldScrollsUntilTheButtonIsReleased) {
  tree.makeRoot();
  for (int i = 100; i < 160; ++i) grow(tree, "/d" + std::to_string(i));
  GlobalOptions::ScrollDelay = 1;
  queueMouse(EventKind::Press, ListLeft + 3, ListTop + ListRows + 1);
  Beside user([this] {
    EXPECT_TRUE(waitToShow("d159"));
    queueMouse(EventKind::Release, ListLeft + 3, ListTop + ListRows + 1);
    queueKey(Key::Enter);
  });
  EXPECT_EQ(run(), "/d159");
}

TEST_F(TreeWindowTest, TheWheelMovesTheCursor) {
  queueWheel(-1);
  EXPECT_EQ(chosenBy({Key::Enter}), "/home/anna");
}

TEST_F(TreeWindowTest, ADeepDirectoryShowsItsNameAndItsPath) {
  TREENODE* node = tree.makeRoot();
  while (node->level < CTree::DeepestLevel) node = tree.appendChild(node, L"directory");
  const std::string picture = screenWith("/directory/...tory/directory/", {Key::End});
  EXPECT_NE(picture.find("└─directo"), std::string::npos) << picture;
  EXPECT_NE(picture.find("/directory/...tory/directory/"), std::string::npos) << picture;
}

}  // namespace
