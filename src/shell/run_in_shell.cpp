#include "shell/run_in_shell.h"

#include <cerrno>
#include <cwchar>
#include <cwctype>

#include "console/console.h"
#include "console/text_state.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "language/shell_quote.h"
#include "options/colours.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/panel_switch.h"
#include "panels/model/directory_tree.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "shell/internal_programs.h"
#include "terminal/run_command.h"
#include "ui/alert.h"

namespace {

constexpr int ShellCursor = 15;  // percent of a cell
constexpr wchar_t ViewName[] = L"$view";
constexpr wchar_t EditName[] = L"$edit";

// The rows of prompt and key bar are the command's too.
void clearLowestRows(const Westring& echo) {
  const int promptRow = panelPair().screenLines - 2;
  BatchScope batch;
  setTextAttr(colourOf(Colour::CommandLine));
  writeWideAt(0, promptRow, left(echo, panelPair().screenColumns).data());
  clearToEndOfLine();
  setTextPos(0, promptRow + 1);
  clearToEndOfLine();
  setTextPos(0, echo.empty() ? promptRow : promptRow + 1);
}

// "" when the command is none of the program's own; else its argument as a path.
Westring argumentOf(const Westring& command, const wchar_t* name, const Panel& panel) {
  const auto length = static_cast<int>(wcslen(name));
  if (wcscasecmp(left(command, length).data(), name) != 0) return Westring();
  const Westring rest = mid(command, length, 0);
  if (rest.empty() || iswspace(static_cast<wint_t>(rest[0])) == 0) return Westring();
  const Westring file = unquoteShellWord(trim(rest));
  return file.empty() || file[0] == L'/' ? file : joinPath(physicalDirectory(panel), file);
}

int run(const Westring& command, const Panel& panel, unsigned flags, int* status) {
  const Westring viewed = argumentOf(command, ViewName, panel);
  const Westring edited = argumentOf(command, EditName, panel);
  if (!viewed.empty()) internalPrograms()->view(viewed);
  if (!edited.empty()) internalPrograms()->edit(edited);
  if (!viewed.empty() || !edited.empty()) return 0;
  return runCommand(command, physicalDirectory(panel), flags, status);
}

int runOnScreen(const Westring& command, const Panel& panel, const Westring& echo, unsigned flags,
                int* status) {
  const OutputScreen screen(echo);
  setWindowTitle(&command);
  const int result = run(command, panel, flags, status);
  setWindowTitle(nullptr);
  return result;
}

}  // namespace

OutputScreen::OutputScreen(const Westring& echo) {
  panelsVisible(Visible::No);
  clearLowestRows(echo);
  setCursorShape(ShellCursor);
  syncCursor();
}

OutputScreen::~OutputScreen() {
  if (console->getCursorPos().x > 0) console->writeTty("\n");
  console->writeTty("\n");
  setCursorShape(0);
  fetchScreenSize();
}

bool enterPanelDirectory(Panel& panel) {
  const int error = setWorkingDirectory(panel);
  if (error == 0) return true;
  const Westring directory = physicalDirectory(panel);
  alert(errorText(error), directory, AlertButtons::Ok, AlertColour::Error);
  if (isDirectoryPath(directory)) return false;
  changeToNearest(panel, directory);
  enterNewPath(panel);
  drawPanel(panel);
  return false;
}

int runInShell(const Westring& command, Panel& panel, const Westring& echo, unsigned flags,
               int* status) {
  if ((flags & RunFlag::StayInDirectory) == 0 && !enterPanelDirectory(panel)) return -ENOENT;
  // The command may want to see it, or end the program.
  directoryTree()->save();
  const bool hidden = (flags & RunFlag::Hidden) != 0;
  const int result = hidden ? run(command, panel, flags, status)
                            : runOnScreen(command, panel, echo, flags, status);
  for (Panel& side : panelPair().side) side.needsRead = true;
  return result;
}
