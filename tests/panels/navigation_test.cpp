#include "panels/commands/navigation.h"

#include <climits>

#include "panel_fixture.h"
#include "panels/model/panel_position.h"

namespace {

class NavigationTest : public PanelTest {
 protected:
  NavigationTest() : panel(left()) {
    panelPair().panelRows = Rows;
    panel.pageSize = Rows;
  }
  void at(int top, int cursor) {
    panel.top = top;
    panel.cursor = cursor;
  }
  void expectAt(int top, int cursor) {
    EXPECT_EQ(top, panel.top);
    EXPECT_EQ(cursor, panel.cursor);
  }
  void useStyle(PanelStyle style) {
    panel.style = style;
    updatePageSize(panel);
  }

  static constexpr int Rows = 10;
  Panel& panel;
};

}  // namespace

TEST_F(NavigationTest, InsideThePageOnlyTheCursorMoves) {
  fillNumbered(panel, 30);
  at(5, 3);
  moveCursor(panel, 1);
  expectAt(5, 4);
  moveCursor(panel, -4);
  expectAt(5, 0);
}

TEST_F(NavigationTest, AtThePagesEndsTheListScrollsByOne) {
  fillNumbered(panel, 30);
  at(5, 9);
  moveCursor(panel, 1);
  expectAt(6, 9);
  at(5, 0);
  moveCursor(panel, -1);
  expectAt(4, 0);
}

TEST_F(NavigationTest, AtTheListsEndsNothingMoves) {
  fillNumbered(panel, 30);
  at(20, 9);
  moveCursor(panel, 1);
  expectAt(20, 9);
  at(0, 0);
  moveCursor(panel, -1);
  expectAt(0, 0);
}

TEST_F(NavigationTest, FarMovesKeepTheCursorAtThePagesEdge) {
  fillNumbered(panel, 100);
  at(0, 0);
  moveCursor(panel, 50);
  expectAt(41, 9);
  moveCursor(panel, -30);
  expectAt(20, 0);
  moveCursor(panel, -30);
  expectAt(0, 0);
  moveCursor(panel, 1000);
  expectAt(90, 9);
}

TEST_F(NavigationTest, HomeAndEndReachTheEnds) {
  fillNumbered(panel, 100);
  at(40, 5);
  panel.quickSearch = L"10";
  cursorEnd(panel);
  expectAt(90, 9);
  EXPECT_TRUE(panel.quickSearch.empty());
  cursorHome(panel);
  expectAt(0, 0);
}

TEST_F(NavigationTest, AnEmptyListKeepsThePositionAtItsStart) {
  for (auto* move :
       {cursorHome, cursorEnd, cursorPageUp, cursorPageDown, cursorColumnLeft, cursorColumnRight}) {
    move(panel);
    expectAt(0, 0);
  }
  moveCursor(panel, 1);
  expectAt(0, 0);
  moveCursor(panel, -1);
  expectAt(0, 0);
}

TEST_F(NavigationTest, PageDownTurnsPagesAndLandsOnTheLastEntry) {
  fillNumbered(panel, 35);
  at(0, 4);
  cursorPageDown(panel);
  expectAt(10, 0);
  at(10, 9);
  cursorPageDown(panel);
  expectAt(20, 0);
  at(20, 3);
  cursorPageDown(panel);
  expectAt(25, 0);
  cursorPageDown(panel);
  expectAt(25, 9);
  EXPECT_EQ(34, panel.currentIndex());
  cursorPageDown(panel);
  expectAt(25, 9);
}

TEST_F(NavigationTest, PageDownOfAShortListLandsOnTheLastEntry) {
  fillNumbered(panel, 4);
  cursorPageDown(panel);
  expectAt(0, 3);
}

TEST_F(NavigationTest, PageUpFromTheFirstPageLandsOnTheFirstEntry) {
  fillNumbered(panel, 35);
  at(0, 7);
  cursorPageUp(panel);
  expectAt(0, 0);
}

TEST_F(NavigationTest, PageUpTurnsPages) {
  fillNumbered(panel, 35);
  at(25, 3);
  cursorPageUp(panel);
  expectAt(15, 9);
  at(4, 3);
  cursorPageUp(panel);
  expectAt(0, 7);
  at(4, 9);
  cursorPageUp(panel);
  expectAt(0, 9);
}

