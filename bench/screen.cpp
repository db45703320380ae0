// Milliseconds of a full repaint of two panels, or of one step of the cursor, on the display of
// DISPLAY. usage: bench_screen repaint|cursor

#include <cstdio>
#include <cstring>

#include "bench_support.h"
#include "console/console.h"
#include "console/input.h"
#include "panel_fill.h"
#include "panels/commands/navigation.h"
#include "panels/picture/panel_draw.h"

namespace {

constexpr int Runs = 200;
constexpr int Entries = 1000;

// Every cell is written anew, so that all of them are painted.
void repaint() {
  {
    BatchScope batch;
    console->fillBlank(0, 0, console->columns(), console->rows(), 0);
    for (Panel& panel : panelPair().side) drawPanel(panel);
  }
  console->completePainting();
}

// What the main loop does for a queued Down key, until the picture is complete.
void cursorStep() {
  TEvent event;
  event.code = Key::Down;
  console->events().put(event);
  if (getKey() != Key::Down) return;
  Panel& panel = panelPair().active();
  drawCursor(0, CursorBar::Off);
  if (panel.currentIndex() == panel.count() - 1) cursorHome(panel);
  moveCursor(panel, 1);
  drawCursor(0, CursorBar::On);
  console->completePainting();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  bool whole = strcmp(argv[1], "repaint") == 0;
  if (!openPanels(argc, argv, Entries)) return 1;
  printf("%.3f\n", medianMs(Runs, whole ? repaint : cursorStep));
  fflush(stdout);
  _Exit(0);
}
