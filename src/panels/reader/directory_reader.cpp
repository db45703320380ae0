#include "panels/reader/directory_reader.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cwchar>
#include <memory>
#include <vector>

#include "foundation/break_state.h"
#include "foundation/dir_finder.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "language/filter_expression.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/entry_order.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "ui/alert.h"
#include "ui/progress_thread.h"

namespace {

constexpr int NoListing = -1;  // what an archive answers for a directory that it doesn't hold
enum class Progress { Hidden, Shown };

// The records of the panel's directory, from its archive or from the disk.
class EntrySource {
 public:
  explicit EntrySource(Panel& panel)
      : archive_(panel.archive.get()), path_(panel.path), finder_(panel.path) {}

  int first(EntryPtr& hit) {
    entry* result = nullptr;
    int status;
    if (archive_) {
      status = archive_->first(innerPath(*archive_, path_), result);
    } else if (path_.length() >= MaxPathLength) {
      status = ENAMETOOLONG;
    } else {
      status = finder_.first(L"*", FindFlag::All | FindFlag::OwnRecord, result);
    }
    hit.reset(result);
    return status;
  }

  int next(EntryPtr& hit) {
    entry* result = nullptr;
    const int status = archive_ ? archive_->next(result) : finder_.next(result);
    hit.reset(result);
    return status;
  }

 private:
  OpenArchive* archive_;
  Westring path_;
  DirFinder finder_;
};

// Fills an empty list from a source.
class Listing {
 public:
  Listing(Panel& panel, std::atomic<int>& filesRead)
      : panel_(panel),
        filesRead_(filesRead),
        root_(panel.isRoot()),
        filtered_(!filtersNothing(panel.filter.data())),
        totals_(GlobalOptions::RetainCount) {
    panel_.subdirectories->unsorted = true;
  }

  // Takes `hit` and all that follow it; the status that ended it.
  int collect(EntrySource& source, EntryPtr hit);
  // Adds what the source left out, and sorts.
  void complete();
  int64_t fileBytes() const { return static_cast<int64_t>(fileBytes_); }

 private:
  void take(EntryPtr hit);
  bool isListed(const entry& item, bool dot, bool dotDotStart) const;
  void countTotal(entry& item);