TEST_F(NavigationTest, ColumnsOfBriefMoveByTheirRows) {
  useStyle(PanelStyle::Brief);
  fillNumbered(panel, 100);
  EXPECT_TRUE(isMultiColumn(panel));
  at(0, 3);
  cursorColumnRight(panel);
  expectAt(0, 13);
  cursorColumnRight(panel);
  expectAt(0, 23);
  cursorColumnRight(panel);  // the last column: the list moves
  expectAt(10, 23);
  cursorColumnLeft(panel);
  expectAt(10, 13);
  cursorColumnLeft(panel);
  expectAt(10, 3);
  cursorColumnLeft(panel);
  expectAt(0, 3);
  cursorColumnLeft(panel);
  expectAt(0, 0);
}

TEST_F(NavigationTest, ColumnRightNearTheEndLandsOnTheLastEntry) {
  useStyle(PanelStyle::Brief);
  fillNumbered(panel, 25);
  at(0, 17);
  cursorColumnRight(panel);
  expectAt(0, 24);
  fillNumbered(panel, 65);
  at(30, 28);
  cursorColumnRight(panel);
  EXPECT_EQ(64, panel.currentIndex());
}

TEST_F(NavigationTest, ColumnLeftWithoutAWholeColumnAboveGoesToTheFirstEntry) {
  useStyle(PanelStyle::BriefWide);
  fillNumbered(panel, 65);
  at(4, 3);
  cursorColumnLeft(panel);
  expectAt(0, 0);
}

TEST_F(NavigationTest, APanelThatIsOffOrShowsInfoIgnoresMoves) {
  fillNumbered(panel, 35);
  at(3, 3);
  panel.showing = false;
  moveCursor(panel, 1);
  cursorEnd(panel);
  cursorPageDown(panel);
  expectAt(3, 3);
  panel.showing = true;
  panel.type = PanelType::Info;
  moveCursor(panel, 1);
  cursorHome(panel);
  cursorPageUp(panel);
  expectAt(3, 3);
}

TEST_F(NavigationTest, TaggedEntriesAreStops) {
  fillNumbered(panel, 50);
  panel.entries[3]->tagged = panel.entries[40]->tagged = 1;
  at(0, 5);
  cursorToTagged(panel, 1);
  EXPECT_EQ(40, panel.currentIndex());
  cursorToTagged(panel, 1);
  EXPECT_EQ(40, panel.currentIndex());
  cursorToTagged(panel, -1);
  EXPECT_EQ(3, panel.currentIndex());
}

TEST_F(NavigationTest, InATreeTheStopsAreLinesOfTheSameOrALowerDepth) {
  fillNumbered(panel, 6);
  panel.style = PanelStyle::Tree;
  const int depths[] = {0, 1, 2, 3, 2, 1};
  for (int i = 0; i < 6; ++i) panel.treeLines.emplace_back().level = depths[i];
  at(0, 2);
  cursorToTagged(panel, 1);
  EXPECT_EQ(4, panel.currentIndex());
  cursorToTagged(panel, 1);
  EXPECT_EQ(5, panel.currentIndex());
  cursorToTagged(panel, -1);
  EXPECT_EQ(1, panel.currentIndex());
}

TEST_F(NavigationTest, ANameScrollsUntilTheCursorLeavesIt) {
  fillNumbered(panel, 5);
  scrollName(panel, -1);
  EXPECT_EQ(0, panel.nameOffset);
  scrollName(panel, 1);
  EXPECT_EQ(1, panel.nameOffset);
  EXPECT_EQ(0, panel.nameOffsetEntry);
  resetNameScroll(panel);
  EXPECT_EQ(1, panel.nameOffset);
  moveCursor(panel, 1);
  resetNameScroll(panel);
  EXPECT_EQ(0, panel.nameOffset);
}

TEST_F(NavigationTest, AnyPositionIsBroughtIntoTheListAndThePage) {
  fillNumbered(panel, 30);
  const int values[] = {-50, -1, 0, 5, 9, 10, 29, 30, 1000};
  for (int top : values) {
    for (int cursor : values) {
      at(top, cursor);
      normalisePosition(panel);
      EXPECT_GE(panel.top, 0);
      EXPECT_GE(panel.cursor, 0);
      EXPECT_LT(panel.cursor, panel.pageSize);
      EXPECT_LT(panel.currentIndex(), 30);
    }
  }
}
