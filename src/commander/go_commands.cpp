#include "commander/go_commands.h"

#include "commander/command_seams.h"
#include "commander/environment.h"
#include "config/options.h"
#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "panels/change_directory.h"
#include "panels/directory_reader.h"
#include "panels/panel_draw.h"
#include "ui/alert.h"

namespace {

Panel& active() {
  return panelPair().active();
}

void goExactly(Panel& panel, const Westring& path, PanelPosition position) {
  Westring target = path;
  if (target.empty() || !changeDirectoryExact(panel, target)) return;
  panel.depth = -1;
  enterPath(panel, L"", KeepTags::No, position.top, position.cursor);
  drawPanel(panel);
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
  Panel& panel = active().isFiles() && active().isTreeStyle() ? panelPair().inactive() : active();
  if (!goToPath(panel, expandPathVariables(shortcut))) {
    alert("Invalid Directory", shortcut, AlertButtons::Ok, AlertColour::Error);
  }
}

void storeShortcut(int digit) {
  GlobalOptions::directoryShortcuts[digit] = active().path;
}

void enterCurrent(Panel& panel) {
  const entry* item = panel.currentEntry();
  if (!item || !panel.showing || !panel.isFiles()) return;
  if (!item->isDirectory()) return callSeam(commandSeams().openFile, panel);
  Westring name = item->name();
  enterPath(panel, name.data());
  drawPanel(panel);
}

void goToChoice(const std::function<Westring()>& window) {
  if (!window) return;
  Westring chosen = window();
  if (!chosen.empty()) goExactly(active(), chosen, {});
}

void reRead(Panel& panel, DriveChange driveChange) {
  if (driveChange == DriveChange::Allowed && GlobalOptions::CtrlRDriveChng) return;
  if (panel.isFiles() && panel.isTreeStyle()) panel.rescanTree = true;
  enterPath(panel, L"", KeepTags::Yes);
  drawPanel(panel);
}
