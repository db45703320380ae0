#include "commander/command_rooms.h"
#include "commander/file_dialogs.h"
#include "commander/go_commands.h"
#include "commander/screen_size.h"
#include "panels/commands/panel_switch.h"
#include "panels/picture/panel_title.h"

namespace {

void toggleInactive() {
  toggleOnePanel(1 - panelPair().activeSide);
}

void toggleInfoBeside() {
  PanelPair& pair = panelPair();
  toggleInfo(pair.active().isFiles() ? 1 - pair.activeSide : pair.activeSide);
}

void activateOther() {
  PanelPair& pair = panelPair();
  if (!pair.inactive().showing) return;
  drawCursor(pair.activeSide, CursorBar::Off);
  setActiveSide(1 - pair.activeSide);
  markActivePanel();
}

// Drives don't exist here and no other window can be opened, but keys, items and labels are there.
void doNothing() {}

std::vector<Command> switchRows() {
  return {
      {.name = "Left panel on or off",
       .codes = {Key::CtrlF1},
       .run = [] { toggleOnePanel(0); },
       .menu = {"On/Off      Ctrl-F1", 0},
       .label = "Left"},
      {.name = "Right panel on or off",
       .codes = {Key::CtrlF2},
       .run = [] { toggleOnePanel(1); },
       .menu = {"On/Off      Ctrl-F2", 0},
       .label = "Right"},
      {.name = "Inactive panel on or off", .codes = {Key::ctrl('p')}, .run = toggleInactive},
      {.name = "Panels on or off",
       .codes = {Key::ctrl('o')},
       .run = panelsOnOff,
       .menu = {"Panels On/Off        Ctrl-O", 2}},
      {.name = "Swap panels",
       .codes = {Key::ctrl('u')},
       .run = swapPanels,
       .menu = {"Swap Panels          Ctrl-U", 0}},
      {.name = "Other panel",
       .codes = {Key::Tab, Key::ShiftTab},
       .run = activateOther,
       .bar = CursorBar::On},
      {.name = "Info", .codes = {Key::ctrl('l')}, .run = toggleInfoBeside},
      {.name = "Info on the left",
       .codes = {MenuCode::LeftInfo},
       .run = [] { toggleInfo(0); },
       .menu = {"Info        Ctrl-L", 0},
       .mark = [] { return !panelPair().side[0].isFiles(); }},
      {.name = "Info on the right",
       .codes = {MenuCode::RightInfo},
       .run = [] { toggleInfo(1); },
       .menu = {"Info        Ctrl-L", 0},
       .mark = [] { return !panelPair().side[1].isFiles(); }},
  };
}

std::vector<Command> readRows() {
  using enum When;
  return {
      {.name = "Re-read",
       .codes = {Key::ctrl('r')},
       .when = PanelsOn,
       .run = [] { reRead(panelPair().active(), DriveChange::Allowed); }},
      {.name = "Re-read the left panel",
       .codes = {MenuCode::LeftReRead},
       .run = [] { reRead(panelPair().side[0], DriveChange::Never); },
       .menu = {"Re-Read     Ctrl-R", 0}},
      {.name = "Re-read the right panel",
       .codes = {MenuCode::RightReRead},
       .run = [] { reRead(panelPair().side[1], DriveChange::Never); },
       .menu = {"Re-Read     Ctrl-R", 0}},
      {.name = "Filter of the left panel",
       .codes = {MenuCode::LeftFilter},
       .run = [] { setFilterDialog(0); },
       .menu = {"Filter", 2}},
      {.name = "Filter of the right panel",
       .codes = {MenuCode::RightFilter},
       .run = [] { setFilterDialog(1); },
       .menu = {"Filter", 2}},
      {.name = "Drive of the left panel",
       .codes = {Key::AltF1},
       .run = doNothing,
       .menu = {"Drive       Alt-F1", 0},
       .label = "Left"},
      {.name = "Drive of the right panel",
       .codes = {Key::AltF2},
       .run = doNothing,
       .menu = {"Drive       Alt-F2", 0},
       .label = "Right"},
  };
}

std::vector<Command> screenRows() {
  return {
      {.name = "Lines",
       .codes = {Key::AltF9},
       .run = changeLines,
       .menu = {"EGA Lines            Alt-F9", 0},
       .label = "EGA Ln"},
      {.name = "Columns", .codes = {Key::ShiftAltF9}, .run = changeColumns, .label = "ColChg"},
      {.name = "Explorer window",
       .codes = {Key::ctrl('w')},
       .run = doNothing,
       .menu = {"Open Explorer Window Ctrl-W", 0}},
  };
}

}  // namespace

std::vector<Command> panelCommands() {
  return joined({switchRows(), readRows(), screenRows()});
}
