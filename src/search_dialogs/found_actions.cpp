#include "search_dialogs/found_actions.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "console/key_codes.h"
#include "filecommands/confirmations.h"
#include "filecommands/console_ui.h"
#include "filecommands/copy_command.h"
#include "fileops/delete_file.h"
#include "fileops/notices.h"
#include "fileops/remove_directory.h"
#include "foundation/break_state.h"
#include "foundation/path_info.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {

constexpr int UpperQuarter = -4;
constexpr int Columns = 36, Rows = 6;
constexpr int ButtonRow = 3;

using Paths = std::unordered_set<std::wstring>;

bool isOff(int confirmation) {
  return (GlobalOptions::Confirmations & confirmation) != 0;
}

std::vector<FoundRow> allRows() {
  std::vector<FoundRow> rows;
  for (int i = 0;; ++i) {
    FoundRow row = foundEntries().row(i);
    if (!row.valid()) return rows;
    rows.push_back(std::move(row));
  }
}

// Whether a directory above the path is one of them.
bool liesBelow(std::wstring path, const Paths& directories) {
  if (directories.empty()) return false;
  for (size_t slash = path.rfind(L'/'); slash != std::wstring::npos && slash > 0;
       slash = path.rfind(L'/')) {
    path.resize(slash);
    if (directories.contains(path)) return true;
  }
  return false;
}

void takeOff(const Paths& paths, const Paths& directories) {
  foundEntries().removeIf([&](const entry* item) {
    return paths.contains(item->name()) || liesBelow(item->name(), directories);
  });
}

enum class Found { Same, Gone, Another };

Found lookAt(const FoundRow& row, struct stat& info) {
  const Westring path = row.path();
  const bool there =
      (row.item->isLink() && statPath(path, info) == 0) || lstatPath(path, info) == 0;
  if (!there) return Found::Gone;
  return idOf(info) == row.id ? Found::Same : Found::Another;
}

Found lookAt(const FoundRow& row) {
  struct stat info;
  return lookAt(row, info);
}

void tellChangedFile(const Westring& path) {
  alert("File has changed", path, AlertButtons::Ok, AlertColour::Error);
}

// Deletes with the questions of one command.
class Deletion {
 public:
  ~Deletion() {
    operation_.descriptions.flush();
    tellDescriptionLeftovers(operation_);
    ui_.closeWindows();
    if (!directories_.empty()) directoryTree()->save();
    takeOff(gone_, directories_);
  }

  // False when the user ended it.
  bool remove(const FoundRow& row, DeleteMode mode) {
    const Westring path = row.path();
    if (liesBelow(path.data(), directories_)) return true;
    switch (lookAt(row)) {
      case Found::Gone:
        gone_.insert(path.data());
        return true;
      case Found::Another:
        tellChangedFile(path);
        return true;
      case Found::Same:
        break;
    }
    const bool directory = row.isRealDirectory();
    const Outcome outcome =
        directory ? removeDirectory(operation_, path) : deleteFile(operation_, path, mode);
    if (outcome == Outcome::Done) {
      gone_.insert(path.data());
      if (directory) directories_.insert(path.data());
    }
    return outcome != Outcome::Cancelled && !operation_.cancelled();
  }

 private:
  const BreakScope armed_;
  ConsoleUi ui_;
  RunningOperation operation_{ui_, GlobalOptions::Confirmations};
  Paths gone_;
  Paths directories_;  // of those that are gone
};

bool askDeleteAll(int count) {
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.putCentred(0, L"Are you sure you wish to delete");
  dialog.putCentred(1, (std::to_wstring(count) + L" files?").c_str());
  dialog.addOkCancel(-1, ButtonRow, Group::New);
  return dialog.run() == Key::Enter;
}

// A panel that nobody sees, with everything tagged that is still what was found. What goes with its
// directory isn't named again.
Panel panelOf(const Panel& panel, const std::vector<FoundRow>& rows) {
  Panel result;
  result.path = physicalDirectory(panel);
  Paths directories;
  for (const FoundRow& row : rows) {
    if (row.isRealDirectory()) directories.insert(row.path().data());
  }
  for (const FoundRow& row : rows) {
    if (liesBelow(row.path().data(), directories)) continue;
    const Found state = lookAt(row);
    if (state == Found::Another) tellChangedFile(row.path());
    if (state != Found::Same) continue;
    EntryPtr item(copyEntry(row.item.get()));
    item->total = -1;
    item->tagged = 1;
    result.addTagged(item->size);
    ++result.taggedCount;
    result.entries.add(std::move(item));
  }
  return result;
}

}  // namespace

void transferFound(const Panel& panel, TransferKind kind) {
  const std::vector<FoundRow> rows = allRows();
  Panel source = panelOf(panel, rows);
  if (source.count() == 0) return;
  copyCommand(source, kind == TransferKind::Move ? CopyFlag::Move : 0);
  if (kind == TransferKind::Copy) return;
  Paths gone;
  for (size_t i = 0; i < rows.size(); ++i) {
    const Westring path = rows[i].path();
    struct stat info;
    switch (lookAt(rows[i], info)) {
      case Found::Same:
        foundEntries().update(static_cast<int>(i), path, info);
        break;
      case Found::Gone:
        gone.insert(path.data());
        break;
      case Found::Another:
        break;
    }
  }
  takeOff(gone, {});
}

void deleteFound(int index) {
  const FoundRow row = foundEntries().row(index);
  if (!row.valid() || !isStillFound(row, index)) return;
  if (!isOff(ConfirmationOff::Delete) && !askDelete(row.path(), UndeleteBox::Hidden)) return;
  static_cast<void>(Deletion().remove(row, DeleteMode::One));
}

void deleteAllFound() {
  const std::vector<FoundRow> rows = allRows();
  if (rows.empty()) return;
  if (!isOff(ConfirmationOff::DeleteTagged) && !askDeleteAll(static_cast<int>(rows.size()))) return;
  Deletion deletion;
  for (const FoundRow& row : rows) {
    if (!deletion.remove(row, DeleteMode::OneOfMany)) return;
  }
}

bool isStillFound(const FoundRow& row, int index) {
  switch (lookAt(row)) {
    case Found::Same:
      return true;
    case Found::Gone:
      foundEntries().remove(index, row.path());
      return false;
    case Found::Another:
      break;
  }
  tellChangedFile(row.path());
  return false;
}
