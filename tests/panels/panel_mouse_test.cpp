#include "panels/commands/panel_mouse.h"

#include <thread>

#include "console/key_codes.h"
#include "console/text_state.h"
#include "drawn_panels.h"
#include "foundation/threads.h"

namespace {

constexpr int Left = 1, Right = 2;  // buttons of the event queue
constexpr int RightHalf = 40;
constexpr int LastRow = 24;

}  // namespace

class PanelMouseTest : public DrawnPanelsTest {
 protected:
  // Both panels in full style with 100 entries each; the left one is active.
  void openFull() {
    addNumbered(left(), 100);
    addNumbered(right(), 100);
    open();
  }

  // Through the queue, as the event comes to the main loop.
  MouseOutcome send(EventKind kind, int x, int y, int button = Left, int shiftState = 0) {
    queueMouse(kind, x, y, button, shiftState);
    return next();
  }
  MouseOutcome next() {
    MouseMessage message;
    if (getKey(&message, 0) != Key::MouseEvent) return MouseOutcome::Nothing;
    return handlePanelMouse(message, state_, key_);
  }
  MouseOutcome wheel(int direction) {
    queueWheel(direction);
    return next();
  }
  MouseOutcome press(int x, int y, int button = Left) {
    return send(EventKind::Press, x, y, button);
  }
  MouseOutcome drag(int x, int y, int button = Left) { return send(EventKind::Drag, x, y, button); }
  MouseOutcome release(int x, int y, int button = Left) {
    return send(EventKind::Release, x, y, button);
  }
  MouseOutcome doubleClick(int x, int y) { return send(EventKind::DoubleClick, x, y); }

  std::string tagged(const Panel& panel) {
    std::string result;
    for (int i = 0; i < panel.count(); ++i) {
      if (panel.entries[i]->tagged) result += std::to_string(i) + " ";
    }
    return result;
  }
  bool hasBar(int side, int row) {
    return attrAt(side * RightHalf + 1, row + 1) == colourOf(Colour::Highlight);
  }

  PanelMouseState state_;
  Key::Code key_;
};

// The wheel.

TEST_F(PanelMouseTest, TheWheelMovesByThree) {
  openFull();
  EXPECT_EQ(wheel(-1), MouseOutcome::Handled);
  EXPECT_EQ(left().currentIndex(), 3);
  EXPECT_TRUE(hasBar(0, 3));
  EXPECT_FALSE(hasBar(0, 0));
  wheel(-1);
  wheel(1);
  EXPECT_EQ(left().currentIndex(), 3);
}

TEST_F(PanelMouseTest, TheWheelStopsAtBothEnds) {
  openFull();
  wheel(-1);
  wheel(1);
  wheel(1);
  EXPECT_EQ(left().currentIndex(), 0);
  left().entries.clear();
  addNumbered(left(), 5);
  wheel(-1);
  wheel(-1);
  EXPECT_EQ(left().currentIndex(), 4);
}

TEST_F(PanelMouseTest, TheWheelScrollsThePageAtItsEdge) {
  openFull();
  for (int i = 0; i < 7; ++i) wheel(-1);
  EXPECT_EQ(left().top, 3);
  EXPECT_EQ(left().currentIndex(), 21);
  EXPECT_EQ(rowText(1, 1, 4), "f003");
  EXPECT_EQ(rowText(1, 19, 4), "f021");
  EXPECT_TRUE(hasBar(0, 18));
}

TEST_F(PanelMouseTest, TheWheelEndsTheSearchAndActsOnTheActivePanelOnly) {
  openFull();
  left().quickSearch = L"f";
  wheel(-1);
  EXPECT_TRUE(left().quickSearch.empty());
  EXPECT_EQ(right().currentIndex(), 0);
}

TEST_F(PanelMouseTest, TheWheelLeavesAnInfoPanelAnEmptyListAndPanelsThatAreOffAlone) {
  open();
  wheel(-1);
  EXPECT_EQ(left().currentIndex(), 0);
  left().type = PanelType::Info;
  addNumbered(left(), 10);
  wheel(-1);
  EXPECT_EQ(left().currentIndex(), 0);
  left().type = PanelType::Files;
  closePanelWindow(0);
  wheel(-1);
  EXPECT_EQ(left().currentIndex(), 0);
}

