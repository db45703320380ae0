#include "commander/command_rooms.h"
#include "panels/commands/navigation.h"
#include "panels/commands/quick_search.h"
#include "panels/commands/selection.h"

namespace {

Panel& active() {
  return panelPair().active();
}

Action choosingGroup(TagMode mode) {
  return [mode](MainLoop& loop) { groupSelectDialog(active(), mode, loop.shiftState); };
}

Action choosingEvery(TagMode mode) {
  return [mode](MainLoop& loop) { selectAll(active(), mode, loop.shiftState); };
}

Action searching(int direction) {
  return [direction](MainLoop& loop) {
    drawCursor(panelPair().activeSide, CursorBar::Off);
    loop.pendingKey = quickSearchStep(active(), loop.key, direction, loop.pendingMouse);
  };
}

Action goingToTagged(int direction) {
  return [direction] {
    drawCursor(panelPair().activeSide, CursorBar::Off);
    cursorToTagged(active(), direction);
  };
}

std::vector<Command> tagRows() {
  using enum When;
  return {
      {.name = "Select group",
       .codes = {Key::GrayPlus, MenuCode::SelectGroup, Key::ctrl('t')},
       .when = PanelsOn | Files,
       .run = choosingGroup(TagMode::Tag),
       .menu = {"Select Group       Grey +", 7}},
      {.name = "Unselect group",
       .codes = {Key::GrayMinus, MenuCode::UnselectGroup, Key::ctrl('y')},
       .when = PanelsOn | Files,
       .run = choosingGroup(TagMode::Untag),
       .menu = {"Unselect Group     Grey -", 1}},
      {.name = "Invert selection",
       .codes = {Key::GrayStar, MenuCode::InvertSelection},
       .when = PanelsOn | Files,
       .run = choosingEvery(TagMode::Flip),
       .menu = {"Invert Sel'n       Grey *", 0}},
      {.name = "Select all",
       .codes = {Key::CtrlGrayPlus, Key::CtrlShiftGrayPlus},
       .when = PanelsOn | Files,
       .run = choosingEvery(TagMode::Tag)},
      {.name = "Unselect all",
       .codes = {Key::CtrlGrayMinus, Key::CtrlShiftGrayMinus},
       .when = PanelsOn | Files,
       .run = choosingEvery(TagMode::Untag)},
      {.name = "Restore selection",
       .codes = {Key::AltGrayPlus, MenuCode::RestoreSelection},
       .run = [] { restoreSelection(active()); },
       .menu = {"Restore Sel'n  Alt-Grey +", 2}},
  };
}

// Those that move the cursor take the bar off by themselves.
std::vector<Command> searchRows() {
  using enum When;
  return {
      {.name = "Search upwards",
       .codes = {Key::AltUp},
       .when = Searching,
       .run = searching(-1),
       .bar = CursorBar::On},
      {.name = "Previous tagged",
       .codes = {Key::AltUp},
       .run = goingToTagged(-1),
       .bar = CursorBar::On},
      {.name = "Search downwards",
       .codes = {Key::AltDown},
       .when = Searching,
       .run = searching(1),
       .bar = CursorBar::On},
      {.name = "Next tagged",
       .codes = {Key::AltDown},
       .run = goingToTagged(1),
       .bar = CursorBar::On},
      {.name = "Shorten the search",
       .codes = {Key::AltBackspace},
       .run = [] { removeLastSearchCharacter(active()); }},
  };
}

}  // namespace

std::vector<Command> selectionCommands() {
  return joined({tagRows(), searchRows()});
}
