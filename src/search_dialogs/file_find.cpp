#include "search_dialogs/file_find.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "console/clipboard.h"
#include "editor/text/search_values.h"
#include "editor/window/editor.h"
#include "filecommands/entry_path.h"
#include "foundation/break_state.h"
#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "language/association_set.h"
#include "language/typed_path.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/panel_switch.h"
#include "panels/model/entry_order.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "search_dialogs/find_dialog.h"
#include "search_dialogs/found_actions.h"
#include "search_dialogs/replace_found.h"
#include "shell/process_command.h"
#include "ui/alert.h"
#include "ui/help_window.h"
#include "viewer/viewer.h"

namespace {

// What stays between two calls.
struct Remembered {
  Westring files;
  Westring text;
  FindSettings searched;  // by the last search
  int current = 0;
};

Remembered& remembered() {
  static Remembered values;
  return values;
}

// Letters of drives, which are names with a colon here; a text with '/' is directories, as they are
// typed in `directory`.
std::vector<std::string> drives(const Westring& list, const Westring& directory) {
  std::vector<std::string> starts;
  const std::wstring text = list.data();
  if (text.find(L'/') == std::wstring::npos) {
    for (size_t i = text.size(); i-- > 0;) {
      const wchar_t typed[] = {text[i], L':', L'\\', 0};
      Westring root = typed;
      if (canonicalPath(root) == 0) starts.push_back(bytePath(root));
    }
  } else {
    for (size_t start = 0; start <= text.size();) {
      const size_t end = std::min(text.find(L';', start), text.size());
      if (end > start) {
        const std::vector<Westring> meanings =
            pathMeanings(text.substr(start, end - start).c_str(), directory);
        const auto meant = std::find_if(meanings.begin(), meanings.end(), isDirectoryPath);
        if (meant != meanings.end()) starts.push_back(bytePath(*meant));
      }
      start = end + 1;
    }
  }
  std::vector<std::string> once;
  for (const std::string& start : starts) {
    if (std::find(once.begin(), once.end(), start) == once.end()) once.push_back(start);
  }
  return once;
}

class FileFind {
 public:
  FileFind(int side, FindList list)
      : side_(side),
        panel_(panelPair().side[side]),
        texts_{remembered().files, remembered().text, Westring(GlobalOptions::FFDriveList)},
        listsFound_(list == FindList::Last && foundEntries().count() > 0),
        current_(listsFound_ ? remembered().current : 0),
        dialog_(std::in_place, texts_, &current_,
                listsFound_ ? FindDialog::Begin::InList : FindDialog::Begin::InFields) {}

  void run() {
    while (takeKey(dialog_->run())) {
    }
    if (listsFound_) remembered().current = current_;
  }

 private:
  // A search and Break, which ends it. Once it has ended, Break is for what is done with its
  // results.
  struct Search {
    Search(FindSettings settings, std::function<void()> news)
        : armed(std::in_place), run(std::move(settings), foundEntries(), std::move(news)) {}
    std::optional<BreakScope> armed;
    FindRun run;
  };

  bool hasResults() const { return listsFound_ && foundEntries().count() > 0; }
  bool isRunning() const { return search_ && search_->run.state() == FindState::Running; }

  bool takeKey(Key::Code key) {
    if (search_ && !isRunning()) search_->armed.reset();
    switch (key) {
      case FindKey::Find:
        find();
        return true;
      case FindKey::GoTo:
        leave();
        if (hasResults()) goToCurrent();
        return false;
      case Dialog::ProgramEnds:
        leave();
        return false;
      case Key::Esc:
        // One that hangs and was stopped before can be left.
        if (isRunning() && !stopped_) {
          stop();
          return true;
        }
        leave();
        return false;
      default:
        if (hasResults() || key == Key::F1 || key == FindKey::TooMany) act(key);
        return true;
    }
  }

  void act(Key::Code key) {
    switch (key) {
      case Key::F1:
        return helpWindow()->show(HelpTopic::FileFind);
      case FindKey::TooMany:
        alert("Too many matches", Westring());
        return;
      case Key::F3:
      case Key::AltF3:
        return openCurrent(GlobalOptions::Viewer, GlobalOptions::Viewer2, key == Key::AltF3,
                           associationSets().viewers, &FileFind::view);
      case Key::F4:
      case Key::AltF4:
        return openCurrent(GlobalOptions::Editor, GlobalOptions::Editor2, key == Key::AltF4,
                           associationSets().editors, &FileFind::edit);
      case Key::CtrlF3:
      case Key::CtrlF4:
      case Key::CtrlF5:
      case Key::CtrlF6:
        return sort(key.value() - Key::CtrlF3.value());
      case Key::CtrlShiftF:
        return clipboardSetText(currentPath());
      case Key::CtrlShiftJ:
        return clipboardSetText(lastComponent(currentPath()));
      default:
        return change(key);
    }
  }

  // What changes files, or the list.
  void change(Key::Code key) {
    switch (key) {
      case Key::F5:
      case Key::F6: {
        dialog_->hide();
        transferFound(panel_, key == Key::F6 ? TransferKind::Move : TransferKind::Copy);
        dialog_->unhide();
        break;
      }
      case Key::F8:
        deleteFound(current_);
        changed_ = true;
        break;
      case Key::ShiftF8:
        if (isRunning()) return;
        deleteAllFound();
        changed_ = true;
        break;
      case Key::Delete:
        if (!dialog_->isInList()) return;
        foundEntries().remove(current_, currentPath());
        break;
      case FindKey::Replace:
        if (isRunning() || remembered().searched.text.empty()) return;
        replaceInFound(remembered().searched);
        changed_ = true;
        break;
      default:
        return;
    }
    dialog_->listChanged();
  }