// The key bar.

struct BarColumn {
  int x;
  int number;  // of the function key
};

TEST_F(PanelMouseTest, AColumnOfTheKeyBarIsTheKeyWhoseLabelStandsThere) {
  for (BarColumn c : {BarColumn{0, 1},
                      {6, 1},
                      {7, 2},
                      {8, 2},
                      {14, 2},
                      {15, 3},
                      {62, 8},
                      {63, 9},
                      {70, 9},
                      {71, 10},
                      {78, 10},
                      {79, 10}}) {
    EXPECT_EQ(keyBarKeyAt(c.x, 0, MouseButton::Left), functionKey(c.number, 0)) << c.x;
  }
  setScreen(132, 25);
  for (BarColumn c : {BarColumn{0, 1}, {11, 1}, {12, 2}, {115, 9}, {116, 10}, {131, 10}}) {
    EXPECT_EQ(keyBarKeyAt(c.x, 0, MouseButton::Left), functionKey(c.number, 0)) << c.x;
  }
}

TEST_F(PanelMouseTest, TheKeyIsOfTheLayerThatTheModifiersShow) {
  struct Layer {
    int state;
    Key::Code firstKey;
  };
  using namespace ShiftState;
  for (Layer layer : {Layer{0, Key::F1},
                      {Alt, Key::AltF1},
                      {Ctrl, Key::CtrlF1},
                      {Shift, Key::ShiftF1},
                      {Shift | Alt, Key::ShiftAltF1}}) {
    EXPECT_EQ(keyBarKeyAt(0, layer.state, MouseButton::Left), layer.firstKey) << layer.state;
    EXPECT_EQ(keyBarKeyAt(79, layer.state, MouseButton::Left),
              Key::Code(layer.firstKey.value() + 9))
        << layer.state;
  }
  EXPECT_EQ(keyBarKeyAt(35, Shift | Ctrl, MouseButton::Left), Key::CtrlShiftF5);
  EXPECT_EQ(keyBarKeyAt(35, Ctrl | Alt, MouseButton::Left), Key::NoKey);
  EXPECT_EQ(keyBarKeyAt(35, Shift | Ctrl | Alt, MouseButton::Left), Key::NoKey);
}

TEST_F(PanelMouseTest, TheRightButtonGivesTheAltKey) {
  EXPECT_EQ(keyBarKeyAt(0, 0, MouseButton::Right), Key::AltF1);
  EXPECT_EQ(keyBarKeyAt(79, ShiftState::Shift, MouseButton::Right), Key::AltF10);
  openFull();
  press(16, LastRow, Right);
  EXPECT_EQ(release(16, LastRow, Right), MouseOutcome::RunKey);
  EXPECT_EQ(key_, Key::AltF3);
}

TEST_F(PanelMouseTest, AKeyRunsAtTheReleaseOverTheSameKey) {
  openFull();
  EXPECT_EQ(press(33, LastRow), MouseOutcome::Handled);
  EXPECT_EQ(key_, Key::NoKey);
  EXPECT_EQ(release(36, LastRow), MouseOutcome::RunKey);
  EXPECT_EQ(key_, Key::F5);
}

TEST_F(PanelMouseTest, AReleaseOverAnotherKeyIsNothing) {
  openFull();
  press(33, LastRow);
  EXPECT_EQ(release(42, LastRow), MouseOutcome::Nothing);
  EXPECT_EQ(release(33, LastRow), MouseOutcome::Nothing);
  EXPECT_EQ(key_, Key::NoKey);
}

TEST_F(PanelMouseTest, AReleaseWithoutItsPressIsNothing) {
  openFull();
  EXPECT_EQ(release(33, LastRow), MouseOutcome::Nothing);
  press(5, 5);
  EXPECT_EQ(release(33, LastRow), MouseOutcome::Nothing);
  press(33, LastRow);
  release(33, 10);
  EXPECT_EQ(release(33, LastRow), MouseOutcome::Nothing);
  press(33, LastRow);
  EXPECT_EQ(release(33, LastRow, Right), MouseOutcome::Nothing);
}

