#include "panels/model/panel_pair.h"

#include <algorithm>

#include "console/console.h"
#include "options/options.h"

namespace {

constexpr int MinLines = 25;
constexpr int MinColumns = 80;
constexpr int RowsBesideFullPanels = 6;  // frames, separator, status line, command line, key bar
constexpr int RowsBelowHalfPanels = 2;   // command line and key bar

}  // namespace

PanelPair& panelPair() {
  static PanelPair pair;
  return pair;
}

int panelRowsFor(int screenLines, PanelHeight height) {
  const int rows = height == PanelHeight::FullScreen
                       ? screenLines - RowsBesideFullPanels
                       : screenLines - (screenLines / 2 + RowsBelowHalfPanels);
  return std::max(rows, 1);
}

void fetchScreenSize() {
  PanelPair& pair = panelPair();
  if (console) {
    const GridSize size = console->getSize();
    pair.screenLines = std::clamp(size.rows, MinLines, CConsole::MaxRows);
    pair.screenColumns = std::clamp(size.columns, MinColumns, CConsole::MaxColumns);
  }
  pair.panelRows =
      panelRowsFor(pair.screenLines,
                   GlobalOptions::FullScreen ? PanelHeight::FullScreen : PanelHeight::HalfScreen);
  for (Panel& panel : pair.side) updatePageSize(panel);
}

int pageSizeFor(PanelStyle style, int panelRows) {
  return std::max(pageColumns(style) * panelRows, 1);
}

void updatePageSize(Panel& panel) {
  panel.pageSize = pageSizeFor(panel.style, panelPair().panelRows);
}

void setActiveSide(int side) {
  panelPair().activeSide = side;
  GlobalOptions::StartupSide = side == 0 ? 'L' : 'R';
}
