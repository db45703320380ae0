#include "panels/picture/panel_clock.h"

#include "drawn_panels.h"
#include "panels/picture/panel_title.h"

namespace {

DosTime at(int hour, int minute) {
  return {0, static_cast<uint16_t>(hour << 11 | minute << 5)};
}

}  // namespace

class PanelClockTest : public DrawnPanelsTest {};

TEST_F(PanelClockTest, TheClockStandsInTheLastSixCellsOfTheTopRow) {
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 24;
  open();
  drawClock(at(9, 5));
  EXPECT_EQ(rowText(74, 0, 6), "  9:05");
  for (int x = 74; x < 80; ++x) EXPECT_EQ(attrAt(x, 0), colourOf(Colour::Clock)) << x;
  EXPECT_EQ(attrAt(73, 0), colourOf(Colour::Panel));
}

TEST_F(PanelClockTest, InTwelveHourModeItShowsTheHalfOfTheDay) {
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 12;
  struct Row {
    int hour;
    int minute;
    const char* text;
  };
  for (const Row& row : {Row{0, 0, "12:00a"},
                         {9, 5, " 9:05a"},
                         {11, 59, "11:59a"},
                         {12, 0, "12:00p"},
                         {13, 1, " 1:01p"},
                         {23, 59, "11:59p"}}) {
    drawClock(at(row.hour, row.minute));
    EXPECT_EQ(rowText(74, 0, 6), row.text);
  }
}

TEST_F(PanelClockTest, InTwentyFourHourModeItCountsToTwentyThree) {
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 24;
  struct Row {
    int hour;
    int minute;
    const char* text;
  };
  for (const Row& row : {Row{0, 0, "  0:00"}, {12, 0, " 12:00"}, {23, 59, " 23:59"}}) {
    drawClock(at(row.hour, row.minute));
    EXPECT_EQ(rowText(74, 0, 6), row.text);
  }
}

TEST_F(PanelClockTest, ItShowsThePresentTime) {
  GlobalOptions::Clock = true;
  const time_t before = time(nullptr);
  drawClock();
  const std::string shown = rowText(74, 0, 6);
  const time_t after = time(nullptr);
  drawClock(timeToDos(before));
  const std::string first = rowText(74, 0, 6);
  drawClock(timeToDos(after));
  EXPECT_TRUE(shown == first || shown == rowText(74, 0, 6)) << shown;
}

TEST_F(PanelClockTest, WithTheOptionOffThereIsNone) {
  drawClock(at(9, 5));
  EXPECT_EQ(rowText(74, 0, 6), "      ");
}

TEST_F(PanelClockTest, ATitleOfTheRightPanelLeavesTheClockStanding) {
  GlobalOptions::Clock = true;
  open();
  setActiveSide(1);
  drawTitle(right());
  for (int x = 74; x < 80; ++x) EXPECT_EQ(attrAt(x, 0), colourOf(Colour::Clock)) << x;
}

TEST_F(PanelClockTest, SwitchedOffItGivesItsCellsBackToTheFrame) {
  open();
  const std::string without = rowText(0);
  GlobalOptions::Clock = true;
  drawTitle(right());
  EXPECT_NE(rowText(0), without);
  GlobalOptions::Clock = false;
  removeClock();
  EXPECT_EQ(rowText(0), without);
  EXPECT_EQ(attrAt(79, 0), colourOf(Colour::Panel));
}

TEST_F(PanelClockTest, SwitchedOffWithoutAPanelBelowItsCellsAreBlank) {
  GlobalOptions::Clock = true;
  drawClock(at(9, 5));
  GlobalOptions::Clock = false;
  removeClock();
  EXPECT_EQ(rowText(74, 0, 6), "      ");
  EXPECT_EQ(attrAt(79, 0), 7);
}

TEST_F(PanelClockTest, OnAnOddScreenItStandsOverTheRightPanel) {
  setScreen(81, 25);
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 24;
  open();
  drawClock(at(10, 30));
  EXPECT_EQ(rowText(74, 0, 6), " 10:30");
}

TEST(PanelClock, TheTextChangesWithTheMinute) {
  EXPECT_EQ(msToNextMinute({120, 0}), 60000);
  EXPECT_EQ(msToNextMinute({121, 500000000}), 58500);
  EXPECT_EQ(msToNextMinute({179, 999000000}), 1);
  EXPECT_EQ(msToNextMinute({179, 999999999}), 1);
  const int wait = msToNextMinute();
  EXPECT_GE(wait, 1);
  EXPECT_LE(wait, 60000);
}
