#include "fileops/remove_directory.h"

#include "fileops/delete_tree.h"
#include "fileops/remove_empty_directory.h"
#include "foundation/names.h"
#include "foundation/place.h"
#include "options/options.h"

namespace {

bool mayDeleteTree(RunningOperation& operation, const Place& directory) {
  if ((operation.confirmationsOff & ConfirmationOff::DeleteTree) != 0) return true;
  if (operation.answers.deleteTree) return true;
  const TreeAnswer answer = operation.ui.askDeleteTree(directory.shown());
  operation.answers.deleteTree = answer == TreeAnswer::All;
  return answer != TreeAnswer::No;
}

Outcome removeWithContents(RunningOperation& operation, const Place& directory,
                           const wchar_t* pattern) {
  const Removal removal = tryRemovingDirectory(operation, directory, LookInside::Yes);
  if (!removal.full) return removal.outcome;
  if (!mayDeleteTree(operation, directory)) return Outcome::Cancelled;
  const Outcome outcome = DeleteTree(operation, pattern).run(directory);
  operation.ui.deletingDone();
  return outcome;
}

}  // namespace

Outcome removeDirectory(RunningOperation& operation, const Westring& path, const wchar_t* pattern) {
  if (sameName(path, ParentName)) return Outcome::LeftInPlace;
  const std::string bytes = bytePath(path);
  const std::string parent = byteParent(bytes);
  operation.descriptions.forget(bytes);
  const Outcome outcome = removeWithContents(operation, placeOf(bytes.c_str()), pattern);
  if (outcome == Outcome::Done) operation.descriptions.of(parent).erase(byteName(bytes.c_str()));
  return outcome;
}
