#pragma once

#include "panels/model/panel_pair.h"

// Opens the window of a side and runs what was postponed. Marks the panel as showing.
void openPanel(int side);
enum class Visible { No, Yes };
// No hides the windows of both panels (what lies behind comes back); Yes shows them again, opens
// those that are to show and have none, and runs what was postponed.
void panelsVisible(Visible visible);
void swapPanels();
void panelsOnOff();
void toggleOnePanel(int side);
void toggleInfo(int side);
void setStyle(int side, PanelStyle style);
