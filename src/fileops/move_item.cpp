#include <unistd.h>

#include "fileops/error_dialog.h"
#include "fileops/overwrite_question.h"
#include "fileops/rename_over_file.h"
#include "fileops/transfer_level.h"
#include "foundation/break_state.h"
#include "foundation/place.h"
#include "foundation/same_place.h"

// One item by renaming, as long as source and target are on one device.

namespace {

int renamePlace(const Place& from, const Place& to) {
  return System::renameAtNoReplace(from.directory, from.name, to.directory, to.name) == 0 ? 0
                                                                                          : errno;
}

// Over what is there. A directory can't be renamed over a file in one step.
int renameOver(RunningOperation& operation, const Place& from, const Place& to) {
  if (System::renameAt(from.directory, from.name, to.directory, to.name) == 0) return 0;
  if (errno != ENOTDIR) return errno;
  return renameDirectoryOverFile(operation, from, to);
}

bool lookAt(const Place& place, struct stat& info) {
  return System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) == 0;
}

// It takes content, and is never replaced by a file.
bool leadsToDevice(const Place& place) {
  struct stat info;
  return System::statAt(place.directory, place.name, &info, 0) == 0 && isSpecialFile(info.st_mode);
}

// A rename is also refused by the directory that something comes out of, and by a directory that
// would get another parent.
bool takesNames(const Place& place) {
  const std::string parent = place.directory == AT_FDCWD ? byteParent(place.name) : ".";
  return System::accessAt(place.directory, parent.c_str(), W_OK | X_OK) == 0;
}

}  // namespace

Transfer::Verdict Transfer::moveItem(const Item& item) {
  Attempt attempt;
  for (;;) {
    if (breakRequested()) return decided(Outcome::Cancelled);
    const bool replace = attempt.allowed != Allowed::No;
    const int error = replace ? renameOver(operation_, item.source, item.target)
                              : renamePlace(item.source, item.target);
    if (error == 0) {
      noteMade(item);
      if (replace) dropOldDescription(item);
      takeDescription(item);
      return decided(Outcome::Done);
    }
    const Verdict verdict = settleRename(item, attempt, error);
    if (verdict.kind != Verdict::Kind::Again) return verdict;
  }
}

Transfer::Verdict Transfer::settleRename(const Item& item, Attempt& attempt, int error) {
  if (error == EXDEV) return moveByCopy(item);
  if (error == EEXIST) return settleOccupied(item, attempt);
  const bool replacing = attempt.allowed != Allowed::No;
  if (error == EACCES && replacing && !takesNames(item.target)) return settleRefused(item, attempt);
  struct stat source;
  const bool present = lookAt(item.source, source);
  if (error == EINVAL && present && S_ISDIR(source.st_mode) &&
      liesInside(item.source.path, idOf(source), item.target.path)) {
    const bool ends = refuseIntoItself(item).status == CopyStatus::Cancelled;
    return decided(ends ? Outcome::Cancelled : Outcome::Failed);
  }
  const bool targetMissing = error == ENOENT && present;
  return settleFailure(item, targetMissing ? targetFailure(error) : sourceFailure(error));
}

Transfer::Verdict Transfer::moveByCopy(const Item& item) {
  Item other = item;
  other.method = Method::MoveByCopy;
  return copyItem(other);
}

Transfer::Verdict Transfer::settleOccupied(const Item& item, Attempt& attempt) {
  if (isOtherSpelling(item.source, item.target)) {
    attempt.allowed = Allowed::ByAnswer;
    return again();
  }
  struct stat source;
  if (!lookAt(item.source, source)) return settleFailure(item, sourceFailure(errno));
  if (const int error = lookAtTarget(item, attempt)) {
    return settleFailure(item, {CopyStatus::TargetFailed, error});
  }
  if (!attempt.target) return again();  // it went away in the meantime
  if (isSameFile(item.source, item.target)) return tellSame(item);
  if (S_ISDIR(source.st_mode) && attempt.targetIsDirectory) {
    return mergeInto(item, attempt, source);
  }
  if (S_ISREG(source.st_mode) && leadsToDevice(item.target)) return moveByCopy(item);
  return decideReplacing(item, attempt);
}

Transfer::Verdict Transfer::tellSame(const Item& item) {
  const ErrorAnswer answer =
      showError(operation_.ui, EEXIST, item.source.shown(), item.target.shown());
  if (answer == ErrorAnswer::Retry) return again();
  return decided(answer == ErrorAnswer::Cancel ? Outcome::Cancelled : Outcome::Failed);
}

Transfer::Verdict Transfer::mergeInto(const Item& item, const Attempt& attempt,
                                      const struct stat& source) {
  Attempt unused;
  return settleCopy(item, unused, enterDirectory(item, attempt, source));
}

Transfer::Verdict Transfer::decideReplacing(const Item& item, Attempt& attempt) {
  switch (askOnce(item, attempt)) {
    case OverwriteDecision::Replace:
      attempt.allowed = Allowed::ByAnswer;
      return again();
    case OverwriteDecision::CompareDates:
      if (compareAges(item.target, item.source) != TargetAge::Older) {
        return decided(Outcome::LeftInPlace);
      }
      attempt.allowed = Allowed::ByDate;
      return again();
    case OverwriteDecision::Cancel:
      return decided(Outcome::Cancelled);
    default:
      return decided(Outcome::LeftInPlace);
  }
}
