#pragma once

#include "panels/model/panel.h"

// The top border and the title in it, in the colours of an active or an inactive panel.
void drawTitle(Panel& panel);
// Titles of both panels and the window title for the active one.
void markActivePanel();
// Call after the Clock option was switched off: gives its cells back to the border or the screen.
void removeClock();
void setWindowTitle(const Westring* text);  // null: the product's name and version
void showPathInWindowTitle();               // the active panel's path
