#include "panels/picture/panel_columns.h"

#include <algorithm>

namespace {

constexpr int WidestName = 256;
constexpr int WidestSize = 10;

std::vector<PanelColumn> narrowestColumns(PanelStyle style) {
  auto column = [](ColumnKind kind, int minimum, int maximum) {
    return PanelColumn{kind, minimum, maximum, minimum};
  };
  const PanelColumn name = column(ColumnKind::Name, 12, WidestName);
  switch (style) {
    case PanelStyle::Brief:
      return {name, name, name};
    case PanelStyle::BriefWide:
      return {name, name};
    case PanelStyle::Full:
      return {column(ColumnKind::Name, 13, WidestName), column(ColumnKind::Size, 8, WidestSize),
              column(ColumnKind::Date, 8, 8), column(ColumnKind::Time, 6, 6)};
    case PanelStyle::Wide:
      return {column(ColumnKind::Size, 8, WidestSize), column(ColumnKind::Name, 29, WidestName)};
    case PanelStyle::Unix:
      return {name, column(ColumnKind::Size, 7, WidestSize), column(ColumnKind::Mode, 9, 9),
              column(ColumnKind::Owner, 3, 10), column(ColumnKind::Group, 3, 10)};
    case PanelStyle::Tree:
    case PanelStyle::DialogTree:
      break;
  }
  return {};
}

int separatorCount(const std::vector<PanelColumn>& columns) {
  return static_cast<int>(columns.size()) - 1;
}

// One round of sharing out `rest` cells; returns those that found no place.
int shareOut(std::vector<PanelColumn>& columns, int rest, int interior) {
  int left = rest;
  for (PanelColumn& column : columns) {
    int share = (rest * column.width + interior - 1) / interior;
    share = std::min({share, left, column.maximum - column.width});
    column.width += share;
    left -= share;
  }
  return left;
}

}  // namespace

std::vector<PanelColumn> layoutColumns(PanelStyle style, int interior) {
  std::vector<PanelColumn> columns = narrowestColumns(style);
  if (columns.empty()) return columns;
  int rest = interior - separatorCount(columns);
  for (const PanelColumn& column : columns) rest -= column.minimum;
  while (rest > 0) {
    const int left = shareOut(columns, rest, interior);
    if (left == rest) break;  // every column is as wide as it may be
    rest = left;
  }
  return columns;
}

int columnStart(const std::vector<PanelColumn>& columns, int index) {
  int x = 0;
  for (int i = 0; i < index && i < static_cast<int>(columns.size()); ++i) x += columns[i].width + 1;
  return x;
}

std::vector<int> separatorPositions(const std::vector<PanelColumn>& columns) {
  std::vector<int> positions;
  for (int i = 1; i < static_cast<int>(columns.size()); ++i) {
    positions.push_back(columnStart(columns, i) - 1);
  }
  return positions;
}

CellPlace placeInPage(PanelStyle style, int indexInPage, int panelRows, int interior) {
  CellPlace place;
  if (pageColumns(style) > 1) place.column = indexInPage / panelRows;
  place.row = indexInPage - place.column * panelRows;
  if (place.column > 0) place.x = columnStart(layoutColumns(style, interior), place.column);
  return place;
}
