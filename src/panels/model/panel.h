#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "archive/archive_chain.h"
#include "foundation/entry.h"
#include "foundation/string_collections.h"
#include "foundation/westring.h"
#include "tree/tree_lines.h"
#include "ui/win.h"

namespace SortCode {
inline constexpr int Name = 0, Extension = 1, Time = 2, Size = 3, Unsorted = 4;
inline constexpr int Reverse = 5;  // added to the codes above
}  // namespace SortCode

enum class PanelType : int { Files = 0, Info = 1 };

enum class PanelStyle : int {
  Brief = 0,
  Full = 1,
  Wide = 2,
  BriefWide = 3,
  Unix = 4,
  Tree = 5,
  DialogTree = 6  // the tree view of a dialog
};

// How many lists of names stand side by side in a style: 1 to 3.
int pageColumns(PanelStyle style);

struct PanelPosition {
  int top = 0;
  int cursor = 0;
};

struct TLinkTargetCacheEntry {
  Westring path;
  Westring target;
};

// Link targets by full path, each read at most once per read of the directory. What moves is empty
// afterwards, and so is what it moved to: links are read again when they are shown.
class CLinkTargetCache : public TSortedCollection<TLinkTargetCacheEntry, Westring> {
 public:
  CLinkTargetCache() = default;
  ~CLinkTargetCache() override { clear(); }
  CLinkTargetCache(CLinkTargetCache&& other) noexcept { other.clear(); }
  CLinkTargetCache& operator=(CLinkTargetCache&& other) noexcept {
    clear();
    other.clear();
    return *this;
  }
  const Westring& targetOf(const Westring& fullPath);

 protected:
  Westring* keyOf(TLinkTargetCacheEntry* item) override { return &item->path; }
  int compareKeys(Westring* a, Westring* b) override;  // exact
};

// The listing of a panel: an array of owned entries that doubles when full.
class EntryList {
 public:
  static constexpr int StartCapacity = 4096;
  EntryList();
  ~EntryList() { clear(); }
  EntryList(const EntryList&) = delete;
  EntryList& operator=(const EntryList&) = delete;
  EntryList(EntryList&& other) : EntryList() { swap(other); }
  EntryList& operator=(EntryList&& other) {
    swap(other);
    return *this;
  }
  void swap(EntryList& other);

  int count() const { return count_; }
  int capacity() const { return capacity_; }
  entry* operator[](int index) const { return items_[index]; }
  entry** begin() const { return items_.get(); }
  entry** end() const { return items_.get() + count_; }
  void add(EntryPtr item);
  void insertFirst(EntryPtr item);
  EntryPtr take(int index);  // leaves null in its place
  void clear();

 private:
  void grow();
  std::unique_ptr<entry*[]> items_;
  int count_ = 0;
  int capacity_ = StartCapacity;
};

// What one side of the screen shows: everything that changes places when the panels are swapped.
struct PanelContents {
  static constexpr int StoredPositions = 50;
  static constexpr int RestoredPositions = 20;

  Westring path;        // inside an archive: the archive file's path followed by the path inside it
  Westring lastPath;    // the path of the previous read
  PanelPosition saved;  // copied on every round of the main loop
  Westring previousPath;  // the directory left last
  PanelPosition previous;
  int cursor = 0;  // row inside the visible page
  int top = 0;     // index of the first visible entry
  bool showing = true;
  bool needsRead = false;   // a read was postponed
  bool needsDraw = false;   // a draw was postponed
  bool keptOff = false;     // was off already when the panels were taken off together
  bool infoWasOff = false;  // the panel was off when INFO turned it on
  PanelPosition positionStack[StoredPositions];
  int depth = -1;  // top of positionStack; -1 when empty, never below, at most 32767
  EntryList entries;
  int taggedCount = 0;
  int64_t taggedSize = 0;
  Westring quickSearch;  // "" when not searching
  int sort = SortCode::Name;
  PanelType type = PanelType::Files;
  PanelStyle style = PanelStyle::Full;
  Westring filter = L"*";
  int pageSize = 1;  // entries in a page, at least 1
  int readError = 0;
  std::vector<TreeLine> treeLines;       // in the tree styles one for each entry
  uint64_t treeVersion = 0;              // of the tree, when these were made of it
  bool rescanTree = false;               // the tree view is to be read again
  std::shared_ptr<CTree> linesTree;      // what the lines are of, when that is an archive's tree
  std::unique_ptr<OpenArchive> archive;  // innermost open archive
  int nameOffset = 0;                    // characters by which a long name is scrolled
  int nameOffsetEntry = -1;              // the entry it applies to
  int infoRows = 0;
  // The names of all subdirectories of the directory, listed or not.
  std::unique_ptr<NameCollection> subdirectories = std::make_unique<NameCollection>();
  CLinkTargetCache linkTargets;
};

// One side of the screen. A plain record: everything that acts on it is a function of its own.
// Application thread.
struct Panel : PanelContents {
  std::unique_ptr<Win> window;

  int count() const { return entries.count(); }
  int currentIndex() const { return top + cursor; }
  entry* currentEntry() const {
    int index = currentIndex();
    return index >= 0 && index < entries.count() ? entries[index] : nullptr;
  }
  bool isFiles() const { return type == PanelType::Files; }
  // Adds a size, or a negative one, to the sum of the tagged; wraps where a sum can't be held.
  void addTagged(uint64_t size) {
    taggedSize = static_cast<int64_t>(static_cast<uint64_t>(taggedSize) + size);
  }
  bool isTreeStyle() const { return style == PanelStyle::Tree || style == PanelStyle::DialogTree; }
  bool isList() const { return isFiles() && !isTreeStyle(); }  // of files
  bool isTree() const { return isFiles() && isTreeStyle(); }
  TreeLine treeLineAt(int index) const {
    return index >= 0 && index < static_cast<int>(treeLines.size()) ? treeLines[index] : TreeLine();
  }
  bool isRoot() const { return path.data()[0] == L'/' && path.data()[1] == 0; }
};

// The panel's window is there and not hidden.
bool isDrawable(const Panel& panel);
// The path as shown: of the directory, or inside an archive.
const Westring& shownPath(const Panel& panel);
// The real directory to work in: inside an archive the directory that holds the archive file.
Westring physicalDirectory(const Panel& panel);
// Frees the list and all that was counted of it. The position stays.
void clearListing(Panel& panel);
