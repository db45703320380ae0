#include "fileops/directory_size.h"

#include "foundation/directory_walk.h"
#include "foundation/place.h"
#include "foundation/system.h"

namespace {

class SizeVisitor : public DirectoryVisitor {
 public:
  explicit SizeVisitor(RunningOperation& operation) : operation_(operation) {}

  int64_t bytes() const { return bytes_; }

 private:
  WalkStep member(const WalkedMember& member) override {
    struct stat info;
    if (member.type == DT_REG && System::statAt(member.place.directory, member.place.name, &info,
                                                AT_SYMLINK_NOFOLLOW) == 0) {
      bytes_ += info.st_size;
    }
    return WalkStep::GoOn;
  }
  WalkRetry failed(const WalkError& error) override {
    return error.fault == WalkFault::Listing ? WalkRetry::Anyway : WalkRetry::Skip;
  }
  bool interrupted() override { return operation_.cancelled(); }

  RunningOperation& operation_;
  int64_t bytes_ = 0;
};

}  // namespace

std::optional<int64_t> directorySize(RunningOperation& operation, const Place& directory) {
  SizeVisitor visitor(operation);
  if (DirectoryWalk(visitor).run(directory) == WalkEnd::Stopped) return std::nullopt;
  return visitor.bytes();
}
