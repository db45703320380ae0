#include "panels/commands/change_directory.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "history/history_store.h"
#include "language/typed_path.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "panels/reader/directory_reader.h"

namespace {

// Opens and closes archives of a panel on trial: what isn't committed is undone.
class ArchiveChange {
 public:
  explicit ArchiveChange(std::unique_ptr<OpenArchive>& chain) : chain_(chain) {}
  ~ArchiveChange() {
    if (!committed_) undo();
  }
  ArchiveChange(const ArchiveChange&) = delete;
  ArchiveChange& operator=(const ArchiveChange&) = delete;

  OpenArchive* innermost() const { return chain_.get(); }
  void closeInnermost() { closed_.push_back(takeInnermost(chain_)); }
  Refusal refusal() const { return refusal_; }  // of what couldn't be opened
  bool open(const Westring& file) {
    ArchiveAttempt attempt = openArchive(file, chain_.get());
    refusal_ = attempt.refusal;
    if (!attempt.archive) return false;
    attachInnermost(chain_, std::move(attempt.archive));
    ++opened_;
    return true;
  }
  void commit() {
    committed_ = true;
    for (auto& archive : closed_) archive.reset();
  }

 private:
  void undo() {
    for (; opened_ > 0; --opened_) takeInnermost(chain_).reset();
    for (; !closed_.empty(); closed_.pop_back()) attachInnermost(chain_, std::move(closed_.back()));
  }

  std::unique_ptr<OpenArchive>& chain_;
  std::vector<std::unique_ptr<OpenArchive>> closed_;  // in the order of closing
  int opened_ = 0;
  Refusal refusal_ = Refusal::Unexplained;
  bool committed_ = false;
};

// How many characters two paths share in whole components.
int commonLength(const Westring& a, const Westring& b) {
  const wchar_t* left = a.data();
  const wchar_t* right = b.data();
  int common = 0;
  for (int i = 0;; ++i) {
    const bool leftEnds = left[i] == 0 || left[i] == L'/';
    const bool rightEnds = right[i] == 0 || right[i] == L'/';
    if (leftEnds && rightEnds) common = i;
    if (left[i] != right[i] || left[i] == 0) return common;
  }
}

bool holdsDirectory(OpenArchive& archive, const Westring& path) {
  entry* first = nullptr;
  const int status = archive.first(innerPath(archive, path), first);
  freeEntry(first);
  return status == 0 || status == Status::NoMoreFiles;
}

// One step of the walk down: a directory, or a file that opens as an archive.
bool enterComponent(ArchiveChange& archives, const Westring& path) {
  if (archives.innermost()) {
    return holdsDirectory(*archives.innermost(), path) || archives.open(path);
  }
  struct stat info;
  if (statPath(path, info) != 0) return false;
  if (S_ISDIR(info.st_mode)) return true;
  return S_ISREG(info.st_mode) && archives.open(path);
}

// Tests each component of `target` behind its first `tested` characters.
bool walkDown(ArchiveChange& archives, const Westring& target, int tested) {
  const int length = target.length();
  for (int end = tested; end < length;) {
    const int start = end + 1;
    end = target.find(Westring(L"/"), start);
    if (end < 0) end = length;
    if (end > start && !enterComponent(archives, left(target, end))) return false;
  }
  return true;
}

// Makes an absolute path the panel's.
Arrival moveToPath(Panel& panel, const Westring& target) {
  if (target.length() >= MaxPathLength) return {};
  int tested = commonLength(panel.path, target);
  ArchiveChange archives(panel.archive);
  while (archives.innermost() && !staysOpen(*archives.innermost(), target)) {
    // What was inside is no longer known to be there; the file itself may have gone.
    tested = std::min(tested, commonLength(parentOf(archives.innermost()->path()), target));
    archives.closeInnermost();
  }
  if (archives.innermost()) tested = std::max(tested, archives.innermost()->path().length());
  if (!walkDown(archives, target, tested)) return {.refusal = archives.refusal()};
  archives.commit();
  panel.path = target;
  return {.reached = true};
}

bool hasVanished(const Westring& path) {
  struct stat info;
  return statPath(path, info) == ENOENT;
}

// Goes on up while the directory reached isn't there any more.
UpwardStep stepUpToExisting(Panel& panel) {
  UpwardStep step = stepUp(panel);
  closeLeftArchives(panel.archive, panel.path);
  while (!panel.archive && !panel.isRoot() && hasVanished(panel.path)) step = stepUp(panel);
  return step;
}

// The place the panel came from when it has reached another directory.
struct Departure {
  Westring path;
  PanelPosition position;
};

void rememberLeft(Panel& panel, const Departure& from) {
  if (from.path.empty() || sameName(from.path, panel.path)) return;
  addDirectory(from.path);
  panel.previousPath = from.path;
  panel.previous = from.position;
}

// Reads a directory below the panel's. One that can't be read has led back up, to its name.
void moveDown(Panel& panel, const wchar_t* name) {
  pushPosition(panel);
  panel.path = joinPath(panel.path, name);
  const Westring wanted = panel.path;
  readDirectory(panel);
  if (sameName(wanted, panel.path)) panel.top = panel.cursor = 0;
}

void tellTreeBeside(const Panel& panel) {
  PanelPair& pair = panelPair();
  if (!pair.holds(panel)) return;
  Panel& other = pair.other(panel);
  if (other.isTree()) {
    directoryTree()->select(other, panel.path);
  }
}

}  // namespace

