#include "tools/panel_trees.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/utf8.h"
#include "panels/model/panel.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "tools/tree_scan_window.h"
#include "tools/tree_window.h"
#include "tree/tree_changes.h"
#include "tree/tree_file.h"
#include "tree/tree_scan.h"
#include "ui/alert.h"

namespace {

constexpr int64_t NsOfMs = 1'000'000;
constexpr int64_t LeastMsBetweenSaves = 2000;
constexpr int ShortWaitMs = 1;
constexpr int MsBeforeEscapeEndsALoad = 500;

// False when no line shows it.
bool cursorToNode(Panel& panel, const TREENODE* node) {
  const int line = lineOfNode(panel.treeLines, node);
  if (line < 0) return false;
  panel.cursor = line - panel.top;
  normalisePosition(panel);
  return true;
}

// The first directory of just that name, in any case, from `start` on and then from the root.
TREENODE* findWholeName(TREENODE* root, TREENODE* start, const Westring& name) {
  const auto search = [&](TREENODE* from, const TREENODE* end) -> TREENODE* {
    for (TREENODE* node = from; node && node != end; node = nextInSubtree(node, root)) {
      if (compareNoCase(node->name.data(), name.data()) == 0) return node;
    }
    return nullptr;
  };
  TREENODE* found = start ? search(start, nullptr) : nullptr;
  return found ? found : search(root, start);
}

// All directories of an archive below its own path.
std::shared_ptr<CTree> treeOfArchive(const OpenArchive& archive) {
  auto tree = std::make_shared<CTree>();
  TREENODE* const root = tree->makeRoot();
  tree->isPrivate = tree->loaded = true;
  root->name = archive.path();
  archive.forEachDirectory([&](const Westring& innerPath) {
    const int slash = innerPath.rfind(L'/');
    TREENODE* const parent =
        slash < 0 ? root : tree->find(joinPath(archive.path(), left(innerPath, slash)));
    if (parent) tree->appendChild(parent, lastComponent(innerPath));
  });
  return tree;
}

}  // namespace

PanelTrees& panelTrees() {
  static PanelTrees trees;
  return trees;
}

CTree& PanelTrees::tree() {
  CTree& tree = set_.treeOf(TTreeKey{});
  askedFor_ = true;
  if (!tree.root() && !loadDeclined_) {
    EscapeWatch escape(clock_, MsBeforeEscapeEndsALoad);
    loadDeclined_ = loadTree(tree, treeFilePath(), [&escape] { return escape.pressed(); }) ==
                    TreeLoad::Interrupted;
  }
  for (const auto& read : std::exchange(early_, {})) {
    take(read->path, read->subdirectories, read->fileBytes);
  }
  return tree;
}

CTree& PanelTrees::treeOf(const Panel& panel) {
  if (!panel.archive) return tree();
  if (!panel.archive->tree) panel.archive->tree = treeOfArchive(*panel.archive);
  return *panel.archive->tree;
}

// What the lines of a panel were made of.
CTree& PanelTrees::shownTree(const Panel& panel) {
  return panel.linesTree ? *panel.linesTree : tree();
}

// For whoever wants to show a tree; a file is read first, also one whose reading was ended before.
bool PanelTrees::needsScan() {
  loadDeclined_ = false;
  const CTree& disk = tree();
  return !disk.root() || (!disk.loaded && !disk.root()->child);
}

bool PanelTrees::scan() {
  CTree& disk = tree();
  {
    TreeScanWindow window(clock_);
    if (scanTree(disk, window) != ScanEnd::Whole) return false;
  }
  declined_ = false;
  save();
  return true;
}

// ---- what it is told

void PanelTrees::directoryRead(const Panel& panel, int64_t fileBytes) {
  if (panel.archive) return;
  // The first screen doesn't wait for the tree.
  if (!askedFor_) return keepForLater(panel, fileBytes);
  tree();
  take(panel.path, *panel.subdirectories, fileBytes);
  freeRemoved();
}

void PanelTrees::keepForLater(const Panel& panel, int64_t fileBytes) {
  auto read = std::make_unique<EarlyRead>();
  read->path = panel.path;
  read->fileBytes = fileBytes;
  read->subdirectories.unsorted = true;
  for (long i = 0; i < panel.subdirectories->count(); ++i) {
    read->subdirectories.addCopy(*panel.subdirectories->peek(i));
  }
  read->subdirectories.sort();
  early_.push_back(std::move(read));
}

void PanelTrees::take(const Westring& path, const NameCollection& subdirectories,
                      int64_t fileBytes) {
  CTree& disk = set_.treeOf(TTreeKey{});
  TREENODE* directory = disk.find(path);
  if (!directory) return;
  if (isLeafOnDisk(path)) {
    synchronise(disk, directory, NameCollection());
    return;
  }
  synchronise(disk, directory, subdirectories);
  sumUp(directory, fileBytes);
}

void PanelTrees::made(const Panel&, const Westring& path) {
  addDirectory(tree(), path);
}

void PanelTrees::renamed(const Panel&, const Westring& from, const Westring& to) {
  renameDirectory(tree(), from, to);
  freeRemoved();
}

