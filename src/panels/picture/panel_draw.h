#pragma once

#include "panels/model/panel_pair.h"

enum class CursorBar { Off, On };
inline constexpr int NaturalColour = 0;

// Full redraw with page size, frame, rows, status line and title. Postponed (needsDraw) while the
// panel has no window or a hidden one.
void drawPanel(Panel& panel);
// One row of the entry at `index` at its place in the page, in `colour` or its natural colour.
// Scrolls the name by `nameOffset`, which is lowered to what the name needs.
void drawEntry(Panel& panel, int index, int colour, int& nameOffset);
void drawEntry(Panel& panel, int index);  // natural colour, no offset
// Repaints the current entry of a side in the bar's or its natural colours, and the status line.
void drawCursor(int side, CursorBar bar);
// Scrolls the list by one row (+1 up, -1 down) after `top` changed, and draws the rows that opened.
void scrollPanelRows(Panel& panel, int step);