TEST_F(PanelMouseTest, ModifiersThatChangeBetweenPressAndReleaseMakeAnotherKey) {
  openFull();
  send(EventKind::Press, 33, LastRow, Left, ShiftState::Shift);
  EXPECT_EQ(send(EventKind::Release, 33, LastRow), MouseOutcome::Nothing);
  send(EventKind::Press, 33, LastRow, Left, ShiftState::Shift);
  EXPECT_EQ(send(EventKind::Release, 33, LastRow, Left, ShiftState::Shift), MouseOutcome::RunKey);
  EXPECT_EQ(key_, Key::ShiftF5);
}

TEST_F(PanelMouseTest, DragsAndDoubleClicksOnTheKeyBarAreNothing) {
  openFull();
  EXPECT_EQ(drag(33, LastRow), MouseOutcome::Nothing);
  EXPECT_EQ(doubleClick(33, LastRow), MouseOutcome::Nothing);
  EXPECT_EQ(left().currentIndex(), 0);
}

// Choosing the panel.

TEST_F(PanelMouseTest, APressInTheOtherHalfMakesThatPanelActive) {
  openFull();
  left().cursor = 4;
  right().cursor = 7;
  EXPECT_EQ(press(RightHalf + 3, 3), MouseOutcome::Handled);
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(right().currentIndex(), 2);
  EXPECT_EQ(left().currentIndex(), 4);
  EXPECT_TRUE(hasBar(1, 2));
  EXPECT_FALSE(hasBar(0, 4));
  EXPECT_EQ(attrAt(RightHalf + 20, 0), colourOf(Colour::Highlight));
  EXPECT_EQ(attrAt(20, 0), colourOf(Colour::Panel));
}

TEST_F(PanelMouseTest, APanelThatBecomesActiveRemembersItsCursorForTagging) {
  openFull();
  right().cursor = 7;
  press(RightHalf + 3, 3);
  EXPECT_EQ(state_.lastTagged, 7);
}

TEST_F(PanelMouseTest, APressPastTheListOfTheOtherPanelOnlyMakesItActive) {
  addNumbered(left(), 3);
  addNumbered(right(), 3);
  open();
  right().cursor = 1;
  EXPECT_EQ(press(RightHalf + 3, 10), MouseOutcome::Handled);
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(right().currentIndex(), 1);
  EXPECT_TRUE(hasBar(1, 1));
}

TEST_F(PanelMouseTest, WhereAPanelIsOffThereIsNothing) {
  openFull();
  closePanelWindow(1);
  EXPECT_EQ(press(RightHalf + 3, 3), MouseOutcome::Nothing);
  EXPECT_EQ(doubleClick(RightHalf + 3, 3), MouseOutcome::Nothing);
  EXPECT_EQ(press(RightHalf + 3, 0), MouseOutcome::Nothing);
  EXPECT_EQ(press(RightHalf + 3, 21), MouseOutcome::Nothing);
  EXPECT_EQ(panelPair().activeSide, 0);
  EXPECT_EQ(left().currentIndex(), 0);
}

TEST_F(PanelMouseTest, AnInfoPanelBecomesActiveAndNothingElseHappens) {
  openFull();
  right().type = PanelType::Info;
  drawPanel(right());
  const std::string before = panelText(1);
  EXPECT_EQ(press(RightHalf + 3, 3), MouseOutcome::Handled);
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(right().cursor, 0);
  EXPECT_EQ(panelText(1), before);
  EXPECT_FALSE(hasBar(0, 0));
}

TEST_F(PanelMouseTest, ADoubleClickBelowTheFactsOfAnInfoPanelEditsTheNote) {
  openFull();
  left().path = L"/";
  right().type = PanelType::Info;
  drawPanel(right());
  ASSERT_LT(right().infoRows, 18);
  EXPECT_EQ(doubleClick(RightHalf + 3, right().infoRows), MouseOutcome::Handled);
  EXPECT_EQ(doubleClick(RightHalf + 3, right().infoRows + 1), MouseOutcome::EditDirectoryInfo);
  EXPECT_EQ(doubleClick(RightHalf + 3, 19), MouseOutcome::EditDirectoryInfo);
  EXPECT_EQ(press(RightHalf + 3, 19), MouseOutcome::Handled);
}

