#include "commander/screen_size.h"

#include <algorithm>

#include "config/options.h"
#include "console/console.h"
#include "panels/panel_clock.h"
#include "panels/panel_window.h"

namespace {

constexpr int FewLines = 25, ManyLines = 50;
constexpr int FewColumns = 80, ManyColumns = 132;

void closeWindows(bool (&open)[2]) {
  for (int side = 1; side >= 0; --side) {
    open[side] = panelPair().side[side].showing;
    closePanelWindow(side);
  }
}

void openWindows(const bool (&open)[2]) {
  fetchScreenSize();
  for (int side = 0; side < 2; ++side) panelPair().side[side].showing = open[side];
  panelsVisible(true);
  drawClock();
}

void resize(int columns, int lines) {
  bool open[2];
  closeWindows(open);
  console->setGeometry(columns, lines, Estring(), 0);
  openWindows(open);
}

}  // namespace

int nextLines(int lines, int configured) {
  if (lines == FewLines)
    return configured <= FewLines ? ManyLines : std::min(configured, ManyLines);
  if (lines == ManyLines) return configured <= ManyLines ? FewLines : configured;
  return lines < ManyLines ? ManyLines : FewLines;
}

int nextColumns(int columns, int configured) {
  if (columns == FewColumns) return ManyColumns;
  if (columns == ManyColumns && configured > FewColumns && configured != ManyColumns)
    return configured;
  return FewColumns;
}

void changeLines() {
  resize(panelPair().screenColumns, nextLines(panelPair().screenLines, GlobalOptions::Lines));
}

void changeColumns() {
  resize(nextColumns(panelPair().screenColumns, GlobalOptions::Columns), panelPair().screenLines);
}

void reopenPanels() {
  bool open[2];
  closeWindows(open);
  openWindows(open);
}
