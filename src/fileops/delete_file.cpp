#include "fileops/delete_file.h"

#include <cerrno>
#include <string>

#include "fileops/description_file.h"
#include "fileops/error_dialog.h"
#include "foundation/place.h"
#include "foundation/system.h"

namespace {

int unlinkPlace(const Place& file) {
  return System::unlinkAt(file.directory, file.name, 0) == 0 ? 0 : errno;
}

Outcome outcomeOf(ErrorAnswer answer) {
  return answer == ErrorAnswer::Cancel ? Outcome::Cancelled : Outcome::Failed;
}

// Nobody may write it, not even its owner.
bool isReadOnly(const Place& place) {
  struct stat info;
  return System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
         (info.st_mode & S_IWUSR) == 0;
}

ReadOnlyAnswer askReadOnly(RunningOperation& operation, const Place& place, const char* question) {
  const int answer = operation.ui.ask(Westring(question), place.shown(), AlertButtons::OverwriteOne,
                                      AlertColour::Error);
  switch (answer) {
    case Answer::All:
      operation.answers.readOnly = StandingAnswer::All;
      return ReadOnlyAnswer::GoOn;
    case Answer::Yes:
      return ReadOnlyAnswer::GoOn;
    case Answer::None:
      return ReadOnlyAnswer::AskAgain;
    case Answer::Cancel:
      return ReadOnlyAnswer::Cancel;
    default:
      return ReadOnlyAnswer::Leave;
  }
}

// The step after "go on". What protects a file here is its directory, so only a second try can
// tell.
Outcome removeAfterAll(RunningOperation& operation, const Place& file) {
  if (unlinkPlace(file) == 0) return Outcome::Done;
  operation.answers.readOnly = StandingAnswer::Ask;
  return Outcome::LeftInPlace;
}

// Gives no outcome for "Retry".
bool settleError(RunningOperation& operation, const Place& file, int error, Outcome& outcome) {
  const ErrorAnswer answer = showError(operation.ui, error, file.shown());
  outcome = outcomeOf(answer);
  return answer != ErrorAnswer::Retry;
}

bool settleDenied(RunningOperation& operation, const Place& file, Outcome& outcome) {
  switch (askReadOnlyFile(operation, file)) {
    case ReadOnlyAnswer::ShowError:
      return settleError(operation, file, EACCES, outcome);
    case ReadOnlyAnswer::GoOn:
      outcome = removeAfterAll(operation, file);
      return true;
    case ReadOnlyAnswer::Cancel:
      outcome = Outcome::Cancelled;
      return true;
    default:
      outcome = Outcome::LeftInPlace;
      return true;
  }
}

Outcome deleteLoop(RunningOperation& operation, const Place& file, DeleteMode mode) {
  const auto window = mode == DeleteMode::One || mode == DeleteMode::OneOfMany
                          ? DeleteWindowUse::Open
                          : DeleteWindowUse::IfOpen;
  for (;;) {
    operation.ui.deleting(file.path, window);
    const int error = unlinkPlace(file);
    if (error == 0) return Outcome::Done;
    if (mode == DeleteMode::Forced) return Outcome::LeftInPlace;
    Outcome outcome = Outcome::LeftInPlace;
    const bool settled = error == EACCES ? settleDenied(operation, file, outcome)
                                         : settleError(operation, file, error, outcome);
    if (settled) return outcome;
  }
}

}  // namespace

ReadOnlyAnswer askReadOnlyFile(RunningOperation& operation, const Place& file) {
  if (operation.answers.readOnly == StandingAnswer::None) return ReadOnlyAnswer::Leave;
  if (operation.answers.readOnly == StandingAnswer::All) return ReadOnlyAnswer::GoOn;
  if (!isReadOnly(file)) return ReadOnlyAnswer::ShowError;
  const ReadOnlyAnswer answer = askReadOnly(operation, file, "File is Read Only, Delete anyway?");
  if (answer != ReadOnlyAnswer::AskAgain) return answer;
  operation.answers.readOnly = StandingAnswer::None;
  return ReadOnlyAnswer::Leave;
}

ReadOnlyAnswer askReadOnlyDirectory(RunningOperation& operation, const Place& directory) {
  if (!isReadOnly(directory)) return ReadOnlyAnswer::ShowError;
  if (operation.answers.readOnly == StandingAnswer::All) return ReadOnlyAnswer::GoOn;
  return askReadOnly(operation, directory, "Directory is Read Only, Delete anyway?");
}

Outcome deleteFile(RunningOperation& operation, const Place& file, DeleteMode mode,
                   DescriptionFile* descriptions) {
  const Outcome outcome = deleteLoop(operation, file, mode);
  if (outcome == Outcome::Done && descriptions) descriptions->erase(byteName(file.name));
  if (mode == DeleteMode::One) operation.ui.deletingDone();
  return outcome;
}

Outcome deleteFile(RunningOperation& operation, const Westring& path, DeleteMode mode) {
  const std::string bytes = bytePath(path);
  const std::string parent = byteParent(bytes);
  if (isDescriptionFileName(byteName(bytes.c_str()))) operation.descriptions.forget(parent);
  return deleteFile(operation, placeOf(bytes.c_str()), mode, &operation.descriptions.of(parent));
}
