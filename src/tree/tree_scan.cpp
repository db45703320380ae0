#include "tree/tree_scan.h"

#include <sys/stat.h>

#include <cerrno>

#include "foundation/directory_names.h"
#include "foundation/mount_id.h"
#include "foundation/object_store.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

// The directories that are still to be looked through, first in, first out; the nodes belong to
// their tree.
class ScanQueue : public TObjectStore<TREENODE> {
 public:
  ~ScanQueue() override { clear(); }

 protected:
  void deleteEntry(TREENODE*) override {}
};

enum class Found { Nothing, Leaf, Directory };

class Scan {
 public:
  Scan(CTree& tree, ScanWatcher& watcher, const std::string& base)
      : tree_(tree), watcher_(watcher), base_(base) {}

  ScanEnd run();

 private:
  bool openDirectory(const TREENODE* node);
  void list(TREENODE* node);
  bool takeNames(TREENODE* node);
  Found look(size_t index) const;

  CTree& tree_;
  ScanWatcher& watcher_;
  const std::string& base_;
  ScanQueue queue_;
  OpenDirectory directory_;
  DirectoryNames names_;
  int64_t count_ = 1;
  bool interrupted_ = false;
};

ScanEnd Scan::run() {
  queue_.add(tree_.makeRoot());
  for (int next = 0; next < queue_.count() && !interrupted_; ++next) {
    watcher_.counted(count_);
    interrupted_ = watcher_.interrupted();
    TREENODE* node = queue_.at(next);
    if (!interrupted_ && openDirectory(node)) list(node);
  }
  if (interrupted_) {
    tree_.dropRoot();
    return ScanEnd::Interrupted;
  }
  tree_.loaded = true;
  tree_.dirty = true;
  return ScanEnd::Whole;
}

bool Scan::openDirectory(const TREENODE* node) {
  std::string path = base_;
  if (node != tree_.root() || path.empty()) path += toUtf8(pathOfNode(node)).data();
  const FollowLinks links = node == tree_.root() ? FollowLinks::Yes : FollowLinks::No;
  return directory_.open(AT_FDCWD, path.c_str(), links) == 0 &&
         !isKernelFileSystem(directory_.fd());
}

void Scan::list(TREENODE* node) {
  constexpr int dots = 2;
  count_ += dots;
  bool more = true;
  while (more && !interrupted_) {
    names_.clear();
    if (names_.readSome(directory_.fd(), more) != 0) return;
    interrupted_ = !takeNames(node);
  }
}

// False when the scan has to end.
bool Scan::takeNames(TREENODE* node) {
  constexpr size_t namesBetweenLooks = 256;
  for (size_t i = 0; i < names_.count(); ++i) {
    if (i % namesBetweenLooks == namesBetweenLooks - 1 && watcher_.interrupted()) return false;
    const Found found = look(i);
    if (found == Found::Nothing) continue;
    ++count_;
    TREENODE* child = tree_.appendChild(node, decodeFileName(names_.name(i)));
    if (!child) continue;
    if (found == Found::Directory && child->level < CTree::DeepestLevel) queue_.add(child);
  }
  watcher_.counted(count_);
  return !watcher_.interrupted();
}

Found Scan::look(size_t index) const {
  struct stat info;
  unsigned char type = names_.type(index);
  const char* name = names_.name(index);
  if (type == DT_UNKNOWN) {
    if (System::statAt(directory_.fd(), name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
      return Found::Nothing;
    }
    type = static_cast<unsigned char>(IFTODT(info.st_mode));
  }
  if (type == DT_DIR) return Found::Directory;
  if (type != DT_LNK) return Found::Nothing;
  const bool leadsToDirectory =
      System::statAt(directory_.fd(), name, &info, 0) == 0 && S_ISDIR(info.st_mode);
  return leadsToDirectory ? Found::Leaf : Found::Nothing;
}

}  // namespace

ScanEnd scanTree(CTree& tree, ScanWatcher& watcher, const std::string& base) {
  return Scan(tree, watcher, base).run();
}

bool isLeafOnDisk(const Westring& path) {
  OpenDirectory directory;
  const int error = directory.open(AT_FDCWD, toUtf8(path).data(), FollowLinks::No);
  if (error != 0) return error == ELOOP || error == ENOTDIR;
  return isKernelFileSystem(directory.fd());
}
