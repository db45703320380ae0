#include "fileops/remove_empty_directory.h"

#include <cerrno>

#include "fileops/delete_file.h"
#include "fileops/error_dialog.h"
#include "foundation/directory_names.h"
#include "foundation/mount_id.h"
#include "foundation/system.h"

namespace {

int removePlace(const Place& directory) {
  if (System::unlinkAt(directory.directory, directory.name, AT_REMOVEDIR) == 0) return 0;
  return errno == EEXIST ? ENOTEMPTY : errno;
}

bool holdsNames(const Place& place) {
  OpenDirectory directory;
  DirectoryNames names;
  if (directory.open(place.directory, place.name, FollowLinks::No) != 0) return false;
  static_cast<void>(names.read(directory.fd()));
  return names.count() > 0;
}

int removeOrFindFull(const Place& directory) {
  const int error = removePlace(directory);
  const bool known = error == 0 || error == ENOENT || error == ENOTDIR || error == ENOTEMPTY;
  if (error != 0 && isMountPoint(directory)) return EBUSY;
  return !known && holdsNames(directory) ? ENOTEMPTY : error;
}

Outcome tellMissing(RunningOperation& operation, const Place& directory) {
  static_cast<void>(operation.ui.ask(L"Directory does not exist, cannot delete", directory.shown(),
                                     AlertButtons::Ok, AlertColour::Error));
  operation.ui.directoryGone(directory.path);
  return Outcome::Failed;
}

enum class Next { Again, Ended };

Next settleError(RunningOperation& operation, const Place& directory, int error, Outcome& outcome) {
  const ErrorAnswer answer = showError(operation.ui, error, directory.shown());
  outcome = answer == ErrorAnswer::Cancel ? Outcome::Cancelled : Outcome::Failed;
  return answer == ErrorAnswer::Retry ? Next::Again : Next::Ended;
}

Next settleDenied(RunningOperation& operation, const Place& directory, Outcome& outcome) {
  outcome = Outcome::LeftInPlace;
  switch (askReadOnlyDirectory(operation, directory)) {
    case ReadOnlyAnswer::ShowError:
      return settleError(operation, directory, EACCES, outcome);
    case ReadOnlyAnswer::AskAgain:
      return Next::Again;
    case ReadOnlyAnswer::Cancel:
      outcome = Outcome::Cancelled;
      return Next::Ended;
    case ReadOnlyAnswer::GoOn:
      if (removePlace(directory) == 0) {
        outcome = Outcome::Done;
      } else {
        operation.answers.readOnly = StandingAnswer::Ask;
      }
      return Next::Ended;
    default:
      return Next::Ended;
  }
}

}  // namespace

Removal tryRemovingDirectory(RunningOperation& operation, const Place& directory,
                             LookInside lookInside) {
  for (;;) {
    const int error =
        lookInside == LookInside::Yes ? removeOrFindFull(directory) : removePlace(directory);
    Outcome outcome = Outcome::Done;
    Next next = Next::Ended;
    if (error == ENOTDIR) return {tellMissing(operation, directory)};
    if (error == ENOTEMPTY) return {Outcome::LeftInPlace, true};
    if (error == EACCES) {
      next = settleDenied(operation, directory, outcome);
    } else if (error != 0) {
      next = settleError(operation, directory, error, outcome);
    }
    if (next == Next::Again) continue;
    if (outcome == Outcome::Done) operation.ui.directoryGone(directory.path);
    return {outcome};
  }
}

Outcome removeEmptyDirectory(RunningOperation& operation, const Place& directory) {
  return tryRemovingDirectory(operation, directory, LookInside::No).outcome;
}
