#include "panels/model/panel_pair.h"

#include "panel_fixture.h"

TEST(PanelRows, FollowTheScreenAndTheFullScreenOption) {
  EXPECT_EQ(19, panelRowsFor(25, PanelHeight::FullScreen));
  EXPECT_EQ(11, panelRowsFor(25, PanelHeight::HalfScreen));
  EXPECT_EQ(44, panelRowsFor(50, PanelHeight::FullScreen));
  EXPECT_EQ(23, panelRowsFor(50, PanelHeight::HalfScreen));
}

TEST(PanelRows, NeverFallBelowOne) {
  for (int lines = -3; lines <= 8; ++lines) {
    EXPECT_GE(panelRowsFor(lines, PanelHeight::FullScreen), 1);
    EXPECT_GE(panelRowsFor(lines, PanelHeight::HalfScreen), 1);
  }
}

TEST(PageSize, CountsTheColumnsOfAStyle) {
  EXPECT_EQ(57, pageSizeFor(PanelStyle::Brief, 19));
  EXPECT_EQ(38, pageSizeFor(PanelStyle::BriefWide, 19));
  EXPECT_EQ(19, pageSizeFor(PanelStyle::Full, 19));
  EXPECT_EQ(19, pageSizeFor(PanelStyle::Wide, 19));
  EXPECT_EQ(19, pageSizeFor(PanelStyle::Unix, 19));
  EXPECT_EQ(19, pageSizeFor(PanelStyle::Tree, 19));
  EXPECT_EQ(1, pageSizeFor(PanelStyle::Full, 0));
}

using PanelPairTest = PanelTest;

TEST_F(PanelPairTest, KnowsItsOwnPanelsOnly) {
  PanelPair& pair = panelPair();
  Panel stranger;
  EXPECT_TRUE(pair.holds(left()));
  EXPECT_TRUE(pair.holds(right()));
  EXPECT_FALSE(pair.holds(stranger));
  EXPECT_EQ(&right(), &pair.other(left()));
  EXPECT_EQ(&left(), &pair.other(right()));
}

TEST_F(PanelPairTest, TheStartupSideFollowsTheActiveSide) {
  setActiveSide(1);
  EXPECT_EQ('R', GlobalOptions::StartupSide);
  EXPECT_EQ(&right(), &panelPair().active());
  setActiveSide(0);
  EXPECT_EQ('L', GlobalOptions::StartupSide);
  EXPECT_EQ(&right(), &panelPair().inactive());
}

TEST_F(PanelPairTest, TheScreenSizeSetsRowsAndPages) {
  left().style = PanelStyle::Brief;
  GlobalOptions::FullScreen = false;
  fetchScreenSize();
  EXPECT_EQ(panelRowsFor(panelPair().screenLines, PanelHeight::HalfScreen), panelPair().panelRows);
  EXPECT_EQ(3 * panelPair().panelRows, left().pageSize);
}
