#include "fileops/delete_tree.h"

#include <cerrno>
#include <cstring>

#include "fileops/delete_file.h"
#include "fileops/description_file.h"
#include "fileops/error_dialog.h"
#include "fileops/operation.h"
#include "fileops/remove_directory.h"
#include "foundation/names.h"
#include "foundation/place.h"
#include "foundation/system.h"
#include "foundation/wild_match.h"

namespace {

constexpr size_t MostOpenLevels = 64;
constexpr wchar_t EveryName[] = L"*";

}  // namespace

struct DeleteTree::Level {
  OpenDirectory directory;
  FileId id;
  DirectoryNames names;
  size_t next = 0;
  size_t pathLength = 0;  // of the directory's own path in path_
  bool left = false;      // something in it is still there
  bool described = false;
  std::vector<size_t> gone;  // names whose lines go, while the directory is described
};

DeleteTree::DeleteTree(RunningOperation& operation, const wchar_t* pattern)
    : operation_(operation), pattern_(pattern), everything_(sameName(pattern_, EveryName)) {}

DeleteTree::~DeleteTree() = default;

Outcome DeleteTree::run(const Place& directory) {
  top_ = directory;
  path_ = directory.path;
  bool entered = false;
  Outcome outcome = enter(directory, entered);
  while (!levels_.empty()) {
    Level& level = *levels_.back();
    if (!entered && outcome == Outcome::Cancelled) {
      settleDescriptions(level, outcome);
      levels_.pop_back();
      continue;
    }
    if (!entered && outcome != Outcome::Done) level.left = true;
    entered = false;
    outcome = Outcome::Done;
    if (level.next == level.names.count()) {
      outcome = leave();
    } else if (operation_.cancelled()) {
      outcome = Outcome::Cancelled;
    } else {
      outcome = deleteMember(level, entered);
    }
  }
  return outcome;
}

// A directory that can't be listed may still be empty.
Outcome DeleteTree::enter(const Place& place, bool& entered) {
  for (;;) {
    auto level = std::make_unique<Level>();
    level->pathLength = path_.size();
    int error = level->directory.open(place.directory, place.name, FollowLinks::No);
    if (error == 0) error = level->directory.id(level->id);
    if (error == 0) error = level->names.read(level->directory.fd());
    if (error == 0) {
      for (size_t i = 0; i < level->names.count() && !level->described; ++i) {
        level->described = strcmp(level->names.name(i), DescriptionFileName) == 0;
      }
      levels_.push_back(std::move(level));
      const size_t depth = levels_.size();
      if (depth > MostOpenLevels) levels_[depth - 1 - MostOpenLevels]->directory.close();
      entered = true;
      return Outcome::Done;
    }
    if (System::unlinkAt(place.directory, place.name, AT_REMOVEDIR) == 0) return Outcome::Done;
    // Something else stands there since it was listed.
    if (error == ENOTDIR || error == ELOOP) {
      return deleteFile(operation_, place, DeleteMode::OneOfMany, nullptr);
    }
    const ErrorAnswer answer = showError(operation_.ui, error, place.shown());
    if (answer == ErrorAnswer::Cancel) return Outcome::Cancelled;
    if (answer == ErrorAnswer::Skip) return Outcome::Failed;
  }
}

Place DeleteTree::memberPlace(const Level& level, size_t index) {
  replaceTail(path_, level.pathLength, level.names.name(index));
  return {level.directory.fd(), level.names.name(index), path_.c_str()};
}

bool DeleteTree::isDirectory(const Level& level, size_t index) const {
  const unsigned char type = level.names.type(index);
  if (type != DT_UNKNOWN) return type == DT_DIR;
  struct stat info;
  return System::statAt(level.directory.fd(), level.names.name(index), &info,
                        AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(info.st_mode);
}

bool DeleteTree::fits(const char* name) const {
  return everything_ || wildMatch(pattern_.data(), decodeFileName(name).data());
}

Outcome DeleteTree::deleteMember(Level& level, bool& entered) {
  const size_t index = level.next++;
  const Place place = memberPlace(level, index);
  if (isDirectory(level, index)) return enter(place, entered);
  if (!fits(place.name)) return Outcome::LeftInPlace;
  const Outcome outcome = deleteFile(operation_, place, DeleteMode::OneOfMany, nullptr);
  if (outcome == Outcome::Done && level.described) level.gone.push_back(index);
  return outcome;
}

// The level above is found again through this one, which is still open.
bool DeleteTree::reopenParent(const Level& child) {
  if (levels_.size() < 2) return true;
  Level& parent = *levels_[levels_.size() - 2];
  if (parent.directory.isOpen()) return true;
  FileId id;
  if (parent.directory.open(child.directory.fd(), "..", FollowLinks::No) == 0 &&
      parent.directory.id(id) == 0 && id == parent.id) {
    return true;
  }
  parent.directory.close();
  parent.left = true;
  parent.next = parent.names.count();
  return false;
}

Outcome DeleteTree::leave() {
  Level& level = *levels_.back();
  path_.resize(level.pathLength);
  const bool known = reopenParent(level);
  Place place = top_;
  if (levels_.size() > 1) {
    const Level& parent = *levels_[levels_.size() - 2];
    place = {parent.directory.fd(), parent.names.name(parent.next - 1), path_.c_str()};
  }
  Outcome outcome = Outcome::LeftInPlace;
  if (known && !level.left) outcome = removeEmptyDirectory(operation_, place, WhenFull::Leave);
  settleDescriptions(level, outcome);
  levels_.pop_back();
  if (outcome == Outcome::Done && !levels_.empty() && levels_.back()->described) {
    levels_.back()->gone.push_back(levels_.back()->next - 1);
  }
  return outcome;
}

// Only where the directory stays is there anything left to describe.
void DeleteTree::settleDescriptions(Level& level, Outcome outcome) {
  if (outcome == Outcome::Done || level.gone.empty()) return;
  DescriptionFile descriptions(path_.substr(0, level.pathLength));
  for (const size_t index : level.gone) descriptions.erase(level.names.name(index));
  static_cast<void>(descriptions.flush());
}

void removeTreeQuietly(const Place& directory) {
  SilentUi silent;
  RunningOperation operation(silent);
  operation.interruptible = false;
  static_cast<void>(DeleteTree(operation, EveryName).run(directory));
}
