// Milliseconds of a full repaint of two panels, of one step of the cursor, or of the next page of
// many names in the colours of many filters, on the display of DISPLAY.
// usage: bench_screen repaint|cursor|colours

#include <cstdio>
#include <string>

#include "bench_support.h"
#include "console/console.h"
#include "console/input.h"
#include "language/association_set.h"
#include "panel_fill.h"
#include "panels/commands/navigation.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_window.h"

namespace {

constexpr int Runs = 200;
constexpr int Entries = 1000, ManyEntries = 100000;
constexpr int Filters = 100;  // none of which matches: each is looked at for each row

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
  event.key = Key::Down;
  console->events().put(event);
  if (getKey() != Key::Down) return;
  Panel& panel = panelPair().active();
  drawCursor(0, CursorBar::Off);
  if (panel.currentIndex() == panel.count() - 1) cursorHome(panel);
  moveCursor(panel, 1);
  drawCursor(0, CursorBar::On);
  console->completePainting();
}

// Three columns of names on a large screen.
void prepareColours() {
  for (int i = 0; i < Filters; ++i) {
    Estring pattern;
    pattern.format(i % 2 == 0 ? "*.kind%d | *.k%d" : "*.text & %%size>%dg & !*.%d", i + 1000, i);
    associationSets().fileColours.addPair(Westring(pattern), L"bright yellow");
  }
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  Panel& panel = panelPair().active();
  panel.style = PanelStyle::Brief;
  updatePageSize(panel);
  fillPanel(panel, ManyEntries);
  closePanelWindow(0);
  openPanelWindow(0);
}

void nextPage() {
  Panel& panel = panelPair().active();
  cursorPageDown(panel);
  console->completePainting();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  if (!openPanels(argc, argv, Entries)) return 1;
  const std::string action = argv[1];
  if (action == "colours") prepareColours();
  const auto act = action == "repaint" ? repaint : action == "colours" ? nextPage : cursorStep;
  printf("%.3f\n", medianMs(Runs, act));
  fflush(stdout);
  _Exit(0);
}
