#pragma once

#include "panels/model/panel_pair.h"

// Makes the window of a side and draws the panel in it; only frame and title while a read is
// postponed. Marks the panel as showing.
void openPanelWindow(int side);
void closePanelWindow(int side);
