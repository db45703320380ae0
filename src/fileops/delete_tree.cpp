#include "fileops/delete_tree.h"

#include <cerrno>
#include <cstring>

#include "fileops/delete_file.h"
#include "fileops/description_file.h"
#include "fileops/error_dialog.h"
#include "fileops/notices.h"
#include "fileops/remove_empty_directory.h"
#include "foundation/names.h"
#include "foundation/system.h"
#include "foundation/wild_match.h"

namespace {

constexpr wchar_t EveryName[] = L"*";

bool isDescribed(const DirectoryNames& names) {
  for (size_t i = 0; i < names.count(); ++i) {
    if (strcmp(names.name(i), DescriptionFileName) == 0) return true;
  }
  return false;
}

}  // namespace

DeleteTree::DeleteTree(RunningOperation& operation, const wchar_t* pattern)
    : operation_(operation), pattern_(pattern), everything_(sameName(pattern_, EveryName)) {}

Outcome DeleteTree::run(const Place& directory) {
  outcome_ = Outcome::Done;
  switch (DirectoryWalk(*this, {.mounts = MountPoints::PassWithItem}).run(directory)) {
    case WalkEnd::Stopped:
      return Outcome::Cancelled;
    case WalkEnd::Lost:
      return Outcome::Failed;
    default:
      return outcome_;
  }
}

WalkStep DeleteTree::enter(const WalkedDirectory& directory) {
  levels_.emplace_back().described = isDescribed(directory.names);
  return WalkStep::GoOn;
}

WalkStep DeleteTree::member(const WalkedMember& member) {
  if (member.isDirectory) return WalkStep::GoOn;
  if (everything_ && strcmp(member.place.name, DescriptionFileName) == 0) {
    levels_.back().descriptionsGoLast = true;
    return WalkStep::GoOn;
  }
  if (!fits(member.place.name)) return note(member.place.name, Outcome::LeftInPlace);
  return note(member.place.name,
              deleteFile(operation_, member.place, DeleteMode::OneOfMany, nullptr));
}

WalkStep DeleteTree::leave(const WalkedDirectory& directory) {
  const Outcome outcome = levels_.back().left ? Outcome::LeftInPlace : remove(directory);
  if (outcome != Outcome::Done) settleDescriptions(directory);
  levels_.pop_back();
  return note(directory.place.name, outcome);
}

// Until nothing is left that could stay, the lines about it are kept.
Outcome DeleteTree::remove(const WalkedDirectory& directory) {
  if (levels_.back().descriptionsGoLast) {
    std::string path = directory.place.path;
    replaceTail(path, path.size(), DescriptionFileName);
    const Place descriptions{directory.fd, DescriptionFileName, path.c_str()};
    const Outcome outcome = deleteFile(operation_, descriptions, DeleteMode::OneOfMany, nullptr);
    if (outcome != Outcome::Done) return outcome;
  }
  return removeEmptyDirectory(operation_, directory.place);
}

void DeleteTree::abandon(const WalkedDirectory& directory) {
  settleDescriptions(directory);
  levels_.pop_back();
}

// A directory that can't be listed may still be empty.
WalkRetry DeleteTree::failed(const WalkError& error) {
  const Place& place = error.place;
  if (error.fault != WalkFault::Opening && error.fault != WalkFault::Listing) return tell(error);
  if (System::unlinkAt(place.directory, place.name, AT_REMOVEDIR) == 0) {
    operation_.ui.directoryGone(place.path);
    static_cast<void>(note(place.name, Outcome::Done));
    return WalkRetry::Skip;
  }
  // Something else stands there since it was listed.
  if (error.error == ENOTDIR || error.error == ELOOP) {
    const WalkStep step =
        note(place.name, deleteFile(operation_, place, DeleteMode::OneOfMany, nullptr));
    return step == WalkStep::Stop ? WalkRetry::Stop : WalkRetry::Skip;
  }
  return tell(error);
}

WalkRetry DeleteTree::tell(const WalkError& error) {
  switch (showError(operation_.ui, error.error, error.place.shown())) {
    case ErrorAnswer::Retry:
      return WalkRetry::Again;
    case ErrorAnswer::Cancel:
      return WalkRetry::Stop;
    default:
      static_cast<void>(note(error.place.name, Outcome::Failed));
      return WalkRetry::Skip;
  }
}

// What a member came to, or the directory itself when no level is left.
WalkStep DeleteTree::note(const char* name, Outcome outcome) {
  if (levels_.empty()) {
    outcome_ = outcome;
  } else if (outcome != Outcome::Done) {
    levels_.back().left = true;
  } else if (levels_.back().described) {
    levels_.back().gone.emplace_back(name);
  }
  return outcome == Outcome::Cancelled ? WalkStep::Stop : WalkStep::GoOn;
}

bool DeleteTree::fits(const char* name) const {
  return everything_ || wildMatch(pattern_.data(), decodeFileName(name).data());
}

// Only where the directory stays is there anything left to describe.
void DeleteTree::settleDescriptions(const WalkedDirectory& directory) {
  if (levels_.back().gone.empty()) return;
  DescriptionFile descriptions(directory.place.path);
  for (const std::string& name : levels_.back().gone) descriptions.erase(name.c_str());
  static_cast<void>(flushOrTell(operation_, descriptions));
}

void removeTreeQuietly(const Place& directory) {
  SilentUi silent;
  RunningOperation operation(silent);
  operation.interruptible = false;
  static_cast<void>(DeleteTree(operation, EveryName).run(directory));
}
