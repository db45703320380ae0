#pragma once

#include <vector>

#include "panels/model/panel.h"

enum class ColumnKind { Name, Size, Date, Time, Mode, Owner, Group };

struct PanelColumn {
  ColumnKind kind;
  int minimum;  // cells
  int maximum;
  int width;  // current
};

// The columns of a list style laid out in `interior` cells, one cell between columns. Empty for the
// tree styles.
std::vector<PanelColumn> layoutColumns(PanelStyle style, int interior);
// x of column `index`, relative to the interior.
int columnStart(const std::vector<PanelColumn>& columns, int index);
// x of each separator cell.
std::vector<int> separatorPositions(const std::vector<PanelColumn>& columns);

struct CellPlace {
  int x = 0;
  int row = 0;
  int column = 0;
};
// Where entry `indexInPage` stands, relative to the interior.
CellPlace placeInPage(PanelStyle style, int indexInPage, int panelRows, int interior);
