#include "panels/picture/panel_columns.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

std::vector<int> widths(PanelStyle style, int interior) {
  std::vector<int> result;
  for (const PanelColumn& column : layoutColumns(style, interior)) result.push_back(column.width);
  return result;
}

int total(const std::vector<int>& columns) {
  return std::accumulate(columns.begin(), columns.end(), 0) + static_cast<int>(columns.size()) - 1;
}

constexpr PanelStyle ListStyles[] = {PanelStyle::Brief, PanelStyle::Full, PanelStyle::Wide,
                                     PanelStyle::BriefWide, PanelStyle::Unix};

}  // namespace

struct LayoutRow {
  PanelStyle style;
  int interior;
  std::vector<int> widths;
};

TEST(PanelColumns, TheWidthsOfEachStyleAtUsualScreens) {
  const std::vector<LayoutRow> rows = {
      {PanelStyle::Brief, 38, {12, 12, 12}},    {PanelStyle::Full, 38, {13, 8, 8, 6}},
      {PanelStyle::Wide, 38, {8, 29}},          {PanelStyle::BriefWide, 38, {19, 18}},
      {PanelStyle::Unix, 38, {12, 7, 9, 3, 3}}, {PanelStyle::Full, 64, {37, 10, 8, 6}},
      {PanelStyle::Wide, 48, {10, 37}},         {PanelStyle::Wide, 64, {10, 53}},
      {PanelStyle::Full, 48, {21, 10, 8, 6}},   {PanelStyle::Full, 78, {51, 10, 8, 6}},
      {PanelStyle::Brief, 48, {16, 15, 15}},
  };
  for (const LayoutRow& row : rows) {
    EXPECT_EQ(widths(row.style, row.interior), row.widths)
        << static_cast<int>(row.style) << " in " << row.interior;
  }
}

TEST(PanelColumns, TheColumnsFillTheInteriorExactly) {
  for (PanelStyle style : ListStyles) {
    for (int interior = 38; interior <= 248; ++interior) {
      ASSERT_EQ(total(widths(style, interior)), interior) << static_cast<int>(style);
    }
  }
}

TEST(PanelColumns, NoColumnLeavesItsLimits) {
  for (PanelStyle style : ListStyles) {
    for (int interior : {38, 48, 64, 78, 130, 248, 2000}) {
      for (const PanelColumn& column : layoutColumns(style, interior)) {
        EXPECT_GE(column.width, column.minimum);
        EXPECT_LE(column.width, column.maximum);
      }
    }
  }
}

TEST(PanelColumns, WhenAllColumnsAreAtTheirWidestTheRestStaysEmpty) {
  EXPECT_EQ(widths(PanelStyle::Wide, 1000), (std::vector<int>{10, 256}));
  EXPECT_EQ(widths(PanelStyle::Brief, 5000), (std::vector<int>{256, 256, 256}));
}

TEST(PanelColumns, TooNarrowAnInteriorKeepsTheNarrowestColumns) {
  EXPECT_EQ(widths(PanelStyle::Full, 10), (std::vector<int>{13, 8, 8, 6}));
}

TEST(PanelColumns, TheTreeStylesHaveNone) {
  EXPECT_TRUE(layoutColumns(PanelStyle::Tree, 38).empty());
  EXPECT_TRUE(layoutColumns(PanelStyle::DialogTree, 70).empty());
}

TEST(PanelColumns, ColumnsStandBehindThoseBeforeAndTheirSeparators) {
  const auto columns = layoutColumns(PanelStyle::Full, 38);
  EXPECT_EQ(columnStart(columns, 0), 0);
  EXPECT_EQ(columnStart(columns, 1), 14);
  EXPECT_EQ(columnStart(columns, 2), 23);
  EXPECT_EQ(columnStart(columns, 3), 32);
  EXPECT_EQ(separatorPositions(columns), (std::vector<int>{13, 22, 31}));
}

TEST(PanelColumns, AnEntryStandsInTheColumnOfItsPage) {
  struct Row {
    PanelStyle style;
    int index;
    int x;
    int row;
  };
  for (const Row& row : {Row{PanelStyle::Brief, 0, 0, 0},
                         {PanelStyle::Brief, 18, 0, 18},
                         {PanelStyle::Brief, 19, 13, 0},
                         {PanelStyle::Brief, 56, 26, 18},
                         {PanelStyle::BriefWide, 18, 0, 18},
                         {PanelStyle::BriefWide, 20, 20, 1},
                         {PanelStyle::Full, 18, 0, 18},
                         {PanelStyle::Unix, 3, 0, 3},
                         {PanelStyle::Tree, 5, 0, 5}}) {
    const CellPlace place = placeInPage(row.style, row.index, 19, 38);
    EXPECT_EQ(place.x, row.x) << row.index;
    EXPECT_EQ(place.row, row.row) << row.index;
  }
}
