#include "foundation/directory_walk.h"

#include <cerrno>
#include <utility>

#include "foundation/system.h"

namespace {

// A directory of usual size is listed without a look at the user.
constexpr int PiecesBeforeALook = 2;

}  // namespace

DirectoryWalk::DirectoryWalk(DirectoryVisitor& visitor, const WalkOptions& options)
    : visitor_(visitor), options_(options), stack_(options.mostOpen) {}

WalkEnd DirectoryWalk::run(const Place& directory) {
  top_ = directory;
  path_ = directory.path;
  WalkStep step = goInto(directory, options_.links);
  while (step != WalkStep::Stop && !levels_.empty()) {
    const Level& level = levels_.back();
    step = level.next < level.names.count() ? takeMember() : leave();
  }
  if (step != WalkStep::Stop) return WalkEnd::Whole;
  abandonAll();
  return lost_ ? WalkEnd::Lost : WalkEnd::Stopped;
}

WalkStep DirectoryWalk::takeMember() {
  if (visitor_.interrupted()) return WalkStep::Stop;
  const WalkedMember member = memberAt(levels_.back().next++);
  const WalkStep step = visitor_.member(member);
  if (step != WalkStep::GoOn || !member.isDirectory) return step;
  const bool throughLink = member.type == DT_LNK;
  return goInto(member.place, throughLink ? FollowLinks::Yes : FollowLinks::No);
}

WalkedMember DirectoryWalk::memberAt(size_t index) {
  const Level& level = levels_.back();
  const char* name = level.names.name(index);
  replaceTail(path_, level.pathLength, name);
  WalkedMember member{{stack_.fd(), name, path_.c_str()}, level.names.type(index)};
  member.depth = levels_.size() - 1;
  struct stat info;
  if (member.type == DT_UNKNOWN &&
      System::statAt(stack_.fd(), name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
    member.type = static_cast<unsigned char>(IFTODT(info.st_mode));
  }
  member.isDirectory = member.type == DT_DIR ||
                       (member.type == DT_LNK && options_.links == FollowLinks::Yes &&
                        System::statAt(stack_.fd(), name, &info, 0) == 0 && S_ISDIR(info.st_mode));
  return member;
}

WalkStep DirectoryWalk::goInto(const Place& place, FollowLinks links) {
  for (;;) {
    Level level;
    level.pathLength = path_.size();
    WalkFault fault = WalkFault::Opening;
    const int error = open(place, links, level, fault);
    if (interrupted_) return WalkStep::Stop;
    // What is told about next may be unmounted before it is tried again.
    if (error && fault != WalkFault::Listing) opening_.close();
    const WalkRetry retry = error ? visitor_.failed({fault, error, place}) : WalkRetry::Anyway;
    if (retry == WalkRetry::Again) continue;
    if (retry == WalkRetry::Stop) return WalkStep::Stop;
    if (retry == WalkRetry::Skip || (error && fault != WalkFault::Listing)) return WalkStep::GoOn;
    const WayUp wayUp = links == FollowLinks::Yes ? WayUp::AlsoByNames : WayUp::ByParent;
    stack_.push(opening_.release(), level.id.file, place, wayUp);
    levels_.push_back(std::move(level));
    const WalkStep step = visitor_.enter(innermost());
    if (step == WalkStep::GoOn) return step;
    levels_.pop_back();
    stack_.pop();
    return step;
  }
}

int DirectoryWalk::open(const Place& place, FollowLinks links, Level& level, WalkFault& fault) {
  fault = WalkFault::Opening;
  if (const int error = opening_.open(place.directory, place.name, links)) return error;
  if (const int error = lookAtOpened(opening_.fd(), level.id)) return error;
  if (mustPass(level, fault)) return EBUSY;
  if (isCircle(level)) {
    fault = WalkFault::Circle;
    return ELOOP;
  }
  return list(level, fault);
}

int DirectoryWalk::list(Level& level, WalkFault& fault) {
  fault = WalkFault::Listing;
  bool more = true;
  for (int pieces = 0; more; ++pieces) {
    if (pieces >= PiecesBeforeALook && visitor_.interrupted()) {
      interrupted_ = true;
      return EINTR;
    }
    if (const int error = level.names.readSome(opening_.fd(), more)) return error;
  }
  return 0;
}

bool DirectoryWalk::mustPass(const Level& level, WalkFault& fault) const {
  if (levels_.empty()) {
    fault = WalkFault::MountPoint;
    return options_.mounts == MountPoints::PassWithItem && isMountPoint(opening_.fd());
  }
  if (onSameMount(level.id, levels_.back().id)) return false;
  fault = WalkFault::MountPoint;
  if (options_.mounts != MountPoints::Enter) return true;
  fault = WalkFault::KernelFileSystem;
  return options_.kernelFileSystems == KernelFileSystems::Pass && isKernelFileSystem(opening_.fd());
}

// Only a link or a bind mount can lead back to where the walk came from.
bool DirectoryWalk::isCircle(const Level& level) const {
  if (levels_.empty()) return false;
  const bool possible =
      options_.links == FollowLinks::Yes || !onSameMount(level.id, levels_.back().id);
  return possible && stack_.holds(level.id.file);
}

WalkStep DirectoryWalk::leave() {
  path_.resize(levels_.back().pathLength);
  while (const int error = stack_.reopenParent()) {
    if (tellLost(error) == WalkRetry::Again) continue;
    lost_ = true;
    return WalkStep::Stop;
  }
  const WalkStep step = visitor_.leave(innermost());
  levels_.pop_back();
  stack_.pop();
  return step == WalkStep::Stop ? step : WalkStep::GoOn;
}

WalkRetry DirectoryWalk::tellLost(int error) {
  const std::string above = path_.substr(0, levels_[levels_.size() - 2].pathLength);
  return visitor_.failed({WalkFault::WayUp, error, placeOf(above.c_str())});
}

void DirectoryWalk::abandonAll() {
  while (!levels_.empty()) {
    path_.resize(levels_.back().pathLength);
    visitor_.abandon(innermost());
    levels_.pop_back();
    stack_.pop();
  }
}

WalkedDirectory DirectoryWalk::innermost() const {
  const Level& level = levels_.back();
  Place place{top_.directory, top_.name, path_.c_str()};
  if (levels_.size() > 1) {
    const Level& above = levels_[levels_.size() - 2];
    place.directory = stack_.parentFd();
    place.name = above.names.name(above.next - 1);
  }
  return {place, stack_.fd(), level.id.file, level.names, levels_.size() - 1};
}
