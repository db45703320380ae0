#include "language/private_tree.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "foundation/system.h"

namespace {

constexpr mode_t OwnerAll = 0700;
constexpr int OpenFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A directory on the way down. The way back up is by "..", checked against what was there before.
struct Level {
  std::string name;
  dev_t device = 0;
  ino_t inode = 0;
  std::vector<std::string> subdirectories;  // still to be deleted
};

class TreeRemover {
 public:
  TreeRemover(int parent, const char* name) : parent_(parent), root_(name) {}

  void run() {
    if (!enter(parent_, root_)) return;
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.subdirectories.empty()) {
        if (!leave()) return;
        continue;
      }
      const std::string next = std::move(level.subdirectories.back());
      level.subdirectories.pop_back();
      enter(current_.get(), next);
    }
  }

 private:
  // Goes into the directory and deletes all in it that is no directory.
  bool enter(int parent, const std::string& name) {
    Descriptor directory(System::openAt(parent, name.c_str(), OpenFlags));
    struct stat info;
    if (!directory.valid() || System::fstat(directory.get(), &info) != 0) return false;
    if (info.st_uid != geteuid()) return false;
    if (!levels_.empty() && info.st_dev != levels_.front().device) return false;
    System::fchmod(directory.get(), OwnerAll);
    Level level{name, info.st_dev, info.st_ino, {}};
    deleteFiles(directory.get(), level.subdirectories);
    levels_.push_back(std::move(level));
    current_ = std::move(directory);
    return true;
  }

  static void deleteFiles(int directory, std::vector<std::string>& subdirectories) {
    std::vector<std::string> names;
    Descriptor copy(System::openAt(directory, ".", OpenFlags));
    if (!copy.valid()) return;
    DIR* listing = System::openDirectoryFd(copy.get());
    if (listing == nullptr) return;
    copy.release();
    while (const dirent* item = System::readDirectory(listing)) names.push_back(item->d_name);
    System::closeDirectory(listing);
    for (std::string& name : names) {
      if (name == "." || name == "..") continue;
      struct stat info;
      if (System::statAt(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) continue;
      if (S_ISDIR(info.st_mode)) {
        subdirectories.push_back(std::move(name));
      } else {
        System::unlinkAt(directory, name.c_str(), 0);
      }
    }
  }

  // Goes up one level and removes the directory that was left.
  bool leave() {
    const std::string name = levels_.back().name;
    levels_.pop_back();
    if (levels_.empty()) {
      current_.reset();
      System::unlinkAt(parent_, name.c_str(), AT_REMOVEDIR);
      return true;
    }
    Descriptor up(System::openAt(current_.get(), "..", OpenFlags));
    struct stat info;
    if (!up.valid() || System::fstat(up.get(), &info) != 0) return false;
    if (info.st_dev != levels_.back().device || info.st_ino != levels_.back().inode) return false;
    current_ = std::move(up);
    System::unlinkAt(current_.get(), name.c_str(), AT_REMOVEDIR);
    return true;
  }

  int parent_;
  std::string root_;
  std::vector<Level> levels_;
  Descriptor current_;  // of the last level
};

}  // namespace

void removePrivateTree(int parentDirectory, const char* name) {
  struct stat info;
  if (System::statAt(parentDirectory, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return;
  if (info.st_uid != geteuid()) return;
  if (S_ISDIR(info.st_mode)) {
    TreeRemover(parentDirectory, name).run();
  } else {
    System::unlinkAt(parentDirectory, name, 0);
  }
}
