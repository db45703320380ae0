#include "commander/command_rooms.h"
#include "panels/commands/navigation.h"
#include "panels/commands/selection.h"

namespace {

// Moves the cursor; a quick search ends with it.
Action moving(void (*move)(Panel&)) {
  return [move] {
    Panel& panel = panelPair().active();
    move(panel);
    panel.quickSearch = L"";
  };
}

void up(Panel& panel) {
  moveCursor(panel, -1);
}
void down(Panel& panel) {
  moveCursor(panel, 1);
}

void tagAndStep() {
  Panel& panel = panelPair().active();
  toggleTag(panel, panel.currentIndex(), TagMode::Flip);
  moveCursor(panel, 1);
}

}  // namespace

std::vector<Command> listCommands() {
  using enum When;
  return {
      {.name = "Up", .codes = {Key::Up}, .when = PanelsOn, .run = moving(up)},
      {.name = "Down", .codes = {Key::Down}, .when = PanelsOn, .run = moving(down)},
      {.name = "First", .codes = {Key::Home}, .when = PanelsOn, .run = moving(cursorHome)},
      {.name = "Last", .codes = {Key::End}, .when = PanelsOn, .run = moving(cursorEnd)},
      {.name = "Page up", .codes = {Key::PageUp}, .when = PanelsOn, .run = moving(cursorPageUp)},
      {.name = "Page down",
       .codes = {Key::PageDown},
       .when = PanelsOn,
       .run = moving(cursorPageDown)},
      {.name = "Column left",
       .codes = {Key::Left},
       .when = PanelsOn | Files | Columns,
       .run = moving(cursorColumnLeft)},
      {.name = "Column right",
       .codes = {Key::Right},
       .when = PanelsOn | Files | Columns,
       .run = moving(cursorColumnRight)},
      {.name = "Tag and step", .codes = {Key::Insert}, .when = PanelsOn | Entry, .run = tagAndStep},
  };
}
