#pragma once

#include <chrono>

#include "console/events.h"
#include "panels/model/panel_pair.h"

// What a mouse event over the panels means for the main loop. After Handled the active side may be
// another one.
enum class MouseOutcome { Nothing, Handled, EnterCommand, OpenMenu, RunKey, EditDirectoryInfo };

enum class MouseButton { Left, Right };

// Tag-dragging and the key bar's press live from one event to the next.
struct PanelMouseState {
  int lastTagged = -1;   // index of the entry where tag-dragging stands, -1 before it reached one
  int tagDirection = 1;  // 1 tags, -1 untags
  Key::Code pressedKey;  // function key under the press on the key bar
  int dragSide = -1;     // the panel where the press began, -1 while no button is down
  MouseButton dragButton = MouseButton::Left;
  MouseKind scrollKind = MouseKind::LeftPress;     // what began the scrolling under way
  std::chrono::steady_clock::time_point nextPass;  // when it may take its next step
};

// Handles one event; for RunKey `key` receives the key code. Scrolling beyond the page goes on
// until another event stands in the queue, which then tells how it goes on.
MouseOutcome handlePanelMouse(const MouseMessage& event, PanelMouseState& state, Key::Code& key);
// The entry under a screen cell of a side, or -1.
int entryAt(int side, int x, int y);
// The function key code under column x of the key bar; NoKey where the layer has no keys.
Key::Code keyBarKeyAt(int x, int shiftState, MouseButton button);
