#pragma once

#include "console/cell_string.h"
#include "panels/picture/panel_columns.h"

// A list style laid out in a width. Cheap to make; whoever draws many rows makes it once.
struct RowLayout {
  RowLayout(PanelStyle listStyle, int interiorWidth)
      : style(listStyle), interior(interiorWidth), columns(layoutColumns(style, interior)) {}

  bool isMultiColumn() const { return pageColumns(style) > 1; }

  PanelStyle style;
  int interior;
  std::vector<PanelColumn> columns;  // empty for the tree styles
};

// A name, with a link's target behind it, ready to be cut to a column.
struct NameText {
  CellString cells;
  int nameLength = 0;  // of the name alone, ahead of the link's arrow
};

// `arrowAttr` colours the mark between a link and its target.
NameText nameWithTarget(Panel& panel, const entry& item, unsigned char attr,
                        unsigned char arrowAttr);
// Exactly `width` cells: scrolled, cut with a mark, or padded. An offset beyond the text's end is
// lowered to what shows the end in the last cell.
CellString fitName(NameText text, int width, unsigned char attr, int& nameOffset);
// The name column: the text with its suffixes in exactly `width` cells.
CellString nameColumn(Panel& panel, const entry& item, int width, unsigned char attr,
                      int& nameOffset);

// The row of entry `index`; in the multi-column styles its place in page column `pageColumn`.
CellString rowCells(Panel& panel, int index, const RowLayout& layout, int pageColumn,
                    unsigned char attr, int& nameOffset);
// A whole row of the page as it stands, entries in their natural colours: across the columns in the
// multi-column styles, blank with separators where no entry is.
CellString pageRow(Panel& panel, const RowLayout& layout, int row, int panelRows);
// The vertical line between columns on a row of `attr`.
Cell separatorCell(unsigned char attr);
