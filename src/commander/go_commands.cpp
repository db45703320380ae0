#include "commander/go_commands.h"

#include "commander/command_rooms.h"
#include "filecommands/chosen_items.h"
#include "filecommands/entry_path.h"
#include "filecommands/history_windows.h"
#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "shell/open_file.h"
#include "tools/stored_paths.h"
#include "ui/alert.h"

namespace {

Panel& active() {
  return panelPair().active();
}

void goExactly(Panel& panel, const Westring& path, PanelPosition position) {
  if (path.empty() || !changeDirectoryExact(panel, path)) return;
  panel.depth = -1;
  enterPath(panel, L"", KeepTags::No, position.top, position.cursor);
  drawPanel(panel);
}

void enterName(Panel& panel, const Westring& name) {
  enterPath(panel, name.data());
  drawPanel(panel);
}

// A line of a tree shows its directory in the other panel.
void showBeside(const Panel& tree) {
  goExactly(panelPair().other(tree), treeDirectory(tree), {});
}

// The archive may have changed on the disk; one that is none any more is left for its directory.
void reopenArchive(Panel& panel) {
  const Westring directory = parentOf(panel.archive->path());
  if (!reopenInnermost(panel.archive)) panel.path = directory;
}

}  // namespace

void goToRoot() {
  Panel& panel = active();
  if (panel.archive) {
    Westring archiveFile = panel.archive->path();
    goExactly(panel, parentOf(archiveFile), {});
    selectName(panel, lastComponent(archiveFile).data());
    drawPanel(panel);
    return;
  }
  if (!panel.isRoot()) goExactly(panel, L"/", {});
}

void goToOtherDirectory() {
  goExactly(active(), panelPair().inactive().path, {});
}

void goToPreviousPath() {
  goExactly(active(), active().previousPath, active().previous);
}

void goHome() {
  goExactly(active(), homeDirectory(), {});
}

void goToShortcut(int digit) {
  const Westring& shortcut = GlobalOptions::directoryShortcuts[digit];
  if (shortcut.empty()) return;
  if (goToPath(panelThatGoes(active()), shortcut).isUnexplained()) {
    alert("Invalid Directory", shortcut, AlertButtons::Ok, AlertColour::Error);
  }
}

void storeShortcut(int digit) {
  GlobalOptions::directoryShortcuts[digit] = currentDirectoryOf(active());
}

void enterCurrent(Panel& panel) {
  const entry* item = panel.currentEntry();
  if (!item || !panel.showing || !panel.isFiles()) return;
  if (!item->isDirectory()) return openFile(panel, *item);
  if (panel.isTreeStyle()) return showBeside(panel);
  enterName(panel, item->name());
}

void enterAsDirectory(Panel& panel) {
  const entry* item = panel.currentEntry();
  if (!item || !panel.showing || !panel.isFiles()) return;
  if (item->isDirectory()) return enterCurrent(panel);
  Westring name = item->name();
  const Arrival arrival = attachArchive(panel, name.data());
  if (arrival) return enterName(panel, name);
  if (!arrival.isUnexplained()) return;
  alert("Invalid Directory", itemPath(panel, *item), AlertButtons::Ok, AlertColour::Error);
}

void goUp(Panel& panel) {
  enterName(panel, ParentName);
}

void reRead(Panel& panel, DriveChange driveChange) {
  if (driveChange == DriveChange::Allowed && GlobalOptions::CtrlRDriveChng) return;
  if (panel.archive) reopenArchive(panel);
  if (panel.isTree()) panel.rescanTree = true;
  enterPath(panel, L"", KeepTags::Yes);
  drawPanel(panel);
}

// ---- the rows

namespace {

// The ten digits of the digit row and those of the keypad, with Ctrl or with Ctrl and Shift.
std::vector<Key::Code> digitKeys(Key::Mark modifier) {
  std::vector<Key::Code> keys;
  for (int digit = 0; digit < GlobalOptions::ShortcutCount; ++digit) {
    keys.push_back(Key::ctrlDigit(digit) | modifier);
    keys.push_back(Key::ctrlKeypadDigit(digit) | modifier);
  }
  return keys;
}

// "" chooses nothing. What was remembered may have gone meanwhile.
void goToChosen(const Westring& path) {
  if (path.empty()) return;
  const Arrival arrival = goToPath(active(), path);
  if (arrival) return drawPanel(active());
  if (!arrival.isUnexplained()) return;
  alert("Invalid directory", path, AlertButtons::Ok, AlertColour::Error);
}

void chooseDirectoryOfTree() {
  const Westring chosen = directoryTree()->choose(active(), TreeWindowUse::Command);
  goToChosen(chosen);
  if (active().isTree() && !chosen.empty()) {
    directoryTree()->select(active(), chosen);
  }
}

void chooseDirectoryOfHistory() {
  goToChosen(historyWindows()->chooseDirectory());
}

void chooseStoredPath() {
  if (storedPaths(active())) drawPanel(panelThatGoes(active()));
}

std::vector<Command> choiceRows() {
  using enum When;
  return {
      {.name = "Tree",
       .codes = {Key::AltF10},
       .run = chooseDirectoryOfTree,
       .menu = {"Tree                 Alt-F10", 0},
       .label = "Tree"},
      {.name = "Directory history",
       .codes = {Key::ShiftAltF8},
       .run = chooseDirectoryOfHistory,
       .label = "DirHst",
       .help = HelpTopic::CommandHistory},
      {.name = "Directory history by Alt-\\",
       .codes = {Key::AltBackslash},
       .when = AltHeld,
       .run = chooseDirectoryOfHistory,
       .menu = {"Directory History    Alt-\\", 1},
       .help = HelpTopic::CommandHistory},
      {.name = "Stored paths",
       .codes = {Key::AltF5},
       .run = chooseStoredPath,
       .menu = {"Stored Paths         Alt-F5", 7},
       .label = "DStore",
       .help = HelpTopic::CommandHistory},
      {.name = "Go to shortcut",
       .codes = digitKeys(Key::NoMark),
       .run = [](MainLoop& loop) { goToShortcut(Key::digitOf(loop.key)); }},
      {.name = "Store shortcut",
       .codes = digitKeys(Key::ShiftedKey),
       .run = [](MainLoop& loop) { storeShortcut(Key::digitOf(loop.key)); }},
  };
}

std::vector<Command> directRows() {
  using enum When;
  return {
      {.name = "Other panel's directory",
       .codes = {Key::CtrlBackslash},
       .when = ShiftHeld,
       .run = goToOtherDirectory},
      {.name = "Other panel's directory by its own code",
       .codes = {Key::CtrlShiftBackslash, Key::AltBackslash},
       .run = goToOtherDirectory},
      {.name = "Root", .codes = {Key::CtrlBackslash}, .run = goToRoot},
      {.name = "Previous path", .codes = {Key::CtrlUnderscore}, .run = goToPreviousPath},
      {.name = "Home", .codes = {Key::AltHome}, .run = goHome},
      {.name = "One level up", .codes = {Key::CtrlPageUp}, .run = [] { goUp(active()); }},
      {.name = "Enter as a directory",
       .codes = {Key::CtrlPageDown},
       .when = PanelsOn,
       .run = [] { enterAsDirectory(active()); }},
  };
}

}  // namespace

std::vector<Command> goCommands() {
  return joined({choiceRows(), directRows()});
}
