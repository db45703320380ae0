#include "filecommands/delete_command.h"

#include "filecommands/archive_actions.h"
#include "filecommands/confirmations.h"
#include "filecommands/console_ui.h"
#include "filecommands/entry_path.h"
#include "fileops/delete_file.h"
#include "fileops/notices.h"
#include "fileops/remove_directory.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/reader/directory_reader.h"

namespace {

bool isConfirmed(int bit) {
  return (GlobalOptions::Confirmations & bit) != 0;
}

// A link to a directory is a file here: it goes, and what it leads to stays.
bool isRealDirectory(const entry& item) {
  return item.isDirectory() && !item.isLink();
}

class DeleteCommand {
 public:
  explicit DeleteCommand(Panel& panel)
      : panel_(panel), operation_(ui_, GlobalOptions::Confirmations) {}
  void run();

 private:
  bool confirm(const Westring& name) const;
  void deleteTagged();
  void deleteCurrent(const Westring& path);
  Outcome deleteOne(const entry& item, const Westring& path, DeleteMode mode);
  void end();

  Panel& panel_;
  ConsoleUi ui_;
  RunningOperation operation_;
  bool directoryHandled_ = false;
};

bool DeleteCommand::confirm(const Westring& name) const {
  const UndeleteBox box = panel_.archive ? UndeleteBox::Hidden : undeleteBoxFor(panel_.path);
  const bool first = isConfirmed(ConfirmationOff::Delete);
  if (panel_.taggedCount == 0) return first || askDelete(name, box);
  return (first || askDeleteTagged(panel_.taggedCount, box)) &&
         (isConfirmed(ConfirmationOff::DeleteTagged) ||
          askDeleteTaggedAgain(panel_.taggedCount, panel_.path));
}

void DeleteCommand::run() {
  const entry* current = panel_.currentEntry();
  if (panel_.count() == 0 || !current) return;
  const BreakScope armed;
  const Westring name = panel_.isTreeStyle() ? treeDirectory(panel_) : Westring(current->name());
  if (panel_.taggedCount == 0 && (name.empty() || sameName(name, ParentName))) return;
  if (!confirm(name)) return;
  if (panel_.archive) {
    archiveActions()->remove(panel_);
  } else if (panel_.taggedCount > 0) {
    deleteTagged();
  } else {
    deleteCurrent(entryPath(panel_, name.data()));
  }
  end();
}

Outcome DeleteCommand::deleteOne(const entry& item, const Westring& path, DeleteMode mode) {
  if (!isRealDirectory(item)) return deleteFile(operation_, path, mode);
  directoryHandled_ = true;
  return removeDirectory(operation_, path);
}

void DeleteCommand::deleteTagged() {
  for (const entry* item : panel_.entries) {
    if (!item->tagged) continue;
    if (operation_.cancelled()) return;
    const Outcome outcome =
        deleteOne(*item, entryPath(panel_, item->name()), DeleteMode::OneOfMany);
    if (outcome == Outcome::Cancelled) return;
  }
}

void DeleteCommand::deleteCurrent(const Westring& path) {
  static_cast<void>(deleteOne(*panel_.currentEntry(), path, DeleteMode::One));
}

void DeleteCommand::end() {
  operation_.descriptions.flush();
  tellDescriptionLeftovers(operation_);
  ui_.closeWindows();
  if (directoryHandled_) directoryTree()->save();
  panelRefresh();
}

}  // namespace

void deleteCommand(Panel& panel) {
  DeleteCommand(panel).run();
}
