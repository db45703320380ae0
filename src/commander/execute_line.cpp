#include "commander/execute_line.h"

#include "commander/command_seams.h"
#include "commander/environment.h"
#include "commander/go_commands.h"
#include "commander/macro_panels.h"
#include "commander/shell_quote.h"
#include "config/options.h"
#include "foundation/path_info.h"
#include "foundation/wild_match.h"
#include "panels/change_directory.h"
#include "panels/panel_draw.h"
#include "tools/history_store.h"
#include "ui/alert.h"

namespace {

constexpr wchar_t ChangeDirectoryPattern[] = L"cd[\\. ]*";
constexpr int CdLength = 2;

// A command works on a list of files: beside an INFO or tree panel, on the other one.
int commandSide() {
  PanelPair& pair = panelPair();
  bool lists = pair.active().isFiles() && !pair.active().isTreeStyle();
  return lists ? pair.activeSide : 1 - pair.activeSide;
}

// The directory that the text names, in the ways a user may have meant it.
bool tryDirectory(Panel& panel, const Westring& text, Westring& path) {
  path = text;
  if (canonicalPath(path, &shownPath(panel)) != 0) return false;
  return goToPath(panel, path);
}

Westring directoryArgument(const Westring& command) {
  Westring argument = ltrim(mid(command, CdLength, 0));
  argument.replaceAll(L"\\", L"/");
  argument.replaceAll(L"\"", L"");
  return argument;
}

void showGone(Panel& panel) {
  panel.type = PanelType::Files;
  drawPanel(panel);
}

}  // namespace

bool isChangeDirectory(const Westring& command) {
  return wildMatch(ChangeDirectoryPattern, command.data());
}

void runChangeDirectory(Panel& panel, const Westring& command) {
  Westring argument = directoryArgument(command);
  // Names that were put on the line are quoted as for a shell.
  Westring shellReading = unquoteShellWord(ltrim(mid(command, CdLength, 0)));
  Westring path = argument;
  bool valid = canonicalPath(path, &shownPath(panel)) == 0;
  Westring shown = valid ? path : argument;
  Westring found;
  if (tryDirectory(panel, argument, path) || tryDirectory(panel, shellReading, path) ||
      tryDirectory(panel, expandPathVariables(shellReading), path)) {
    return showGone(panel);
  }
  if (commandSeams().findInTree && commandSeams().findInTree(panel, argument, found) &&
      goToPath(panel, found)) {
    return showGone(panel);
  }
  alert(valid ? "Invalid directory" : "Invalid path", shown, AlertButtons::Ok, AlertColour::Error);
}

void executeLine(MainLoop& loop, Separate separate) {
  Westring line = trim(loop.line.text());
  if (loop.line.empty()) return enterCurrent(panelPair().active());
  if (line.empty()) return loop.line.clear();
  if (separate == Separate::Yes) line = GlobalOptions::Background + L" " + line;
  int side = commandSide();
  Panel& panel = panelPair().side[side];
  if (!isChangeDirectory(line)) {
    // Without a shell to run it the line stays, so that what was typed isn't lost.
    if (!commandSeams().processCommand) return;
    addCommand(line);
    commandSeams().processCommand(line, Westring(), side);
    return loop.line.clear();
  }
  addCommand(line);
  Westring expanded;
  if (expandPanelCommand(line, side, expanded)) runChangeDirectory(panel, expanded);
  loop.line.clear();
}
