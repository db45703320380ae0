#pragma once

#include "panels/panel.h"

// Moves the cursor by `delta` entries and scrolls, drawing only what changed. The caller takes the bar
// off before and puts it back after.
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
// Keeps top and cursor inside the list and the page.
void normalisePosition(Panel& panel);