// What has been explained isn't tried in another meaning, which may be the same place.
Arrival changeDirectory(Panel& panel, const Westring& path) {
  Arrival arrival;
  for (const Westring& meaning : pathMeanings(path, panel.path)) {
    arrival = moveToPath(panel, meaning);
    if (!arrival.isUnexplained()) break;
  }
  return arrival;
}

Arrival changeDirectoryExact(Panel& panel, const Westring& path) {
  if (path.data()[0] != L'/') return {};
  const Westring stripped = stripSlash(path);
  return moveToPath(panel, stripped.empty() ? Westring(L"/") : stripped);
}

void changeToNearest(Panel& panel, const Westring& path) {
  Westring place = path;
  // The part that the panel's path shares isn't tested by a move: it may be what is gone.
  while (!isDirectoryPath(place) || !changeDirectoryExact(panel, place)) place = parentOf(place);
}

Arrival attachArchive(Panel& panel, const wchar_t* name) {
  const Westring file = joinPath(panel.path, name);
  ArchiveAttempt attempt = openArchive(file, panel.archive.get());
  if (!attempt.archive) return {.refusal = attempt.refusal};
  attachInnermost(panel.archive, std::move(attempt.archive));
  return {.reached = true};
}

void moveUpOneLevel(Panel& panel) {
  if (panel.isRoot()) {
    readDirectory(panel);
    return;
  }
  const UpwardStep step = stepUpToExisting(panel);
  const Westring reached = panel.path;
  readDirectory(panel);
  // A directory that couldn't be read has led further up, with a position of its own.
  if (sameName(reached, panel.path) && !panel.needsRead) returnFrom(panel, step);
}

void enterPath(Panel& panel, const wchar_t* name, KeepTags keepTags, int top, int cursor) {
  const Departure from{panel.lastPath, panel.saved};
  panel.readError = 0;
  Westring wanted = panel.path;
  if (sameName(name, ParentName)) {
    moveUpOneLevel(panel);
    rememberLeft(panel, from);
    removeNewestDirectory(from.path);
    wanted = panel.path;
  } else {
    if (keepTags == KeepTags::No) panel.taggedCount = 0;
    if (name[0] != 0) {
      wanted = joinPath(wanted, name);
      moveDown(panel, name);
    } else {
      readDirectory(panel);
    }
    rememberLeft(panel, from);
  }
  if (top >= 0 && sameName(wanted, panel.path)) {
    panel.top = top;
    panel.cursor = cursor;
  }
  panel.quickSearch = Westring();
  tellTreeBeside(panel);
  // A postponed read leaves the list of another directory behind: its tags must not count here.
  if (panel.needsRead && !sameName(panel.path, from.path)) clearListing(panel);
  panel.lastPath = panel.path;
  // Where it fails the listing stays all the same; a command is told before it runs elsewhere.
  static_cast<void>(setWorkingDirectory(panel));
}

void enterNewPath(Panel& panel) {
  resetPositions(panel);
  enterPath(panel, L"", KeepTags::No, 0, 0);
}

Arrival goToPath(Panel& panel, const Westring& path) {
  const Arrival arrival = changeDirectory(panel, path);
  if (arrival) enterNewPath(panel);
  return arrival;
}

int setWorkingDirectory(const Panel& panel) {
  return changeDir(physicalDirectory(panel));
}
