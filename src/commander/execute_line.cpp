#include "commander/execute_line.h"

#include <algorithm>
#include <vector>

#include "commander/command_seams.h"
#include "commander/go_commands.h"
#include "commander/macro_panels.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/wild_match.h"
#include "history/history_store.h"
#include "language/environment.h"
#include "language/shell_quote.h"
#include "language/typed_path.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/directory_tree.h"
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

Westring withoutQuotes(const Westring& typed) {
  Westring argument = typed;
  argument.replaceAll(L"\"", L"");
  return argument;
}

// The directories that the argument may name, in the ways a user may have meant it. Names that were
// put on the line are quoted as for a shell, and a name that is there comes before any variable.
std::vector<Westring> argumentMeanings(const Westring& typed, const Westring& base) {
  const Westring bare = withoutQuotes(typed), word = unquoteShellWord(typed);
  std::vector<Westring> meanings;
  auto add = [&](int (*read)(Westring&, const Westring*), const Westring& text) {
    Westring path = text;
    if (!text.empty() && read(path, &base) == 0) meanings.push_back(path);
  };
  add(writtenPath, typed);
  add(writtenPath, bare);
  add(canonicalPath, bare);
  add(writtenPath, word);
  add(canonicalPath, word);
  for (const Westring& path : pathMeanings(expandPathVariables(word), base))
    meanings.push_back(path);
  return meanings;
}

bool tryPath(Panel& panel, const Westring& path) {
  if (!changeDirectoryExact(panel, path)) return false;
  enterNewPath(panel);
  return true;
}

bool goToArgument(Panel& panel, const Westring& typed) {
  const std::vector<Westring> meanings = argumentMeanings(typed, shownPath(panel));
  return std::any_of(meanings.begin(), meanings.end(),
                     [&panel](const Westring& path) { return tryPath(panel, path); });
}

Westring argumentOf(const Westring& command) {
  return ltrim(mid(command, CdLength, 0));
}

// A panel whose directory is gone goes to the nearest above it.
void tellLostDirectory(Panel& panel, int error) {
  const Westring directory = physicalDirectory(panel);
  alert(errorText(error), directory, AlertButtons::Ok, AlertColour::Error);
  if (isDirectoryPath(directory)) return;
  changeToNearest(panel, directory);
  enterNewPath(panel);
  drawPanel(panel);
}

void showGone(Panel& panel) {
  panel.type = PanelType::Files;
  drawPanel(panel);
}

// The directory of exactly the typed name, before macros and variables are looked at.
bool goAsWritten(Panel& panel, const Westring& command) {
  Westring path = argumentOf(command);
  if (writtenPath(path, &shownPath(panel)) != 0 || !tryPath(panel, path)) return false;
  showGone(panel);
  return true;
}

}  // namespace

bool isChangeDirectory(const Westring& command) {
  return wildMatch(ChangeDirectoryPattern, command.data());
}

void runChangeDirectory(Panel& panel, const Westring& command) {
  const Westring typed = argumentOf(command);
  Westring argument = withoutQuotes(typed);
  argument.replaceAll(L"\\", L"/");
  Westring shown = argument;
  bool valid = canonicalPath(shown, &shownPath(panel)) == 0;
  if (!valid) shown = argument;
  if (goToArgument(panel, typed)) return showGone(panel);
  Westring found = directoryTree()->find(panel, argument);
  if (!found.empty() && goToPath(panel, found)) return showGone(panel);
  alert(valid ? "Invalid directory" : "Invalid path", shown, AlertButtons::Ok, AlertColour::Error);
}

bool runInPanel(const Westring& command, const Westring& file, int side) {
  Panel& panel = panelPair().side[side];
  const int error = setWorkingDirectory(panel);
  if (error != 0) {
    tellLostDirectory(panel, error);
    return false;
  }
  callSeam(commandSeams().processCommand, command, file, side);
  return true;
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
    if (runInPanel(line, Westring(), side)) loop.line.clear();
    return;
  }
  addCommand(line);
  Westring expanded;
  if (!goAsWritten(panel, line) && expandPanelCommand(line, side, expanded)) {
    runChangeDirectory(panel, expanded);
  }
  loop.line.clear();
}
