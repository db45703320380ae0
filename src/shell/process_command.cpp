#include "shell/process_command.h"

#include <vector>

#include "language/temporary_names.h"
#include "panels/model/panel_pair.h"
#include "shell/built_ins.h"
#include "shell/macro_panels.h"

namespace {

constexpr int Cancelled = -1;

std::vector<Westring> taggedNames(const Panel& panel) {
  std::vector<Westring> names;
  for (const entry* item : panel.entries) {
    if (item->tagged) names.push_back(item->name());
  }
  return names;
}

class PanelCommand {
 public:
  // Changes of the directory are run, or put into `postponed` if that is given.
  PanelCommand(int side, Westring echo, std::vector<Westring>* postponed = nullptr)
      : side_(side), echo_(std::move(echo)), macros_(side), postponed_(postponed) {}

  int run(const Westring& command, const Westring& file, MacroMode mode) {
    Westring expanded = command;
    if (expandCommand(expanded, file, macros_, mode) == MacroResult::Failed) return Cancelled;
    expanded = trim(expanded);
    if (expanded.empty()) return 0;
    if (postponed_ && isChangeDirectoryAlone(expanded)) {
      postponed_->push_back(expanded);
      return 0;
    }
    const int result = runBuiltinOrShell(expanded, side_, echo_);
    echo_ = Westring();
    return result;
  }

  // What the user was asked for is part of the command then, and not asked again.
  int runTyped(const Westring& text, const Westring& file) {
    Westring command = text;
    const MacroResult wants = expandCommand(command, file, macros_, MacroMode::DryRun);
    if (wants == MacroResult::Failed) return Cancelled;
    // Names, since a run may read the panel anew.
    const std::vector<Westring> names = taggedNames(panelPair().side[side_]);
    if (wants != MacroResult::OncePerTagged || names.empty())
      return run(command, file, MacroMode::Command);
    for (const Westring& name : names) {
      if (const int result = run(command, name, MacroMode::Command); result < 0) return result;
    }
    return 0;
  }

 private:
  int side_;
  Westring echo_;
  PanelMacros macros_;
  std::vector<Westring>* postponed_;
};

}  // namespace

int processCommand(const Westring& text, int side, const Westring& echo, MacroMode mode,
                   const Westring& file) {
  if (file.empty()) removeTemporaries();
  PanelCommand command(side, echo);
  return mode == MacroMode::Command ? command.runTyped(text, file) : command.run(text, file, mode);
}

int processSeries(const FnStringStore& commands, int side) {
  removeTemporaries();
  std::vector<Westring> changes;
  PanelCommand series(side, Westring(), &changes);
  for (int i = 0; i < commands.count(); ++i) {
    if (const int result = series.runTyped(*commands.peek(i), Westring()); result < 0) {
      return result;
    }
  }
  for (const Westring& change : changes) {
    if (const int result = runBuiltinOrShell(change, side, Westring()); result < 0) return result;
  }
  return 0;
}
