#include "shell/execute_line.h"

#include "history/history_store.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "shell/built_ins.h"
#include "shell/process_command.h"
#include "shell/prompt.h"
#include "shell/run_in_shell.h"

LineOutcome executeLine(const Westring& line, Separate separate) {
  const Westring command =
      trim(separate == Separate::Yes ? GlobalOptions::Background + L" " + line : line);
  if (command.empty()) return LineOutcome::Taken;
  const int side = panelPair().commandSide();
  Panel& panel = panelPair().side[side];
  addCommand(command);
  if (isChangeDirectory(command)) {
    if (changeDirectoryAsWritten(panel, command)) return LineOutcome::Taken;
  } else if (!enterPanelDirectory(panel)) {
    return LineOutcome::Kept;
  }
  processCommand(command, side, promptOf(panel) + command);
  return LineOutcome::Taken;
}
