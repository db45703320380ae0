#include "commander/execute_line.h"

#include "commander/command_seams.h"
#include "commander/go_commands.h"
#include "commander/macro_panels.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/wild_match.h"
#include "history/history_store.h"
#include "language/environment.h"
#include "language/shell_quote.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/picture/panel_draw.h"
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

bool tryPath(Panel& panel, const Westring& path) {
  if (!changeDirectoryExact(panel, path)) return false;
  enterNewPath(panel);
  return true;
}

bool tryTyped(Panel& panel, const Westring& text) {
  Westring path = text;
  return canonicalPath(path, &shownPath(panel)) == 0 && tryPath(panel, path);
}

// A real name that the rules of typed text would change, such as one with a colon.
bool tryName(Panel& panel, const Westring& name) {
  return !name.empty() && tryPath(panel, joinPath(shownPath(panel), name));
}

// The directory that the argument names, in the ways a user may have meant it. Names that were put
// on the line are quoted as for a shell, and a name that is there comes before any variable.
bool goToArgument(Panel& panel, const Westring& argument, const Westring& typed) {
  if (tryTyped(panel, argument)) return true;
  Westring word = unquoteShellWord(typed);
  return tryTyped(panel, word) || tryName(panel, word) ||
         tryTyped(panel, expandPathVariables(word));
}

Westring directoryArgument(const Westring& typed) {
  Westring argument = typed;
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
  Westring typed = ltrim(mid(command, CdLength, 0));
  Westring argument = directoryArgument(typed);
  Westring shown = argument;
  bool valid = canonicalPath(shown, &shownPath(panel)) == 0;
  if (!valid) shown = argument;
  if (goToArgument(panel, argument, typed)) return showGone(panel);
  Westring found;
  if (commandSeams().findInTree && commandSeams().findInTree(panel, argument, found) &&
      goToPath(panel, found)) {
    return showGone(panel);
  }
  alert(valid ? "Invalid directory" : "Invalid path", shown, AlertButtons::Ok, AlertColour::Error);
}

void executeLine(MainLoop& loop, Separate separate) {
  if (loop.line.empty()) return enterCurrent(panelPair().active());
  Westring line = loop.line.text();
  if (separate == Separate::Yes) line = GlobalOptions::Background + L" " + line;
  line = trim(line);
  if (line.empty()) return loop.line.clear();
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
