#include "commander/macro_panels.h"

#include "commander/ask_text.h"
#include "filecommands/archive_actions.h"
#include "language/temporary_names.h"
#include "panels/model/panel_pair.h"

namespace {

// What macros see of the two panels, from the side of the one they work for.
class PanelMacros : public MacroContext {
 public:
  explicit PanelMacros(int side) : side_(side) {}

  Westring path(MacroPanel which) override { return shownPath(panel(which)); }

  Westring currentName(MacroPanel which) override {
    const entry* item = panel(which).currentEntry();
    return item ? Westring(item->name()) : Westring();
  }

  int entryCount(MacroPanel which) override { return panel(which).count(); }
  entry* entryAt(MacroPanel which, int index) override { return panel(which).entries[index]; }
  bool inArchive(MacroPanel which) override { return panel(which).archive != nullptr; }

  std::optional<Westring> extract(MacroPanel which, const Westring& name) override {
    Westring path = archiveActions()->extract(panel(which), name);
    return path.empty() ? std::nullopt : std::optional<Westring>(path);
  }

  std::optional<Westring> ask(const Westring& title) override { return askText(title); }

  std::optional<Westring> writeList(const std::vector<Westring>& lines) override {
    return writeListFile(lines);
  }

 private:
  Panel& panel(MacroPanel which) {
    return panelPair().side[which == MacroPanel::This ? side_ : 1 - side_];
  }

  int side_;
};

}  // namespace

bool expandPanelCommand(const Westring& command, int side, Westring& expanded) {
  PanelMacros macros(side);
  expanded = command;
  return expandCommand(expanded, Westring(), macros, MacroMode::Command) != MacroResult::Failed;
}
