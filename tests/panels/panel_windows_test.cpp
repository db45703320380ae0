#include "console/key_codes.h"
#include "options/colours.h"
#include "panel_screen.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/navigation.h"
#include "panels/commands/panel_sort.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/selection.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"

namespace {

class PanelWindowsTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    fillNumbered(left(), 200);
    fillNumbered(right(), 5);
    openWindows();
  }
  // As the main loop brackets a cursor key.
  void moveBar(int delta) {
    drawCursor(0, CursorBar::Off);
    moveCursor(left(), delta);
    drawCursor(0, CursorBar::On);
  }
  void redrawAll() {
    drawPanel(left());
    drawCursor(0, CursorBar::On);
  }
};

}  // namespace

// Scrolling one row and drawing the new one must give what a full redraw gives.
TEST_F(PanelWindowsTest, ScrollingGivesTheSamePictureAsARedraw) {
  for (PanelStyle style : {PanelStyle::Brief, PanelStyle::Full, PanelStyle::Wide,
                           PanelStyle::BriefWide, PanelStyle::Unix}) {
    setStyle(0, style);
    cursorHome(left());
    redrawAll();
    for (int delta : {left().pageSize, 1, 1, 1, -left().pageSize, -1, -1, 1, 150, 1}) {
      moveBar(delta);
      const std::string scrolled = screenText();
      redrawAll();
      ASSERT_EQ(screenText(), scrolled) << static_cast<int>(style) << " " << delta;
    }
  }
}

TEST_F(PanelWindowsTest, AScreenTooSmallForPanelsCountsAsTheSmallestThatHoldsThem) {
  console->setGeometry(60, 10, Estring(), 0);
  fetchScreenSize();
  EXPECT_EQ(25, panelPair().screenLines);
  EXPECT_EQ(80, panelPair().screenColumns);
  EXPECT_EQ(19, panelPair().panelRows);
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  EXPECT_EQ(44, panelPair().panelRows);
  EXPECT_EQ(66, panelPair().panelWidth());
  EXPECT_EQ(44, left().pageSize);
}

TEST_F(PanelWindowsTest, DownOnTheLastEntryDrawsNothing) {
  cursorEnd(left());
  console->completePainting();
  console->writeWide(3, 5, L"mark", 7);
  const std::string before = screenText();
  const unsigned long paints = console->paintCount();
  moveCursor(left(), 1);
  EXPECT_EQ(before, screenText());
  EXPECT_EQ(paints, console->paintCount());
}

TEST_F(PanelWindowsTest, TaggingAllDrawsOnce) {
  fillNumbered(left(), 20000);
  console->completePainting();
  const unsigned long before = console->paintCount();
  selectAll(left(), TagMode::Tag, 0);
  EXPECT_LE(console->paintCount() - before, 3u);
  EXPECT_EQ(20000, left().taggedCount);
  EXPECT_TRUE(shows("20,000 selected files")) << screenText();
}

TEST_F(PanelWindowsTest, SwapMovesTheContentsToTheOtherHalf) {
  fill(left(), {"one"});
  fill(right(), {"two"});
  redrawAll();
  drawPanel(right());
  swapPanels();
  ASSERT_TRUE(left().window && right().window);
  EXPECT_EQ(0, left().window->left());
  EXPECT_EQ(panelPair().panelWidth(), right().window->left());
  EXPECT_NE(std::string::npos, rowText(0, 1, 40).find("two"));
  EXPECT_NE(std::string::npos, rowText(40, 1, 40).find("one"));
}

TEST_F(PanelWindowsTest, SwapWithOnePanelOffMovesThatToo) {
  toggleOnePanel(1);
  swapPanels();
  EXPECT_FALSE(left().showing);
  EXPECT_EQ(nullptr, left().window);
  ASSERT_TRUE(right().window);
  EXPECT_EQ(1, panelPair().activeSide);
}

TEST_F(PanelWindowsTest, PanelsOffGiveTheScreenBackAndComeOnWithTheNextRound) {
  panelsOnOff();
  EXPECT_EQ(nullptr, left().window);
  EXPECT_EQ(nullptr, right().window);
  EXPECT_EQ(std::string(80, ' '), rowText(5));
  panelsOnOff();
  EXPECT_EQ(nullptr, left().window);
  panelsVisible(Visible::Yes);
  EXPECT_TRUE(left().window && right().window);
  EXPECT_TRUE(shows("1003"));
}

TEST_F(PanelWindowsTest, OnePanelGoesOffAndOn) {
  toggleOnePanel(0);
  EXPECT_EQ(nullptr, left().window);
  toggleOnePanel(0);
  ASSERT_TRUE(left().window);
  EXPECT_NE(std::string::npos, rowText(0, 1, 40).find("1000"));
}

TEST_F(PanelWindowsTest, TheRoundAfterARefreshRedrawsTheInfoPanelBeside) {
  TempDir dir;
  dir.write("file", "12345");
  left().path = dir.wide();
  toggleInfo(1);
  enterPath(left(), L"");
  panelsVisible(Visible::Yes);
  EXPECT_TRUE(shows("1 file uses 5 bytes in"));
  dir.write("other", "123");
  panelRefresh();
  panelsVisible(Visible::Yes);
  EXPECT_TRUE(shows("2 files use 8 bytes in"));
}

TEST_F(PanelWindowsTest, SortingRedrawsThePanel) {
  fill(left(), {"bbb", "aaa"});
  setSort(left(), SortCode::Name);
  const int first = rowWith("aaa");
  EXPECT_EQ(first, 1);
  EXPECT_EQ(rowWith("bbb"), first + 1);
  setSort(left(), SortCode::Name + SortCode::Reverse);
  EXPECT_EQ(rowWith("bbb"), first);
  EXPECT_EQ(rowWith("aaa"), first + 1);
}

TEST_F(PanelWindowsTest, ATagShowsInTheRowAndTheStatusLine) {
  toggleTag(left(), 3, TagMode::Tag);
  EXPECT_TRUE(shows("1 selected file"));
  EXPECT_EQ(colourOf(Colour::Tagged), attrAt(1, 4));
}
