#include "filecommands/case_command.h"

#include "filecommands/case_dialog.h"
#include "filecommands/case_window.h"
#include "filecommands/chosen_items.h"
#include "filecommands/console_ui.h"
#include "fileops/change_case.h"
#include "fileops/notices.h"
#include "foundation/break_state.h"
#include "foundation/utf8.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/reader/directory_reader.h"

namespace {

// The questions, over windows that are complete by then.
class CaseUi : public ConsoleUi {
 public:
  explicit CaseUi(CaseWindow& window) : window_(window) {}
  int ask(const Westring& text, const Westring& caption, AlertButtons buttons,
          AlertColour colour) override {
    window_.complete();
    return ConsoleUi::ask(text, caption, buttons, colour);
  }

 private:
  CaseWindow& window_;
};

class CaseCommand : private CaseChangeWatcher {
 public:
  CaseCommand(const Panel& panel, const ChosenItems& items) : panel_(panel), items_(items) {}

  void run();

 private:
  void walk();
  void end();
  void working(const char* directory, int64_t count) override {
    window_.showMembers(directory, count);
  }
  void directoryRenamed(const char* from, const char* to) override;

  const Panel& panel_;
  const ChosenItems& items_;
  CaseWindow window_;
  CaseUi ui_{window_};
  RunningOperation operation_{ui_};
  bool treeChanged_ = false;
};

CaseChange wantedChange() {
  return {.rules = nameCaseOf(GlobalOptions::CaseMod),
          .directories = GlobalOptions::CaseModDirs,
          .files = GlobalOptions::CaseModFiles,
          .recurse = GlobalOptions::CaseModRecurse};
}

void CaseCommand::directoryRenamed(const char* from, const char* to) {
  directoryTree()->renamed(panel_, decodeFileName(from), decodeFileName(to));
  treeChanged_ = true;
}

void CaseCommand::run() {
  const BreakScope armed;
  if (items_.tagged) window_.open(panel_.path, static_cast<int>(items_.entries.size()));
  walk();
  end();
}

void CaseCommand::walk() {
  const CaseChange change = wantedChange();
  int done = 0;
  for (const entry* item : items_.entries) {
    const std::string path = bytePath(itemPath(panel_, *item));
    const Outcome outcome = changeCase(operation_, placeOf(path.c_str()), change, *this);
    window_.closeMembers();
    if (outcome == Outcome::Cancelled || operation_.cancelled()) return;
    if (items_.tagged) window_.showDone(++done);
  }
}

void CaseCommand::end() {
  operation_.descriptions.flush();
  tellDescriptionLeftovers(operation_);
  window_.close();
  if (treeChanged_) directoryTree()->save();
  panelRefresh();
}

}  // namespace

void caseCommand(Panel& panel) {
  const ChosenItems items = chosenItems(panel, ParentEntry::PassedOver);
  if (items.empty()) return;
  const int count = static_cast<int>(items.entries.size());
  if (askCase(items.tagged ? countedFiles(count) : items.name)) CaseCommand(panel, items).run();
}