TEST_F(PanelMouseTest, ADragIntoTheOtherHalfStaysWithItsPanel) {
  openFull();
  press(3, 3);
  EXPECT_EQ(drag(RightHalf + 3, 8), MouseOutcome::Handled);
  EXPECT_EQ(panelPair().activeSide, 0);
  EXPECT_EQ(left().currentIndex(), 7);
  EXPECT_EQ(right().currentIndex(), 0);
  release(RightHalf + 3, 9);
  EXPECT_EQ(panelPair().activeSide, 0);
  EXPECT_EQ(left().currentIndex(), 8);
}

TEST_F(PanelMouseTest, DragsAndReleasesWithoutAPressInAPanelAreNothing) {
  openFull();
  EXPECT_EQ(drag(3, 8), MouseOutcome::Nothing);
  EXPECT_EQ(drag(RightHalf + 3, 8, Right), MouseOutcome::Nothing);
  EXPECT_EQ(release(3, 8), MouseOutcome::Nothing);
  EXPECT_EQ(release(RightHalf + 3, 8), MouseOutcome::Nothing);
  EXPECT_EQ(panelPair().activeSide, 0);
  EXPECT_EQ(left().currentIndex(), 0);
  press(3, 3);
  release(3, 3);
  EXPECT_EQ(drag(3, 8), MouseOutcome::Nothing);
  EXPECT_EQ(left().currentIndex(), 2);
}

TEST_F(PanelMouseTest, ADragEndsWhenAKeyMadeTheOtherPanelActive) {
  openFull();
  press(3, 3);
  setActiveSide(1);
  EXPECT_EQ(drag(3, 8), MouseOutcome::Nothing);
  EXPECT_EQ(left().currentIndex(), 2);
}

// Choosing the entry.

TEST_F(PanelMouseTest, InTheStylesOfOneColumnOnlyTheRowCounts) {
  for (PanelStyle style : {PanelStyle::Full, PanelStyle::Wide, PanelStyle::Unix}) {
    left().entries.clear();
    right().entries.clear();
    addNumbered(left(), 100);
    addNumbered(right(), 100);
    left().style = right().style = style;
    open();
    left().top = 10;
    for (int x : {0, 1, 20, 38, 39}) {
      EXPECT_EQ(entryAt(0, x, 1), 10) << x;
      EXPECT_EQ(entryAt(0, x, 19), 28) << x;
      EXPECT_EQ(entryAt(1, RightHalf + x, 5), 4) << x;
    }
    left().top = 0;
  }
}

struct BriefColumn {
  int x;
  int column;
};

TEST_F(PanelMouseTest, InBriefStyleThreeColumnsHoldAPageEach) {
  addNumbered(left(), 100);
  addNumbered(right(), 100);
  left().style = right().style = PanelStyle::Brief;
  open();
  for (BriefColumn c :
       {BriefColumn{0, 0}, {1, 0}, {13, 0}, {14, 1}, {26, 1}, {27, 2}, {38, 2}, {39, 2}}) {
    EXPECT_EQ(entryAt(0, c.x, 1), c.column * 19) << c.x;
    EXPECT_EQ(entryAt(0, c.x, 19), c.column * 19 + 18) << c.x;
    EXPECT_EQ(entryAt(1, RightHalf + c.x, 2), c.column * 19 + 1) << c.x;
  }
}

TEST_F(PanelMouseTest, InBriefWideStyleTheMiddleDividesTheColumns) {
  addNumbered(left(), 100);
  left().style = PanelStyle::BriefWide;
  open();
  for (BriefColumn c : {BriefColumn{0, 0}, {1, 0}, {19, 0}, {20, 1}, {38, 1}, {39, 1}}) {
    EXPECT_EQ(entryAt(0, c.x, 3), c.column * 19 + 2) << c.x;
  }
}

TEST_F(PanelMouseTest, PastTheListAndBesideTheRowsThereIsNoEntry) {
  addNumbered(left(), 3);
  open();
  EXPECT_EQ(entryAt(0, 5, 3), 2);
  EXPECT_EQ(entryAt(0, 5, 4), -1);
  EXPECT_EQ(entryAt(0, 5, 0), -1);
  EXPECT_EQ(entryAt(0, 5, 20), -1);
  EXPECT_EQ(entryAt(0, RightHalf, 1), -1);
  EXPECT_EQ(entryAt(1, RightHalf, 1), -1);
  left().type = PanelType::Info;
  EXPECT_EQ(entryAt(0, 5, 1), -1);
}

