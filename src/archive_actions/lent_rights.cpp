#include "archive_actions/lent_rights.h"

#include "foundation/directory_walk.h"
#include "foundation/system.h"

namespace {

constexpr mode_t ModeBits = 07777;

using Modes = std::unordered_map<FileId, mode_t, FileIdHash>;

class Lender : public DirectoryVisitor {
 public:
  explicit Lender(Modes& modes) : modes_(modes) {}

 private:
  WalkStep enter(const WalkedDirectory& directory) override {
    struct stat info;
    if (System::fstat(directory.fd, &info) != 0 || (info.st_mode & S_IWUSR) != 0) {
      return WalkStep::GoOn;
    }
    const mode_t mode = info.st_mode & ModeBits;
    if (System::fchmod(directory.fd, mode | S_IWUSR) == 0) modes_.emplace(idOf(info), mode);
    return WalkStep::GoOn;
  }

  Modes& modes_;
};

class Taker : public DirectoryVisitor {
 public:
  explicit Taker(Modes& modes) : modes_(modes) {}

 private:
  WalkStep leave(const WalkedDirectory& directory) override {
    if (const auto lent = modes_.find(directory.id); lent != modes_.end()) {
      System::fchmod(directory.fd, lent->second);
      modes_.erase(lent);
    }
    return modes_.empty() ? WalkStep::Stop : WalkStep::GoOn;
  }

  Modes& modes_;
};

}  // namespace

void LentRights::lend(const Place& directory) {
  Lender lender(modes_);
  static_cast<void>(DirectoryWalk(lender, {.mounts = MountPoints::Pass}).run(directory));
}

// Where the target held much before, the walk ends with the last of them.
void LentRights::takeBack(const Place& directory) {
  if (modes_.empty()) return;
  Taker taker(modes_);
  static_cast<void>(DirectoryWalk(taker, {.mounts = MountPoints::Pass}).run(directory));
}
