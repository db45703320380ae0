// How many times longer an action takes in a panel of 100,000 entries than in one of 100.
// usage: bench_navigation cursor|page|tag|search

#include <cstdio>
#include <cstring>
#include <string>

#include "bench_support.h"
#include "console/console.h"
#include "console/key_codes.h"
#include "options/options.h"
#include "panel_fill.h"
#include "panels/commands/navigation.h"
#include "panels/commands/quick_search.h"
#include "panels/commands/selection.h"

namespace {

constexpr int Few = 100, Many = 100000, Runs = 301;

double measure(int entries, const std::string& action) {
  Panel& panel = panelPair().active();
  fillPanel(panel, entries);
  panel.top = entries / 2;
  bool forward = false;
  return medianMs(Runs, [&] {
    forward = !forward;
    if (action == "cursor") moveCursor(panel, forward ? 1 : -1);
    if (action == "page") forward ? cursorPageDown(panel) : cursorPageUp(panel);
    if (action == "tag") toggleTag(panel, panel.currentIndex(), TagMode::Flip);
    if (action == "search") {
      panel.quickSearch = L"file-";
      quickSearchStep(panel, Key::AltDown, 1);
    }
    console->completePainting();
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  if (!openPanels(argc, argv, Few)) return 1;
  GlobalOptions::StickyAlt = false;
  std::string action = argv[1];
  measure(Few, action);
  double few = measure(Few, action);
  double many = measure(Many, action);
  printf("%.2f\n", many / few);
  fflush(stdout);
  _Exit(0);
}