  void find() {
    if (texts_.files.empty()) return;
    dialog_->commitAll();
    remember();
    endSearch();
    foundEntries().removeAll();
    listsFound_ = true;
    stopped_ = false;
    remembered().searched = settings();
    search_.emplace(remembered().searched, [dialog = &*dialog_] { dialog->news(); });
    dialog_->follow(&search_->run);
    dialog_->focusList();
  }

  void remember() {
    remembered().files = texts_.files;
    remembered().text = texts_.text;
    GlobalOptions::FFDriveList = toUtf8(texts_.drives);
  }

  FindSettings settings() const {
    FindSettings result;
    result.files = texts_.files;
    result.text = texts_.text;
    result.rule = GlobalOptions::FFCase ? CaseRule::Exact : CaseRule::Folded;
    result.wholeWord = GlobalOptions::FFWholeWord;
    result.recurse = GlobalOptions::FFRecurse;
    result.hidden = GlobalOptions::Hidden;
    const Westring directory =
        panel_.isTree() ? currentDirectoryOf(panel_) : physicalDirectory(panel_);
    if (GlobalOptions::FFMultiDrive) {
      result.starts = drives(texts_.drives, directory);
    } else if (GlobalOptions::FFRootSearch) {
      result.starts = {"/"};
    } else {
      result.starts = {bytePath(directory)};
    }
    return result;
  }

  void stop() {
    stopped_ = true;
    search_->run.stop();
    search_->run.waitForEnd(FindRun::BlinkMs);
  }

  void endSearch() {
    dialog_->follow(nullptr);
    search_.reset();
  }

  void leave() {
    endSearch();
    dialog_.reset();
    if (changed_) panelRefresh();
  }

  Westring currentPath() const {
    const FoundRow row = foundEntries().row(current_);
    return row.valid() ? row.path() : Westring();
  }

  void goToCurrent() {
    const Westring path = currentPath();
    const Westring directory = parentOf(path);
    const Arrival arrival = changeDirectoryExact(panel_, directory);
    if (!arrival) {
      if (arrival.isUnexplained()) {
        alert("Invalid directory", directory, AlertButtons::Ok, AlertColour::Error);
      }
      return;
    }
    enterNewPath(panel_);
    selectName(panel_, lastComponent(path).data());
    drawPanel(panel_);
  }

  void sort(int code) {
    foundEntries().reorder([code](std::vector<entry*>& entries) { sortEntries(entries, code); });
    dialog_->listChanged();
  }

  // By an association or a configured program, or inside.
  void openCurrent(const Westring& first, const Westring& second, bool passesAssociation,
                   AssociationSet& associations, void (FileFind::*inside)(const FoundRow&)) {
    const FoundRow row = foundEntries().row(current_);
    if (!row.valid() || row.item->isDirectory()) return;
    const Westring path = row.path();
    const Westring* associated =
        passesAssociation ? nullptr : associations.findByName(lastComponent(path).data());
    const Westring command = associated ? *associated : passesAssociation ? second : first;
    if (command.empty()) {
      // Whatever has the screen to itself gives it back as it was.
      const Win cover(0, 0, panelPair().screenColumns - 1, panelPair().screenLines - 1, KeepAttr,
                      NoFrame, Shadow::None);
      presetSearch();
      (this->*inside)(row);
    } else {
      dialog_->hide();
      processCommand(command, side_, Westring(), MacroMode::Program, path);
      panelsVisible(Visible::Yes);
      dialog_->unhide();
    }
    updateRow(path);
  }

  static void presetSearch() {
    const FindSettings& searched = remembered().searched;
    if (searched.text.empty()) return;
    SearchValues& values = searchValues();
    values.text = searched.text;
    values.caseSensitive = searched.rule == CaseRule::Exact;
    values.wholeWord = searched.wholeWord;
    values.reverse = false;
  }

  void view(const FoundRow& row) {
    int64_t topLine = 0;
    const int64_t position = row.item->total >= 0 ? row.item->total : AnyPosition;
    const Key::Code key = viewFile(row.path(), position, &topLine);
    if (key == Key::ShiftF4 || key == Key::AltF4) editFile(row.path(), topLine);
  }

  void edit(const FoundRow& row) { editFile(row.path()); }

  void updateRow(const Westring& path) {
    struct stat info;
    if (statPath(path, info) == 0) foundEntries().update(current_, path, info);
    changed_ = true;
    dialog_->listChanged();
  }

  const int side_;
  Panel& panel_;
  FindTexts texts_;
  bool listsFound_;  // what was found before stays unseen until a search begins or it is reopened
  int current_;
  bool stopped_ = false;  // the search, by the user
  bool changed_ = false;  // files, so that the panels must be read again
  std::optional<FindDialog> dialog_;
  std::optional<Search> search_;  // ends before the dialog
};

}  // namespace

void fileFind(int side, FindList list) {
  FileFind(side, list).run();
}