void PanelTrees::removed(const Westring& path) {
  removeDirectory(tree(), path);
  freeRemoved();
}

std::optional<int64_t> PanelTrees::totalOf(const Panel& panel, const Westring& path) {
  const TREENODE* directory = treeOf(panel).find(path);
  const int64_t size = directory ? knownSize(directory) : TREENODE::Unknown;
  if (size == TREENODE::Unknown) return std::nullopt;
  return size;
}

Westring PanelTrees::find(const Panel& panel, const Westring& name) {
  CTree& tree = treeOf(panel);
  if (!tree.root() || name.empty()) return Westring();
  TREENODE* here = tree.find(panel.path);
  TREENODE* found = findWholeName(tree.root(), here, name);
  if (!found) found = findNextByPrefix(tree.root(), here, name);
  return found ? pathOfNode(found) : Westring();
}

// What was taken out of the tree is still read by lists that were made before.
void PanelTrees::freeRemoved() {
  CTree& disk = tree();
  for (const Panel& panel : panelPair().side) {
    const bool ofDisk = !panel.treeLines.empty() && !panel.linesTree;
    if (ofDisk && panel.treeVersion != disk.version()) return;
  }
  disk.freeRemoved();
}

// ---- saving

bool PanelTrees::wantsSave() {
  const CTree& disk = set_.treeOf(TTreeKey{});
  return disk.dirty && disk.loaded && disk.root();
}

int PanelTrees::write() {
  CTree& disk = tree();
  const int error = saveTree(disk, treeFilePath());
  lastSave_ = clock_.nanoseconds();
  everSaved_ = true;
  refused_ = error != 0;
  refusedVersion_ = disk.version();
  return error;
}

void PanelTrees::save() {
  if (!wantsSave()) return;
  const bool told = refused_ && refusedVersion_ == tree().version();
  const int error = write();
  if (error == 0 || told) return;
  alert(L"Error writing tree data file: " + Westring(fromUtf8(strerror(error))), treeFilePath(),
        AlertButtons::Ok, AlertColour::Error);
}

int PanelTrees::saveWhileWaiting() {
  if (!std::exchange(waited_, true)) return ShortWaitMs;
  if (!askedFor_) tree();
  // What couldn't be written isn't tried again until there is more to write, and told only once.
  if (!wantsSave() || (refused_ && refusedVersion_ == tree().version())) return NoLimit;
  const int64_t sinceMs = (clock_.nanoseconds() - lastSave_) / NsOfMs;
  if (everSaved_ && sinceMs < LeastMsBetweenSaves) {
    return static_cast<int>(LeastMsBetweenSaves - sinceMs);
  }
  if (refused_) {
    write();
  } else {
    save();
  }
  return NoLimit;
}

// ---- panels of the tree style

void PanelTrees::fill(Panel& panel) {
  const bool asked = panel.rescanTree;
  panel.rescanTree = false;
  if (panel.archive) {
    CTree& archived = treeOf(panel);
    panel.linesTree = panel.archive->tree;
    return showTreeLines(panel, archived);
  }
  panel.linesTree = nullptr;
  if ((asked || (needsScan() && !declined_)) && !scan()) declined_ = true;
  showTreeLines(panel, tree());
  freeRemoved();
}

Westring PanelTrees::pathOf(const Panel& panel, int index) {
  const TREENODE* node = panel.treeLineAt(index).node;
  return node ? pathOfNode(node) : Westring();
}

void PanelTrees::select(Panel& panel, const Westring& path) {
  CTree& shown = shownTree(panel);
  TREENODE* node = shown.find(path);
  if (panel.treeVersion != shown.version()) showTreeLines(panel, shown);
  if (node && !cursorToNode(panel, node)) {
    showNode(node);
    showTreeLines(panel, shown);
    cursorToNode(panel, node);
  }
  normalisePosition(panel);
  panel.needsDraw = true;
  freeRemoved();
}

void PanelTrees::setBranch(Panel& panel, TreeReach reach, Branch branch) {
  TREENODE* node = panel.treeLineAt(panel.currentIndex()).node;
  if (!node) return;
  if (reach == TreeReach::Subtree) {
    expandSubtree(node, branch);
  } else {
    expandNode(node, branch);
  }
  showTreeLines(panel, shownTree(panel));
  if (!cursorToNode(panel, node)) normalisePosition(panel);
  panel.needsDraw = true;
}

// ---- the window

Westring PanelTrees::choose(Panel& panel, TreeWindowUse use) {
  // A field asks for a directory of the disk.
  if (panel.archive && use == TreeWindowUse::Command) {
    return TreeWindow(treeOf(panel), panel.path, use, nullptr).choose();
  }
  if (needsScan() && !scan()) return Westring();
  CTree& disk = tree();
  if (!disk.root()) return Westring();
  if (!disk.loaded) {
    disk.loaded = disk.dirty = true;
    save();
  }
  TreeWindow window(disk, panel.path, use, [this] { return scan(); });
  Westring chosen = window.choose();
  freeRemoved();
  return chosen;
}
