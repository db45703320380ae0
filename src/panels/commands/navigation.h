#pragma once

#include "panels/model/panel.h"

// Moves the cursor by `delta` entries and scrolls, drawing only what changed. The caller takes the
// bar off before and puts it back after.
void moveCursor(Panel& panel, int delta);
void cursorHome(Panel& panel);
void cursorEnd(Panel& panel);
void cursorPageUp(Panel& panel);
void cursorPageDown(Panel& panel);
bool isMultiColumn(const Panel& panel);  // brief and briefwide
void cursorColumnLeft(Panel& panel);     // in multi-column styles
void cursorColumnRight(Panel& panel);
// To the next (+1) or previous (-1) tagged entry.
void cursorToTagged(Panel& panel, int direction);
// Scrolls the current entry's name by one character, to the right (+1) or back (-1), and repaints
// the bar.
void scrollName(Panel& panel, int step);
// Ends the scrolling of a name that the cursor has left.
void resetNameScroll(Panel& panel);
