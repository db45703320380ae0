#pragma once

#include "panels/panel.h"

// Facts about the other panel's directory and its note file.
void drawInfoPanel(Panel& panel);