  Panel& panel_;
  std::atomic<int>& filesRead_;
  const bool root_;
  const bool filtered_;
  const bool totals_;
  bool parentSeen_ = false;
  uint64_t fileBytes_ = 0;
};

int Listing::collect(EntrySource& source, EntryPtr hit) {
  // A request that an operation around this read was ended by is not meant for the listing.
  const bool endsRead = !breakRequested();
  BreakScope armed;
  int status = 0;
  while (status == 0) {
    take(std::move(hit));
    filesRead_.fetch_add(1, std::memory_order_relaxed);
    if (endsRead && breakRequested()) break;
    status = source.next(hit);
  }
  return status;
}

unsigned char sortGroupOf(const entry& item, bool parent) {
  if (parent) return SortGroup::Parent;
  if (item.isDirectory()) return SortGroup::Directory;
  return item.isHidden() ? SortGroup::HiddenFile : SortGroup::File;
}

void Listing::take(EntryPtr hit) {
  const wchar_t* name = hit->name();
  const bool dot = name[0] == L'.' && name[1] == 0;
  const bool dotDotStart = name[0] == L'.' && name[1] == L'.';
  const bool parent = dotDotStart && name[2] == 0;
  if (parent) parentSeen_ = true;
  if (!hit->isDirectory()) {
    fileBytes_ += hit->size;
  } else if (!dot && !parent) {
    panel_.subdirectories->addCopy(name);
  }
  if (!isListed(*hit, dot, dotDotStart)) return;
  hit->sortGroup = sortGroupOf(*hit, parent);
  if (totals_ && hit->isDirectory() && !hit->isLink() && !parent) countTotal(*hit);
  panel_.entries.add(std::move(hit));
}

bool Listing::isListed(const entry& item, bool dot, bool dotDotStart) const {
  if (dot) return false;
  if (dotDotStart && root_) return false;
  if (item.isHidden() && !GlobalOptions::Hidden && !dotDotStart) return false;
  return !filtered_ || item.isDirectory() || evaluateFilter(panel_.filter.data(), &item);
}

void Listing::countTotal(entry& item) {
  const std::optional<int64_t> total =
      directoryTree()->totalOf(panel_, joinPath(panel_.path, item.name()));
  if (!total) return;
  item.size = static_cast<uint64_t>(*total);
  item.level = 1;
}

void Listing::complete() {
  if (!root_ && !parentSeen_) {
    EntryPtr parent(newEntry(ParentName));
    parent->attributes = Attribute::Directory;
    parent->sortGroup = SortGroup::Parent;
    panel_.entries.insertFirst(std::move(parent));
  }
  panel_.subdirectories->sort();
  sortEntries(panel_);
}

// Takes what is or was tagged out of a list that is read again; another directory's tags end.
void keepTagged(Panel& panel, EntryStore& kept) {
  if (!sameName(panel.path, panel.lastPath)) return;
  for (int i = 0; i < panel.count(); ++i) {
    const entry* item = panel.entries[i];
    if (item->tagged || item->wasTagged) kept.add(panel.entries.take(i).release());
  }
}

bool nameBefore(const entry* a, const entry* b) {
  return wcscmp(a->name(), b->name()) < 0;
}

void restoreTags(Panel& panel, EntryStore& kept) {
  if (kept.count() == 0) return;
  std::vector<entry*> byName(panel.entries.begin(), panel.entries.end());
  std::sort(byName.begin(), byName.end(), nameBefore);
  for (int i = 0; i < kept.count(); ++i) {
    const entry* old = kept.peek(i);
    auto place = std::lower_bound(byName.begin(), byName.end(), old, nameBefore);
    if (place == byName.end() || !sameName((*place)->name(), old->name())) continue;
    entry* item = *place;
    item->wasTagged = old->wasTagged;
    item->tagged = old->tagged;
    if (!item->tagged) continue;
    ++panel.taggedCount;
    panel.addTagged(item->size);
  }
}

void restoreCursor(Panel& panel, const Westring& name) {
  if (name.empty()) {
    panel.top = panel.cursor = 0;
    return;
  }
  const int last = std::max(panel.count() - 1, 0);
  panel.top = std::clamp(panel.top, 0, last);
  panel.cursor = std::min(panel.cursor, last - panel.top);
  selectName(panel, name.data());
}

bool startsListing(int status) {
  return status == 0 || status == Status::NoMoreFiles || status == ENOENT;
}

// Reads the path once; the status of the first hit. A list is there when startsListing(status).
int readOnce(Panel& panel, Progress shown) {
  const entry* current = panel.currentEntry();
  const Westring remembered = current ? current->name() : L"";
  EntryStore kept;
  keepTagged(panel, kept);
  clearListing(panel);
  panel.lastPath = panel.path;
  panel.readError = 0;

  std::atomic<int> filesRead{0};
  std::unique_ptr<DirReadProgress> progress;
  if (shown == Progress::Shown && console) progress = std::make_unique<DirReadProgress>(&filesRead);
  EntrySource source(panel);
  EntryPtr hit;
  const int status = source.first(hit);
  if (!startsListing(status)) {
    panel.top = panel.cursor = 0;
    return status;
  }
  Listing listing(panel, filesRead);
  int last = status;
  if (hit) {
    last = listing.collect(source, std::move(hit));
    if (last != 0 && last != Status::NoMoreFiles && last != NoListing) panel.readError = last;
  }
  listing.complete();
  restoreTags(panel, kept);
  progress.reset();
  // Of a list that breaks off nobody must take that the rest isn't there.
  if (last == Status::NoMoreFiles) directoryTree()->directoryRead(panel, listing.fileBytes());
  restoreCursor(panel, remembered);
  return status;
}

bool leadsUp(const Panel& panel, int status) {
  if (panel.isRoot()) return false;
  // An archive that was read again may hold the directory no more.
  if (panel.archive && status == NoListing) return true;
  return status == ENOTDIR || status == EACCES || status == ENAMETOOLONG;
}

// Reads the nearest path above one that can't be read.
int readAbove(Panel& panel, int status) {
  UpwardStep step;
  while (leadsUp(panel, status)) {
    step = stepUp(panel);
    closeLeftArchives(panel.archive, panel.path);
    status = readOnce(panel, Progress::Shown);
  }
  if (startsListing(status)) returnFrom(panel, step);
  return status;
}

// Reads the path, or the nearest one above it; the first thing that goes wrong is what there is to
// tell.
ReadTrouble readNearest(Panel& panel) {
  const Westring wanted = panel.path;
  int status = readOnce(panel, Progress::Shown);
  if (startsListing(status)) return {};
  const int first = status;
  if (leadsUp(panel, status)) status = readAbove(panel, status);
  if (!startsListing(status) && status != NoListing) panel.readError = status;
  if (first == Status::NotReady || first == NoListing) return {};
  return {errorText(first), wanted};
}

void readTreeView(Panel& panel) {
  const Westring current = panel.treeLines.empty() ? Westring() : treeDirectory(panel);
  clearListing(panel);
  panel.lastPath = panel.path;
  panel.readError = 0;
  directoryTree()->fill(panel);
  normalisePosition(panel);
  if (!current.empty()) directoryTree()->select(panel, current);
}

// Closes the archives that the path has left. Of one whose file has gone, the directory that held
// it is there.
void closeLeft(Panel& panel) {
  if (!panel.archive) return;
  const Westring file = outermostArchive(*panel.archive).path();
  closeLeftArchives(panel.archive, panel.path);
  if (!panel.archive && liesIn(panel.path, file)) panel.path = parentOf(file);
}

// An archive that has changed on the disk is read again; one that is none any more is left for its
// directory.
void renewArchive(Panel& panel) {
  if (!panel.archive || panel.archive->isCurrent()) return;
  const Westring directory = parentOf(panel.archive->path());
  if (!reopenInnermost(panel.archive)) panel.path = directory;
}

// The next round draws it.
void markInfoBeside(const Panel& panel) {
  PanelPair& pair = panelPair();
  if (!pair.holds(panel)) return;
  Panel& other = pair.other(panel);
  if (other.type == PanelType::Info) other.needsDraw = true;
}

}  // namespace

void readDirectory(Panel& panel) {
  const ReadTrouble trouble = tryReadDirectory(panel);
  if (!trouble.text.empty() && console) {
    alert(trouble.text, trouble.path, AlertButtons::Ok, AlertColour::Error);
  }
}

ReadTrouble tryReadDirectory(Panel& panel) {
  if (!panel.showing || panel.type == PanelType::Info) {
    panel.needsRead = true;
    return {};
  }
  panel.needsRead = false;
  panel.needsDraw = true;
  closeLeft(panel);
  renewArchive(panel);
  if (panel.isTreeStyle()) {
    readTreeView(panel);
    return {};
  }
  ReadTrouble trouble = readNearest(panel);
  markInfoBeside(panel);
  return trouble;
}

int readListing(Panel& panel) {
  const int status = readOnce(panel, Progress::Hidden);
  return status == Status::NoMoreFiles ? 0 : status;
}

void panelRefresh() {
  PanelPair& pair = panelPair();
  for (Panel& panel : pair.side) readDirectory(panel);
}