TEST_F(PanelMouseTest, TheColumnThatIsLeftOfAnOddScreenBelongsToNoPanel) {
  setScreen(81, 25);
  openFull();
  EXPECT_EQ(entryAt(1, 80, 1), -1);
  EXPECT_EQ(press(80, 1), MouseOutcome::Nothing);
  EXPECT_EQ(press(79, 1), MouseOutcome::Handled);
}

TEST_F(PanelMouseTest, APressMovesTheCursorAndEndsTheSearch) {
  openFull();
  left().quickSearch = L"f0";
  press(3, 6);
  EXPECT_EQ(left().currentIndex(), 5);
  EXPECT_TRUE(left().quickSearch.empty());
  EXPECT_TRUE(hasBar(0, 5));
  EXPECT_FALSE(hasBar(0, 0));
  EXPECT_EQ(statusText(0).substr(0, 5), "f005 ");
}

TEST_F(PanelMouseTest, APressOnTheCurrentEntryKeepsTheSearch) {
  openFull();
  left().quickSearch = L"f0";
  press(3, 1);
  EXPECT_EQ(exact(left().quickSearch), L"f0");
  EXPECT_TRUE(hasBar(0, 0));
}

TEST_F(PanelMouseTest, ALeftDragTakesTheCursorAlong) {
  openFull();
  press(3, 2);
  drag(3, 9);
  EXPECT_EQ(left().currentIndex(), 8);
  EXPECT_TRUE(hasBar(0, 8));
  EXPECT_FALSE(hasBar(0, 1));
  EXPECT_EQ(tagged(left()), "");
}

TEST_F(PanelMouseTest, ADragInBriefStyleStaysInsideTheOwnColumns) {
  addNumbered(left(), 100);
  left().style = PanelStyle::Brief;
  addNumbered(right(), 100);
  open();
  press(3, 2);
  drag(60, 4);
  EXPECT_EQ(left().currentIndex(), 2 * 19 + 3);
  release(3, 2);
  press(RightHalf + 3, 5);
  drag(3, 7);
  EXPECT_EQ(right().currentIndex(), 6);
}

// What the buttons do.

TEST_F(PanelMouseTest, ADoubleClickEntersTheEntryUnderIt) {
  openFull();
  EXPECT_EQ(doubleClick(3, 5), MouseOutcome::EnterCommand);
  EXPECT_EQ(left().currentIndex(), 4);
}

TEST_F(PanelMouseTest, ADoubleClickInTheOtherPanelEntersThere) {
  openFull();
  EXPECT_EQ(doubleClick(RightHalf + 3, 5), MouseOutcome::EnterCommand);
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(right().currentIndex(), 4);
}

TEST_F(PanelMouseTest, ADoubleClickPastTheListEntersNothing) {
  addNumbered(left(), 3);
  open();
  EXPECT_EQ(doubleClick(3, 9), MouseOutcome::Handled);
}

TEST_F(PanelMouseTest, TheReleaseAfterADoubleClickFindsANewListAndLeavesItAlone) {
  openFull();
  press(3, 5);
  release(3, 5);
  press(3, 5);
  EXPECT_EQ(doubleClick(3, 5), MouseOutcome::EnterCommand);
  left().top = left().cursor = 0;
  EXPECT_EQ(release(3, 5), MouseOutcome::Nothing);
  EXPECT_EQ(left().currentIndex(), 0);
}

TEST_F(PanelMouseTest, ARightPressFlipsTheTag) {
  openFull();
  press(3, 4, Right);
  EXPECT_EQ(tagged(left()), "3 ");
  EXPECT_EQ(state_.lastTagged, 3);
  EXPECT_EQ(state_.tagDirection, 1);
  EXPECT_EQ(attrAt(1, 4), colourOf(Colour::HighlightTagged));
  release(3, 4, Right);
  press(3, 4, Right);
  EXPECT_EQ(tagged(left()), "");
  EXPECT_EQ(state_.tagDirection, -1);
  EXPECT_TRUE(hasBar(0, 3));
}

