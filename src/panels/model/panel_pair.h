#pragma once

#include "panels/model/panel.h"

// The two panels and the sizes that everything is laid out by. One per process, application thread.
struct PanelPair {
  Panel side[2];       // 0 left, 1 right
  int activeSide = 0;  // change it through setActiveSide
  int screenLines = 25;
  int screenColumns = 80;
  int panelRows = 19;  // file rows in one column of a panel

  Panel& active() { return side[activeSide]; }
  Panel& inactive() { return side[1 - activeSide]; }
  int sideOf(const Panel& panel) const { return &panel == &side[1] ? 1 : 0; }
  Panel& other(const Panel& panel) { return side[1 - sideOf(panel)]; }
  // A panel of the pair (and not, say, a temporary one of a search).
  bool holds(const Panel& panel) const { return &panel == &side[0] || &panel == &side[1]; }
  // A command works on a list of files: beside an INFO or tree panel, on the other one.
  int commandSide() const { return side[activeSide].isList() ? activeSide : 1 - activeSide; }
  int panelWidth() const { return screenColumns / 2; }
};

PanelPair& panelPair();

enum class PanelHeight { HalfScreen, FullScreen };
// panelRows by the rule of the screen: full, lines - 6; half, lines - (lines / 2 + 2).
int panelRowsFor(int screenLines, PanelHeight height);
// Takes the console's size (clamped to what panels need) and recomputes panelRows and page sizes.
void fetchScreenSize();
// At least 1: panelRows times the columns of a page.
int pageSizeFor(PanelStyle style, int panelRows);
void updatePageSize(Panel& panel);
// Also keeps the StartupSide option in step.
void setActiveSide(int side);
