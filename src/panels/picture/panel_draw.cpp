#include "panels/picture/panel_draw.h"

#include "options/colours.h"
#include "panels/model/panel_position.h"
#include "panels/picture/info_panel.h"
#include "panels/picture/panel_colours.h"
#include "panels/picture/panel_frame.h"
#include "panels/picture/panel_rows.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/status_line.h"

namespace {

RowLayout layoutOf(const Panel& panel) {
  return RowLayout(panel.style, panel.window->innerWidth());
}

void drawRows(Panel& panel, const RowLayout& layout) {
  const int rows = panelPair().panelRows;
  for (int row = 0; row < rows; ++row) panel.window->put(0, row, pageRow(panel, layout, row, rows));
}

bool isActive(const Panel& panel) {
  return &panel == &panelPair().active();
}

void drawInfo(Panel& panel) {
  drawPlainFrame(panel);
  drawInfoPanel(panel);
  drawTitle(panel);
}

}  // namespace

void drawPanel(Panel& panel) {
  updatePageSize(panel);
  if (!isDrawable(panel)) {
    panel.needsDraw = true;
    return;
  }
  panel.needsDraw = false;
  BatchScope batch;
  if (!panel.isFiles()) return drawInfo(panel);
  normalisePosition(panel);
  const RowLayout layout = layoutOf(panel);
  drawRows(panel, layout);
  drawPanelFrame(panel, layout);
  drawTitle(panel);
  drawStatusLine(panel);
  if (isActive(panel)) showPathInWindowTitle();
}

void drawEntry(Panel& panel, int index, int colour, int& nameOffset) {
  if (!isDrawable(panel) || !panel.isFiles()) return;
  const int inPage = index - panel.top;
  if (inPage < 0 || inPage >= panel.pageSize || index >= panel.count()) return;
  const entry& item = *panel.entries[index];
  const RowLayout layout = layoutOf(panel);
  const CellPlace place = placeInPage(panel.style, inPage, panelPair().panelRows, layout.interior);
  const unsigned char attr =
      colour == NaturalColour ? naturalColour(item) : static_cast<unsigned char>(colour);
  panel.window->put(place.x, place.row,
                    rowCells(panel, index, layout, place.column, attr, nameOffset));
}

void drawEntry(Panel& panel, int index) {
  int noOffset = 0;
  drawEntry(panel, index, NaturalColour, noOffset);
}

void drawCursor(int side, CursorBar bar) {
  PanelPair& pair = panelPair();
  Panel& panel = pair.side[side];
  if (!isDrawable(panel) || !panel.isFiles()) return;
  BatchScope batch;
  if (const entry* item = panel.currentEntry()) {
    const bool barred = bar == CursorBar::On && side == pair.activeSide;
    const int index = panel.currentIndex();
    int noOffset = 0;
    // Only under the bar: the cursor may leave the entry next.
    int& offset = barred && panel.nameOffsetEntry == index ? panel.nameOffset : noOffset;
    drawEntry(panel, index, barred ? barColour(*item) : NaturalColour, offset);
  }
  drawStatusLine(panel);
}

void scrollPanelRows(Panel& panel, int step) {
  if (!isDrawable(panel) || step == 0) return;
  const int rows = panelPair().panelRows;
  const RowLayout layout = layoutOf(panel);
  BatchScope batch;
  panel.window->scroll(0, 0, layout.interior, rows, step);
  const int opened = step > 0 ? rows - 1 : 0;
  panel.window->put(0, opened, pageRow(panel, layout, opened, rows));
}