TEST_F(PanelMouseTest, ARightDragTagsFromTheLastEntryToTheNewOne) {
  openFull();
  press(3, 4, Right);
  drag(3, 7, Right);
  EXPECT_EQ(tagged(left()), "3 4 5 6 ");
  EXPECT_EQ(left().currentIndex(), 6);
  EXPECT_EQ(attrAt(1, 6), colourOf(Colour::Tagged));
  drag(3, 2, Right);
  EXPECT_EQ(tagged(left()), "1 2 3 4 5 6 ");
  EXPECT_EQ(left().taggedCount, 6);
}

TEST_F(PanelMouseTest, ARightDragThatBeganOnATaggedEntryUntags) {
  openFull();
  for (int i = 0; i < 8; ++i) tag(left(), i);
  press(3, 4, Right);
  drag(3, 6, Right);
  EXPECT_EQ(tagged(left()), "0 1 2 6 7 ");
}

TEST_F(PanelMouseTest, ARightDragDoesNotTouchTheEntryWhereItStands) {
  openFull();
  press(3, 4, Right);
  drag(5, 4, Right);
  EXPECT_EQ(tagged(left()), "3 ");
  left().entries[3]->tagged = 0;
  drag(3, 5, Right);
  EXPECT_EQ(tagged(left()), "4 ");
}

TEST_F(PanelMouseTest, ARightDragThatBeganPastTheListStartsAtTheFirstEntryItMeets) {
  addNumbered(left(), 5);
  open();
  press(3, 2, Right);
  release(3, 2, Right);
  EXPECT_EQ(tagged(left()), "1 ");
  press(3, 12, Right);
  drag(3, 5, Right);
  EXPECT_EQ(tagged(left()), "1 4 ");
  drag(3, 4, Right);
  EXPECT_EQ(tagged(left()), "1 3 4 ");
}

TEST_F(PanelMouseTest, ARightDragOverAListThatBecameShorterStaysInside) {
  openFull();
  press(3, 18, Right);
  left().entries.clear();
  addNumbered(left(), 4);
  left().taggedCount = 0;
  left().cursor = 0;
  drag(3, 2, Right);
  EXPECT_EQ(tagged(left()), "1 2 ");
}

TEST_F(PanelMouseTest, TheParentEntryIsNeverTagged) {
  addDirectory(left(), "..");
  addNumbered(left(), 3);
  open();
  press(3, 1, Right);
  EXPECT_EQ(tagged(left()), "");
  EXPECT_EQ(left().currentIndex(), 0);
}

TEST_F(PanelMouseTest, TheReleaseOfTheOtherButtonDoesNotEndADrag) {
  openFull();
  press(3, 4, Right);
  release(3, 4, Left);
  drag(3, 5, Right);
  EXPECT_EQ(tagged(left()), "3 4 ");
  release(3, 5, Right);
  EXPECT_EQ(drag(3, 9, Right), MouseOutcome::Nothing);
}

// Beyond the rows.

TEST_F(PanelMouseTest, ARightPressOnTheTopRowOpensTheMenu) {
  openFull();
  EXPECT_EQ(press(3, 0, Right), MouseOutcome::OpenMenu);
  EXPECT_EQ(press(RightHalf + 3, 0, Right), MouseOutcome::OpenMenu);
  EXPECT_EQ(panelPair().activeSide, 0);
}

TEST_F(PanelMouseTest, ALeftPressOnTheTopRowScrollsToTheStart) {
  openFull();
  left().top = 5;
  left().cursor = 2;
  drawPanel(left());
  EXPECT_EQ(press(3, 0), MouseOutcome::Handled);
  EXPECT_EQ(left().currentIndex(), 0);
  EXPECT_EQ(left().top, 0);
  EXPECT_EQ(rowText(1, 1, 4), "f000");
  EXPECT_TRUE(hasBar(0, 0));
}

TEST_F(PanelMouseTest, EachRowBelowTheListScrollsToTheEnd) {
  for (int y : {20, 21, 22}) {
    left().entries.clear();
    addNumbered(left(), 25);
    left().top = left().cursor = 0;
    open();
    EXPECT_EQ(press(3, y), MouseOutcome::Handled);
    EXPECT_EQ(left().currentIndex(), 24) << y;
    EXPECT_EQ(left().top, 6) << y;
    EXPECT_EQ(rowText(1, 19, 4), "f024");
  }
  left().top = left().cursor = 0;
  EXPECT_EQ(press(3, 23), MouseOutcome::Nothing);
  EXPECT_EQ(left().currentIndex(), 0);
}

