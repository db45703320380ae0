#include "language/private_tree.h"

#include <unistd.h>

#include "foundation/directory_walk.h"
#include "foundation/system.h"

namespace {

constexpr mode_t OwnerAll = 0700;

class TreeRemover : public DirectoryVisitor {
 private:
  WalkStep enter(const WalkedDirectory& directory) override {
    struct stat info;
    if (System::fstat(directory.fd, &info) != 0 || info.st_uid != geteuid()) return WalkStep::Skip;
    System::fchmod(directory.fd, OwnerAll);
    return WalkStep::GoOn;
  }
  WalkStep member(const WalkedMember& member) override {
    if (!member.isDirectory) System::unlinkAt(member.place.directory, member.place.name, 0);
    return WalkStep::GoOn;
  }
  WalkStep leave(const WalkedDirectory& directory) override {
    System::unlinkAt(directory.place.directory, directory.place.name, AT_REMOVEDIR);
    return WalkStep::GoOn;
  }
};

}  // namespace

void removePrivateTree(int parentDirectory, const char* name) {
  struct stat info;
  if (System::statAt(parentDirectory, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return;
  if (info.st_uid != geteuid()) return;
  if (!S_ISDIR(info.st_mode)) {
    System::unlinkAt(parentDirectory, name, 0);
    return;
  }
  TreeRemover remover;
  static_cast<void>(
      DirectoryWalk(remover, {.mounts = MountPoints::Pass}).run({parentDirectory, name, name}));
}
