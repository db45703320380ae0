#include "language/private_tree.h"

#include <unistd.h>

#include <cerrno>

#include "foundation/directory_walk.h"
#include "foundation/system.h"

namespace {

constexpr mode_t OwnerAll = 0700;

class TreeRemover : public DirectoryVisitor {
 public:
  int error() const { return error_; }  // the first one, or 0

 private:
  void note(int error) {
    if (error_ == 0) error_ = error;
  }
  void remove(const Place& place, int flags) {
    if (System::unlinkAt(place.directory, place.name, flags) != 0) note(errno);
  }
  WalkStep enter(const WalkedDirectory& directory) override {
    struct stat info;
    const int error = System::fstat(directory.fd, &info) != 0 ? errno : 0;
    if (error != 0 || info.st_uid != geteuid()) {
      note(error != 0 ? error : EPERM);
      return WalkStep::Skip;
    }
    System::fchmod(directory.fd, OwnerAll);
    return WalkStep::GoOn;
  }
  WalkStep member(const WalkedMember& member) override {
    if (!member.isDirectory) remove(member.place, 0);
    return WalkStep::GoOn;
  }
  WalkStep leave(const WalkedDirectory& directory) override {
    remove(directory.place, AT_REMOVEDIR);
    return WalkStep::GoOn;
  }
  WalkRetry failed(const WalkError& fault) override {
    note(fault.error);
    return WalkRetry::Skip;
  }

  int error_ = 0;
};

}  // namespace

int removePrivateTree(int parentDirectory, const char* name) {
  struct stat info;
  if (System::statAt(parentDirectory, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (info.st_uid != geteuid()) return EPERM;
  if (!S_ISDIR(info.st_mode)) {
    return System::unlinkAt(parentDirectory, name, 0) == 0 ? 0 : errno;
  }
  TreeRemover remover;
  static_cast<void>(
      DirectoryWalk(remover, {.mounts = MountPoints::Pass}).run({parentDirectory, name, name}));
  return remover.error();
}