TEST_F(PanelMouseTest, ScrollingGoesOnUntilAnotherEventStandsInTheQueue) {
  openFull();
  queueMouse(EventKind::Press, 3, 21);
  queueMouse(EventKind::Release, 3, 21);
  next();
  EXPECT_EQ(left().currentIndex(), 1);
  EXPECT_EQ(next(), MouseOutcome::Handled);
  EXPECT_EQ(left().currentIndex(), 1);
  EXPECT_FALSE(keyPending());
}

TEST_F(PanelMouseTest, AKeyEndsScrollingAndIsNotLost) {
  openFull();
  queueMouse(EventKind::Press, 3, 21);
  queueKey(Key::F3);
  next();
  EXPECT_EQ(left().currentIndex(), 1);
  EXPECT_EQ(getKey(nullptr, 0), Key::F3);
}

TEST_F(PanelMouseTest, ScrollingGoesOnWhileThePointerMovesInItsRow) {
  addNumbered(left(), 30);
  open();
  queueMouse(EventKind::Press, 3, 21);
  queueMouse(EventKind::Drag, 4, 21);
  next();
  EXPECT_EQ(left().currentIndex(), 1);
  next();
  EXPECT_EQ(left().currentIndex(), 29);
}

TEST_F(PanelMouseTest, ScrollingEndsWhenThePointerLeavesTheRow) {
  openFull();
  queueMouse(EventKind::Press, 3, 21);
  queueMouse(EventKind::Drag, 3, 10);
  next();
  EXPECT_EQ(left().currentIndex(), 1);
  next();
  EXPECT_EQ(left().currentIndex(), 9);
  EXPECT_FALSE(keyPending());
}

TEST_F(PanelMouseTest, MovementsInTheRowDoNotMakeScrollingFaster) {
  GlobalOptions::ScrollDelay = 600000;
  openFull();
  left().cursor = 18;
  queueMouse(EventKind::Press, 3, 21);
  for (int i = 0; i < 50; ++i) queueMouse(EventKind::Drag, 3 + i % 5, 21);
  queueMouse(EventKind::Release, 3, 21);
  while (keyPending()) next();
  EXPECT_EQ(left().top, 1);
}

TEST_F(PanelMouseTest, APointerThatComesBackToTheRowScrollsAtOnce) {
  GlobalOptions::ScrollDelay = 600000;
  openFull();
  left().cursor = 18;
  queueMouse(EventKind::Press, 3, 21);
  for (int y : {19, 21, 19}) queueMouse(EventKind::Drag, 3, y);
  while (keyPending()) next();
  EXPECT_EQ(left().top, 2);
}

TEST_F(PanelMouseTest, ANewPressScrollsAtOnce) {
  GlobalOptions::ScrollDelay = 600000;
  openFull();
  left().cursor = 18;
  for (int i = 1; i <= 3; ++i) {
    queueMouse(EventKind::Press, 3, 21);
    queueMouse(EventKind::Release, 3, 21);
    next();
    EXPECT_EQ(left().top, i);
    next();
  }
}

TEST_F(PanelMouseTest, TheOtherButtonDoesNotEndScrolling) {
  addNumbered(left(), 30);
  open();
  queueMouse(EventKind::Press, 3, 21);
  queueMouse(EventKind::Release, 3, 21, Right);
  next();
  EXPECT_EQ(left().currentIndex(), 1);
  next();
  EXPECT_EQ(left().currentIndex(), 29);
}

TEST_F(PanelMouseTest, TheOtherButtonDoesNotEndTaggingByScrolling) {
  addNumbered(left(), 22);
  open();
  press(3, 17, Right);
  queueMouse(EventKind::Drag, 3, 20, Right);
  queueMouse(EventKind::Release, 3, 20, Left);
  next();
  EXPECT_EQ(tagged(left()), "16 17 ");
  next();
  EXPECT_EQ(tagged(left()), "16 17 18 19 20 21 ");
}

