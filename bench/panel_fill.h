#pragma once

#include "panels/model/panel_pair.h"

// Fills a panel with `count` made-up files below "..", without touching the disk.
void fillPanel(Panel& panel, int count);
// A console with both panels open, each filled with `count` files. False without a display.
bool openPanels(int argc, char** argv, int count);
