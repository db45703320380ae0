#pragma once

#include "panels/panel_pair.h"

// Makes the window of a side: layout, frame, title, a postponed read, draw. Marks the panel as
// showing.
void openPanelWindow(int side);
void closePanelWindow(int side);
// false hides the windows of both panels (what lies behind comes back); true shows them again,
// opens those that are to show and have none, and runs what was postponed.
void panelsVisible(bool show);
// The panel's window is there and not hidden.
bool isDrawable(const Panel& panel);
