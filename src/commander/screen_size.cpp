#include "commander/screen_size.h"

#include <algorithm>

#include "console/console.h"
#include "options/options.h"
#include "panels/commands/panel_switch.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_window.h"

namespace {

constexpr int FewLines = 25, ManyLines = 50;
constexpr int FewColumns = 80, ManyColumns = 132;
// What a new console has.
constexpr char FirstFamily[] = "DejaVu Sans Mono";
constexpr int FirstFontSize = 12;

void closeWindows(bool (&open)[2]) {
  for (int side = 1; side >= 0; --side) {
    open[side] = panelPair().side[side].showing;
    closePanelWindow(side);
  }
}

void openWindows(const bool (&open)[2]) {
  fetchScreenSize();
  for (int side = 0; side < 2; ++side) panelPair().side[side].showing = open[side];
  panelsVisible(Visible::Yes);
  drawClock();
}

bool wantsOtherFont() {
  const Estring& family = GlobalOptions::FontFamily;
  return (!family.empty() && family != FirstFamily) || GlobalOptions::FontSize != FirstFontSize;
}

void resize(int columns, int lines) {
  bool open[2];
  closeWindows(open);
  console->setGeometry(columns, lines, Estring(), 0);
  openWindows(open);
}

}  // namespace

int wantedLines() {
  const int lines = GlobalOptions::Lines;
  return lines != 0 && (lines < FewLines || lines > CConsole::MaxRows) ? FewLines : lines;
}

int wantedColumns() {
  const int columns = GlobalOptions::Columns;
  return columns != 0 && (columns < FewColumns || columns > CConsole::MaxColumns) ? FewColumns
                                                                                  : columns;
}

void applyScreenOptions() {
  GridSize size = console->getSize();
  int columns = wantedColumns() == 0 ? std::max(size.columns, FewColumns) : wantedColumns();
  int lines = wantedLines() == 0 ? std::max(size.rows, FewLines) : wantedLines();
  bool differs = columns != size.columns || lines != size.rows || wantsOtherFont();
  if (differs) {
    console->setGeometry(columns, lines, GlobalOptions::FontFamily, GlobalOptions::FontSize);
  }
  fetchScreenSize();
}

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
  resize(panelPair().screenColumns, nextLines(panelPair().screenLines, wantedLines()));
}

void changeColumns() {
  resize(nextColumns(panelPair().screenColumns, wantedColumns()), panelPair().screenLines);
}

void followScreenOptions(const ScreenOptions& before) {
  const ScreenOptions now;
  const PanelPair& pair = panelPair();
  const bool otherLines = now.lines != before.lines && now.lines != 0;
  const bool otherColumns = now.columns != before.columns && now.columns != 0;
  if (!otherLines && !otherColumns) return;
  resize(otherColumns ? wantedColumns() : pair.screenColumns,
         otherLines ? wantedLines() : pair.screenLines);
}

void reopenPanels() {
  bool open[2];
  closeWindows(open);
  openWindows(open);
}
