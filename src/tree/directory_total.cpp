#include "tree/directory_total.h"

#include <sys/stat.h>

#include <vector>

#include "foundation/directory_walk.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "tree/tree_changes.h"

namespace {

class TotalVisitor : public DirectoryVisitor {
 public:
  TotalVisitor(CTree& tree, TotalCounters& counters, TotalWatcher& watcher)
      : tree_(tree), counters_(counters), watcher_(watcher) {}

  int64_t bytes() const { return bytes_; }

 private:
  struct Level {
    TREENODE* node;  // null where the tree holds none
    int64_t bytes;
  };

  WalkStep enter(const WalkedDirectory& directory) override;
  WalkStep member(const WalkedMember& member) override;
  WalkStep leave(const WalkedDirectory& directory) override;
  WalkRetry failed(const WalkError& error) override;
  bool interrupted() override { return watcher_.interrupted(); }

  TREENODE* nodeOf(const WalkedDirectory& directory);
  void countFile(const WalkedMember& member);
  void nothingIn(const char* name);

  CTree& tree_;
  TotalCounters& counters_;
  TotalWatcher& watcher_;
  std::vector<Level> levels_;
  int64_t bytes_ = 0;
};

void add(std::atomic<int64_t>& counter, int64_t value) {
  counter.fetch_add(value, std::memory_order_relaxed);
}

TREENODE* TotalVisitor::nodeOf(const WalkedDirectory& directory) {
  if (!tree_.root()) return nullptr;
  if (levels_.empty()) {
    const Westring path = decodeFileName(directory.place.path);
    TREENODE* known = tree_.find(path);
    return known ? known : addDirectory(tree_, path);
  }
  TREENODE* parent = levels_.back().node;
  if (!parent) return nullptr;
  const Westring name = decodeFileName(directory.place.name);
  if (TREENODE* known = tree_.childOf(parent, name.data())) return known;
  TREENODE* added = tree_.appendChild(parent, name);
  tree_.dirty = tree_.dirty || added;
  return added;
}

WalkStep TotalVisitor::enter(const WalkedDirectory& directory) {
  watcher_.entered(directory.place.path);
  levels_.push_back({nodeOf(directory), 0});
  return WalkStep::GoOn;
}

WalkStep TotalVisitor::member(const WalkedMember& member) {
  if (member.isDirectory) {
    add(counters_.directories, 1);
  } else {
    countFile(member);
  }
  return WalkStep::GoOn;
}

// Of a leaf of the tree, which there is nothing in to count.
void TotalVisitor::nothingIn(const char* name) {
  if (levels_.empty() || !levels_.back().node) return;
  TREENODE* leaf = tree_.childOf(levels_.back().node, decodeFileName(name).data());
  if (leaf) leaf->size = 0;
}

WalkRetry TotalVisitor::failed(const WalkError& error) {
  if (error.fault == WalkFault::KernelFileSystem) nothingIn(error.place.name);
  return error.fault == WalkFault::Listing ? WalkRetry::Anyway : WalkRetry::Skip;
}

void TotalVisitor::countFile(const WalkedMember& member) {
  add(counters_.files, 1);
  Level& level = levels_.back();
  if (member.type == DT_LNK) nothingIn(member.place.name);
  struct stat info;
  if (member.type != DT_REG ||
      System::statAt(member.place.directory, member.place.name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
    return;
  }
  level.bytes += info.st_size;
  add(counters_.bytes, info.st_size);
}

WalkStep TotalVisitor::leave(const WalkedDirectory&) {
  const Level done = levels_.back();
  levels_.pop_back();
  if (done.node) done.node->size = done.bytes;
  (levels_.empty() ? bytes_ : levels_.back().bytes) += done.bytes;
  return WalkStep::GoOn;
}

}  // namespace

std::optional<int64_t> countDirectory(CTree& tree, const std::string& path, TotalCounters& counters,
                                      TotalWatcher& watcher) {
  WalkOptions options;
  options.kernelFileSystems = KernelFileSystems::Pass;
  TotalVisitor visitor(tree, counters, watcher);
  if (DirectoryWalk(visitor, options).run(placeOf(path.c_str())) != WalkEnd::Whole)
    return std::nullopt;
  return visitor.bytes();
}
