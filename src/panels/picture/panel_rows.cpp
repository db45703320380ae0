#include "panels/picture/panel_rows.h"

#include <algorithm>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/text_format.h"
#include "foundation/users.h"
#include "options/colours.h"
#include "panels/picture/entry_text.h"
#include "panels/picture/panel_colours.h"
#include "panels/picture/tree_line.h"

namespace {

constexpr wchar_t ColumnLine = 0x2502;
constexpr wchar_t LinkArrow = 0x00BB;
constexpr wchar_t LinkSuffix = L'@';
constexpr wchar_t HiddenSuffix = 0x2591;
constexpr int DialogTreeWidth = 70;
constexpr int LeastOfName = 8;  // cells of a tree line
constexpr unsigned char ForegroundBits = 0x0F;
constexpr unsigned char BackgroundBits = 0xF0;

unsigned char foregroundOn(Colour foreground, unsigned char row) {
  return static_cast<unsigned char>((colourOf(foreground) & ForegroundBits) |
                                    (row & BackgroundBits));
}

CellString textCells(const Westring& text, unsigned char attr) {
  CellString cells(attr);
  cells.append(text, attr);
  return cells;
}

// Cuts as the plain name would be cut; a name that fits loses the end of the link text behind it.
CellString cutCells(const NameText& text, int width, unsigned char attr) {
  if (text.nameLength > width) {
    Westring name = Westring::withRoom(text.nameLength);
    for (int i = 0; i < text.nameLength; ++i) name.data()[i] = text.cells[i].ch;
    name.data()[text.nameLength] = 0;
    return textCells(cutName(name, width), attr);
  }
  CellString result = left(text.cells, width);
  result[width - 1] = Cell{CutMark, attr};
  return result;
}

Westring columnText(const entry& item, const PanelColumn& column) {
  switch (column.kind) {
    case ColumnKind::Size:
      return sizeText(item, column.width);
    case ColumnKind::Date:
      return dateText(item.date);
    case ColumnKind::Time:
      return timeText(item.time);
    case ColumnKind::Mode:
      return modeString(item.mode);
    case ColumnKind::Owner:
      return userName(item.owner);
    case ColumnKind::Group:
      return groupName(item.group);
    case ColumnKind::Name:
      break;
  }
  return Westring();
}

CellString treeRow(Panel& panel, int index, const RowLayout& layout, unsigned char attr,
                   int& nameOffset) {
  const TreeLine line = panel.treeLineAt(index);
  const int room = layout.style == PanelStyle::DialogTree ? DialogTreeWidth : layout.interior;
  const int nameWidth = std::max(room - treePrefixWidth(line), std::min(LeastOfName, room));
  CellString row = treePrefix(line, attr);
  row.append(nameColumn(panel, *panel.entries[index], nameWidth, attr, nameOffset));
  // Where the branches leave no room for a name, the line is scrolled.
  if (row.length() > room) row = mid(row, row.length() - room, -1);
  return padded(row, layout.interior);
}

CellString emptyColumn(int width, unsigned char attr) {
  return padded(CellString(attr), width);
}

CellString emptyRow(const RowLayout& layout) {
  const unsigned char attr = colourOf(Colour::Panel);
  CellString row = emptyColumn(layout.interior, attr);
  for (int x : separatorPositions(layout.columns)) {
    if (x < row.length()) row[x] = separatorCell(attr);
  }
  return row;
}

}  // namespace

Cell separatorCell(unsigned char attr) {
  return Cell{ColumnLine, foregroundOn(Colour::Panel, attr)};
}

NameText nameWithTarget(Panel& panel, const entry& item, unsigned char attr,
                        unsigned char arrowAttr) {
  NameText text;
  text.cells = CellString(item.name(), attr);
  text.nameLength = text.cells.length();
  if (item.isLink()) {
    text.cells.append(L' ', attr).append(LinkArrow, arrowAttr).append(L' ', attr);
    text.cells.append(panel.linkTargets.targetOf(joinPath(panel.path, item.name())), attr);
  }
  return text;
}

CellString fitName(NameText text, int width, unsigned char attr, int& nameOffset) {
  if (width <= 0) return CellString(attr);
  nameOffset = std::clamp(nameOffset, 0, std::max(0, text.cells.length() - width));
  if (nameOffset > 0) {
    text.cells = mid(text.cells, nameOffset, -1);
    text.nameLength = std::max(0, text.nameLength - nameOffset);
  }
  if (text.cells.length() > width) return cutCells(text, width, attr);
  text.cells.setAttr(attr);
  return padded(text.cells, width);
}

CellString nameColumn(Panel& panel, const entry& item, int width, unsigned char attr,
                      int& nameOffset) {
  CellString suffix(attr);
  if (item.isLink() && !item.isDirectory() && width > 0) {
    suffix.append(LinkSuffix, attr);
    --width;
  }
  if (item.isHidden() && width > 0) {
    suffix.append(HiddenSuffix, attr);
    --width;
  }
  CellString cells = fitName(nameWithTarget(panel, item, attr, foregroundOn(Colour::Tagged, attr)),
                             width, attr, nameOffset);
  return cells.append(suffix);
}

CellString rowCells(Panel& panel, int index, const RowLayout& layout, int pageColumn,
                    unsigned char attr, int& nameOffset) {
  const entry& item = *panel.entries[index];
  if (layout.columns.empty()) return treeRow(panel, index, layout, attr, nameOffset);
  if (layout.isMultiColumn()) {
    return nameColumn(panel, item, layout.columns[pageColumn].width, attr, nameOffset);
  }
  CellString row = CellString::withRoom(layout.interior + 1, attr);
  for (const PanelColumn& column : layout.columns) {
    if (row.length() > 0) {
      const Cell line = separatorCell(attr);
      row.append(line.ch, line.attr);
    }
    if (column.kind == ColumnKind::Name) {
      row.append(nameColumn(panel, item, column.width, attr, nameOffset));
    } else {
      row.append(padded(textCells(columnText(item, column), attr), column.width));
    }
  }
  return row;
}

CellString pageRow(Panel& panel, const RowLayout& layout, int row, int panelRows) {
  int noOffset = 0;
  if (!layout.isMultiColumn()) {
    const int index = panel.top + row;
    if (index >= panel.count()) return emptyRow(layout);
    return rowCells(panel, index, layout, 0, naturalColour(*panel.entries[index]), noOffset);
  }
  const unsigned char plain = colourOf(Colour::Panel);
  CellString cells = CellString::withRoom(layout.interior + 1, plain);
  for (int column = 0; column < pageColumns(layout.style); ++column) {
    if (column > 0) {
      const Cell line = separatorCell(plain);
      cells.append(line.ch, line.attr);
    }
    const int index = panel.top + column * panelRows + row;
    if (index >= panel.count()) {
      cells.append(emptyColumn(layout.columns[column].width, plain));
      continue;
    }
    cells.append(
        rowCells(panel, index, layout, column, naturalColour(*panel.entries[index]), noOffset));
  }
  return cells;
}
