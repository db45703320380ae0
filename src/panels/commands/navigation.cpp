#include "panels/commands/navigation.h"

#include <algorithm>

#include "panels/model/panel_pair.h"
#include "panels/picture/panel_columns.h"
#include "panels/picture/panel_draw.h"

namespace {

bool hasCursor(const Panel& panel) {
  return panel.showing && panel.isFiles();
}

void clearSearch(Panel& panel) {
  panel.quickSearch = Westring();
}

bool isOnTheWay(const Panel& panel, int index) {
  if (!panel.isTreeStyle()) return panel.entries[index]->tagged;
  return panel.treeLineAt(index).level <= panel.treeLineAt(panel.currentIndex()).level;
}

}  // namespace

void moveCursor(Panel& panel, int delta) {
  if (!hasCursor(panel)) return;
  panel.cursor += delta;
  if (panel.top + panel.cursor >= panel.count()) panel.cursor = panel.count() - 1 - panel.top;
  if (panel.cursor >= 0 && panel.cursor < panel.pageSize) return;
  if (panel.top == 0 && panel.cursor < 0) {
    panel.cursor = 0;
    return;
  }
  const int step = panel.cursor < 0 ? panel.cursor : panel.cursor + 1 - panel.pageSize;
  panel.cursor -= step;
  panel.top = std::max(panel.top + step, 0);
  if (step == 1 || step == -1) {
    scrollPanelRows(panel, step);
  } else {
    drawPanel(panel);
  }
}

void cursorHome(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  moveCursor(panel, -panel.currentIndex());
}

void cursorEnd(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  moveCursor(panel, panel.count() - 1 - panel.currentIndex());
}

void cursorPageUp(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  if (panel.top == 0) {
    panel.cursor = 0;
    return;
  }
  panel.top -= panel.pageSize;
  panel.cursor += panel.pageSize;
  if (panel.top < 0) {
    panel.cursor += panel.top;
    panel.top = 0;
  }
  panel.cursor = std::min(panel.cursor, panel.pageSize - 1);
  drawPanel(panel);
}

void cursorPageDown(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  const int next = panel.top + panel.pageSize;
  if (next >= panel.count()) {
    panel.cursor = std::max(panel.count() - 1 - panel.top, 0);
    return;
  }
  panel.top = next;
  panel.cursor -= panel.pageSize;
  const int excess = next + panel.pageSize - panel.count();
  if (excess > 0) {
    panel.top -= excess;
    panel.cursor += excess;
  }
  panel.cursor = std::max(panel.cursor, 0);
  drawPanel(panel);
}

bool isMultiColumn(const Panel& panel) {
  return pageColumns(panel.style) > 1;
}

void cursorColumnLeft(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  const int rows = panelPair().panelRows;
  if (panel.top >= rows && panel.cursor < rows) {
    panel.top -= rows;
    drawPanel(panel);
  } else {
    moveCursor(panel, -rows);
  }
}

void cursorColumnRight(Panel& panel) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  const int rows = panelPair().panelRows;
  const bool pastEnd = panel.currentIndex() + rows >= panel.count();
  if (pastEnd || rows + panel.cursor < panel.pageSize) {
    moveCursor(panel, rows);
  } else {
    panel.top += rows;
    drawPanel(panel);
  }
}

void cursorToTagged(Panel& panel, int direction) {
  if (!hasCursor(panel)) return;
  clearSearch(panel);
  const int start = panel.currentIndex();
  for (int i = start + direction; i >= 0 && i < panel.count(); i += direction) {
    if (isOnTheWay(panel, i)) return moveCursor(panel, i - start);
  }
}

void scrollName(Panel& panel, int step) {
  if (!hasCursor(panel) || !panel.currentEntry()) return;
  resetNameScroll(panel);
  panel.nameOffsetEntry = panel.currentIndex();
  panel.nameOffset = std::max(panel.nameOffset + step, 0);
  const PanelPair& pair = panelPair();
  if (pair.holds(panel)) drawCursor(pair.sideOf(panel), CursorBar::On);
}

void resetNameScroll(Panel& panel) {
  if (panel.nameOffsetEntry != panel.currentIndex()) panel.nameOffset = 0;
}
