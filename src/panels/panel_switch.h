#pragma once

#include "panels/panel_pair.h"

void swapPanels();
void panelsOnOff();
void toggleOnePanel(int side);
void toggleInfo(int side);
void setStyle(int side, PanelStyle style);
