#include "commander/command_rooms.h"
#include "commander/exit_program.h"
#include "commander/go_commands.h"
#include "commander/menu_bar.h"
#include "foundation/data_paths.h"
#include "shell/execute_line.h"
#include "shell/internal_programs.h"
#include "tools/command_history_window.h"
#include "tools/user_menu.h"
#include "ui/help_window.h"

namespace {

void showHelp(const Command& command) {
  helpWindow()->show(command.help);
}

// The manual is no program of ours to start.
void showNoManual() {}

Action openingMenu(MenuStart start) {
  return [start](MainLoop& loop) {
    const Key::Code code = pullDownMenu(panelPair().activeSide, start);
    // Its item has the code of a key that counts only while Alt is held.
    loop.pendingKey = code == Key::AltBackslash ? Key::ShiftAltF8 : code;
  };
}

void editUserMenu() {
  internalPrograms()->edit(dataFilePath(DataFile::UserMenu));
}

Action openingUserMenu(UserMenuKind kind) {
  return [kind] { userMenu(panelPair().activeSide, kind); };
}

// Without a line the entry under the cursor is meant.
void runLine(MainLoop& loop, Separate separate) {
  if (loop.line.empty()) return enterCurrent(panelPair().active());
  if (executeLine(loop.line.text(), separate) == LineOutcome::Taken) loop.line.clear();
}

Action executing(Separate separate) {
  return [separate](MainLoop& loop) { runLine(loop, separate); };
}

void openHistory(MainLoop& loop) {
  Westring command;
  const auto help = [] { helpWindow()->show(HelpTopic::CommandHistory); };
  const HistoryOutcome outcome = commandHistoryWindow(command, help);
  if (outcome == HistoryOutcome::PutOnLine) loop.line.setText(command);
  if (outcome == HistoryOutcome::Run) loop.line.clear();
}

std::vector<Command> helpAndMenuRows() {
  return {
      {.name = "Help",
       .codes = {Key::F1},
       .run = showHelp,
       .label = "Help",
       .help = HelpTopic::Panels},
      {.name = "Manual",
       .codes = {Key::ShiftF1},
       .run = showNoManual,
       .menu = {"Manual       Shift-F1", 5},
       .label = "Manual"},
      {.name = "User menu",
       .codes = {Key::F2},
       .run = openingUserMenu(UserMenuKind::OfDirectory),
       .menu = {"User Menu          F2", 0},
       .label = "Menu",
       .help = HelpTopic::UserMenuFile},
      {.name = "Main user menu",
       .codes = {Key::ShiftF2},
       .run = openingUserMenu(UserMenuKind::Main),
       .label = "MnMenu",
       .help = HelpTopic::UserMenuFile},
      {.name = "Edit user menu",
       .codes = {MenuCode::EditUserMenu},
       .run = editUserMenu,
       .menu = {"Edit User Menu", 10},
       .help = HelpTopic::UserMenuFile},
      {.name = "Pull-down menus",
       .codes = {Key::F9, Key::ctrl('n')},
       .run = openingMenu(MenuStart::Fresh),
       .label = "PullDn"},
      {.name = "Pull-down menus again",
       .codes = {Key::ShiftF10},
       .run = openingMenu(MenuStart::Reopen),
       .label = "MenuRe"},
  };
}

std::vector<Command> runRows() {
  return {
      {.name = "Run the line", .codes = {Key::Enter}, .run = executing(Separate::No)},
      {.name = "Run the line beside", .codes = {Key::AltEnter}, .run = executing(Separate::Yes)},
      {.name = "Command history",
       .codes = {Key::AltF8},
       .run = openHistory,
       .menu = {"History              Alt-F8", 0},
       .label = "Histry",
       .help = HelpTopic::CommandHistory},
      {.name = "Quit",
       .codes = {Key::F10},
       .run = [](MainLoop& loop) { loop.leaving = confirmExit(); },
       .menu = {"Quit               F10", 0},
       .label = "Quit"},
  };
}

}  // namespace

std::vector<Command> programCommands() {
  return joined({helpAndMenuRows(), runRows()});
}
