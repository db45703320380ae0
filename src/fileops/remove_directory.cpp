#include "fileops/remove_directory.h"

#include <cerrno>

#include "fileops/delete_file.h"
#include "fileops/delete_tree.h"
#include "fileops/error_dialog.h"
#include "foundation/directory_names.h"
#include "foundation/names.h"
#include "foundation/place.h"
#include "foundation/system.h"
#include "options/options.h"

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

// A full directory is one to ask about, also where the system had another reason to refuse it.
int removeOrFindFull(const Place& directory) {
  const int error = removePlace(directory);
  const bool known = error == 0 || error == ENOENT || error == ENOTDIR || error == ENOTEMPTY;
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
        return Next::Ended;
      }
      operation.answers.readOnly = StandingAnswer::Ask;
      break;
    default:
      break;
  }
  outcome = Outcome::LeftInPlace;
  return Next::Ended;
}

}  // namespace

Outcome removeEmptyDirectory(RunningOperation& operation, const Place& directory, WhenFull whenFull,
                             const wchar_t* pattern) {
  for (;;) {
    const int error =
        whenFull == WhenFull::Ask ? removeOrFindFull(directory) : removePlace(directory);
    Outcome outcome = Outcome::Done;
    Next next = Next::Ended;
    if (error == ENOTDIR) return tellMissing(operation, directory);
    if (error == ENOTEMPTY) {
      if (whenFull == WhenFull::Leave) return Outcome::LeftInPlace;
      return deleteTreeAfterQuestion(operation, directory, pattern);
    }
    if (error == EACCES) {
      next = settleDenied(operation, directory, outcome);
    } else if (error != 0) {
      next = settleError(operation, directory, error, outcome);
    }
    if (next == Next::Again) continue;
    if (outcome == Outcome::Done) operation.ui.directoryGone(directory.path);
    return outcome;
  }
}

Outcome deleteTreeAfterQuestion(RunningOperation& operation, const Place& directory,
                                const wchar_t* pattern) {
  const bool asked = (operation.confirmationsOff & ConfirmationOff::DeleteTree) == 0 &&
                     !operation.answers.deleteTree;
  if (asked) {
    switch (operation.ui.askDeleteTree(directory.shown())) {
      case TreeAnswer::No:
        return Outcome::Cancelled;
      case TreeAnswer::All:
        operation.answers.deleteTree = true;
        break;
      case TreeAnswer::Yes:
        break;
    }
  }
  const Outcome outcome = DeleteTree(operation, pattern).run(directory);
  operation.ui.deletingDone();
  return outcome;
}

Outcome removeDirectory(RunningOperation& operation, const Westring& path, const wchar_t* pattern) {
  if (sameName(path, ParentName)) return Outcome::LeftInPlace;
  const std::string bytes = bytePath(path);
  const std::string parent = byteParent(bytes);
  operation.descriptions.forget(bytes);
  const Outcome outcome =
      removeEmptyDirectory(operation, placeOf(bytes.c_str()), WhenFull::Ask, pattern);
  if (outcome == Outcome::Done) operation.descriptions.of(parent).erase(byteName(bytes.c_str()));
  return outcome;
}
