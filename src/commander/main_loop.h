#pragma once

#include <vector>

#include "commander/command_line.h"
#include "console/key_codes.h"
#include "panels/commands/panel_mouse.h"
#include "panels/model/panel_pair.h"

// How much of the rows below the panels the next round draws anew.
enum class Redraw : int { Nothing = 0, CommandRow = 1, All = 2 };

// What went wrong at the start: a text and what it is about, or "".
struct StartNotice {
  Westring text;
  Westring path;
};

// What outlives one round of the main loop and what commands may change. Application thread.
struct MainLoop {
  CommandLine line;
  Redraw redraw = Redraw::All;
  bool repaintCursor = true;
  Key::Code key;              // the one whose command runs
  Key::Code pendingKey;       // what the next round takes instead of waiting
  MouseMessage pendingMouse;  // what came with a pendingKey of Key::MouseEvent
  int shiftState = 0;         // of the last key, as commands look at it
  int drawnShiftState = -1;   // what the key bar shows
  PanelMouseState mouse;
  bool leaving = false;
  std::vector<StartNotice> notices;  // told when the first screen stands
  Westring prompt;

  void raise(Redraw level) {
    if (static_cast<int>(level) > static_cast<int>(redraw)) redraw = level;
  }
};

// Rounds until the user leaves.
void runMainLoop(MainLoop& loop);

// The prompt of the active panel, shortened, with ">".
Westring commandPrompt();
bool bothPanelsOff();
