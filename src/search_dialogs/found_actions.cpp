#include "search_dialogs/found_actions.h"

#include <cerrno>
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

// What became of a file since it was found.
struct Look {
  enum class Found { Same, Gone, Another, Unknown };

  explicit Look(const FoundRow& row) {
    const Westring path = row.path();
    const bool leads = row.item->isLink() && statPath(path, info) == 0;
    error = leads ? 0 : lstatPath(path, info);
    if (error == ENOENT || error == ENOTDIR) {
      found = Found::Gone;
    } else if (error) {
      found = Found::Unknown;
    } else {
      found = idOf(info) == row.id ? Found::Same : Found::Another;
    }
  }

  // Nothing to say when it is the same file, or gone.
  void tell(const Westring& path) const {
    if (found == Found::Another) {
      alert("File has changed", path, AlertButtons::Ok, AlertColour::Error);
    } else if (found == Found::Unknown) {
      alert(errorText(error), path, AlertButtons::Ok, AlertColour::Error);
    }
  }

  Found found = Found::Gone;
  int error = 0;
  struct stat info {};
};
using Found = Look::Found;

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
    const Look look(row);
    look.tell(path);
    if (look.found == Found::Gone) gone_.insert(path.data());
    if (look.found != Found::Same) return true;
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
    const Look look(row);
    look.tell(row.path());
    if (look.found != Found::Same) continue;
    EntryPtr item(copyEntry(row.item.get()));
    item->total = -1;
    item->tagged = 1;
    result.addTagged(item->size);
    ++result.taggedCount;
    result.entries.add(std::move(item));
  }
  return result;
}

// The list as the disk is by now.
void lookAgain(const std::vector<FoundRow>& rows) {
  Paths gone;
  for (size_t i = 0; i < rows.size(); ++i) {
    const Westring path = rows[i].path();
    const Look look(rows[i]);
    if (look.found == Found::Gone) gone.insert(path.data());
    if (look.found == Found::Same) foundEntries().update(static_cast<int>(i), path, look.info);
  }
  takeOff(gone, {});
}

}  // namespace

void transferFound(const Panel& panel, TransferKind kind) {
  const std::vector<FoundRow> rows = allRows();
  Panel source = panelOf(panel, rows);
  if (source.count() > 0) copyCommand(source, kind == TransferKind::Move ? CopyFlag::Move : 0);
  lookAgain(rows);
}

void deleteFound(int index) {
  const FoundRow row = foundEntries().row(index);
  if (!row.valid()) return;
  const Look look(row);
  look.tell(row.path());
  if (look.found == Found::Gone) foundEntries().remove(index, row.path());
  if (look.found != Found::Same) return;
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
