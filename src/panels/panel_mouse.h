#pragma once

#include "console/events.h"
#include "panels/panel_pair.h"

// What a mouse event over the panels means for the main loop.
enum class MouseOutcome { Nothing, Handled, EnterCommand, OpenMenu, RunKey, EditDirectoryInfo };

// Tag-dragging and the key bar's press live from one event to the next.
struct PanelMouseState {
  int lastTagged = -1;
  int tagDirection = 1;
  int pressedKey = 0;   // function key under the press on the key bar
  int dragSide = -1;    // the panel where the press began
};

// Handles one event; for RunKey `key` receives the key code.
MouseOutcome handlePanelMouse(const MouseMessage& event, PanelMouseState& state, int& key);
// The entry under a screen cell of a side, or -1.
int entryAt(int side, int x, int y);
// The function key code under column x of the key bar.
int keyBarKeyAt(int x, int shiftState, bool rightButton);