TEST_F(PanelMouseTest, DraggingBeyondTheRowsScrollsAndARightDragTags) {
  addNumbered(left(), 22);
  open();
  press(3, 18, Right);
  drag(3, 20, Right);
  EXPECT_EQ(left().currentIndex(), 21);
  EXPECT_EQ(tagged(left()), "17 18 19 20 21 ");
  left().entries.clear();
  left().taggedCount = 0;
  addNumbered(left(), 22);
  left().top = 3;
  left().cursor = 2;
  press(3, 3, Right);
  drag(3, 0, Right);
  EXPECT_EQ(left().currentIndex(), 0);
  EXPECT_EQ(tagged(left()), "0 1 2 3 4 5 ");
}

TEST_F(PanelMouseTest, ARightPressBelowTheListScrollsWithoutTagging) {
  addNumbered(left(), 22);
  open();
  press(3, 20, Right);
  EXPECT_EQ(left().currentIndex(), 21);
  EXPECT_EQ(tagged(left()), "");
}

TEST_F(PanelMouseTest, ADragThatBeganBelowTheListGoesOnInIt) {
  addNumbered(left(), 22);
  open();
  press(3, 20, Right);
  drag(3, 17, Right);
  EXPECT_EQ(left().currentIndex(), 19);
  EXPECT_EQ(tagged(left()), "19 ");
  drag(3, 15, Right);
  EXPECT_EQ(tagged(left()), "17 18 19 ");
}

TEST_F(PanelMouseTest, ScrollingWithoutADelayMakesAtMostSixtyPassesASecond) {
  addNumbered(left(), 20);
  open();
  const double start = clockSeconds();
  press(3, 20);
  EXPECT_GE(clockSeconds() - start, 19 / 62.5);
}

TEST_F(PanelMouseTest, ScrollDelayHoldsEachPassThatMovedThePage) {
  GlobalOptions::ScrollDelay = 40;
  addNumbered(left(), 24);
  open();
  left().cursor = 18;
  const double start = clockSeconds();
  press(3, 20);
  EXPECT_EQ(left().currentIndex(), 23);
  EXPECT_GE(clockSeconds() - start, 5 * 0.040);
}

TEST_F(PanelMouseTest, ADelayEndsAsSoonAsAnEventComes) {
  GlobalOptions::ScrollDelay = 600000;
  openFull();
  left().cursor = 18;
  std::thread beside([this] {
    waitUntil([this] { return rowText(1, 1, 4) == "f001"; });
    queueMouse(EventKind::Release, 3, 21);
  });
  press(3, 21);
  beside.join();
  EXPECT_EQ(left().top, 1);
  next();
}

TEST_F(PanelMouseTest, AnInfoPanelAndAnEmptyListDoNotScroll) {
  open();
  press(3, 21);
  EXPECT_EQ(left().currentIndex(), 0);
  addNumbered(left(), 30);
  left().type = PanelType::Info;
  drawPanel(left());
  press(3, 21);
  EXPECT_EQ(left().currentIndex(), 0);
}

TEST_F(PanelMouseTest, WithHalfAScreenOfPanelsTheLowerHalfIsNothing) {
  GlobalOptions::FullScreen = false;
  fetchScreenSize();
  ASSERT_EQ(panelPair().panelRows, 11);
  openFull();
  for (int y = 15; y < LastRow; ++y) {
    EXPECT_EQ(press(3, y), MouseOutcome::Nothing) << y;
    EXPECT_EQ(press(3, y, Right), MouseOutcome::Nothing) << y;
    EXPECT_EQ(doubleClick(RightHalf + 3, y), MouseOutcome::Nothing) << y;
    EXPECT_EQ(release(3, y), MouseOutcome::Nothing) << y;
  }
  EXPECT_EQ(panelPair().activeSide, 0);
  EXPECT_EQ(left().currentIndex(), 0);
  press(3, LastRow);
  EXPECT_EQ(release(3, LastRow), MouseOutcome::RunKey);
}

TEST_F(PanelMouseTest, MovingByMouseLeavesTheScreenThatARedrawWouldGive) {
  openFull();
  press(3, 7);
  press(RightHalf + 3, 9, Right);
  drag(RightHalf + 3, 15, Right);
  wheel(-1);
  wheel(-1);
  const std::string moved = screenText();
  std::vector<Cell> cells = console->getCells(0, 0, 80, 24);
  drawPanel(left());
  drawPanel(right());
  drawCursor(1, CursorBar::On);
  EXPECT_EQ(screenText(), moved);
  EXPECT_EQ(console->getCells(0, 0, 80, 24), cells);
}
