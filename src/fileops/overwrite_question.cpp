#include "fileops/overwrite_question.h"

#include <cstring>

#include "foundation/dos_time.h"
#include "foundation/system.h"

namespace {

constexpr int AllOlderByLetter = 'o';

bool timeOf(const Place& place, DosTime& words) {
  struct stat info;
  if (System::statAt(place.directory, place.name, &info, 0) < 0) return false;
  words = timeToDos(info.st_mtime);
  return true;
}

OverwriteDecision askOverwrite(RunningOperation& operation, TransferKind kind,
                               const Westring& target) {
  const AlertButtons buttons =
      kind == TransferKind::Copy ? AlertButtons::OverwriteMany : AlertButtons::OverwriteOne;
  OverwriteMode& mode = operation.answers.overwrite;
  switch (
      operation.ui.ask(L"File already exists, Overwrite?", target, buttons, AlertColour::Message)) {
    case Answer::Yes:
      return OverwriteDecision::Replace;
    case Answer::Cancel:
      return OverwriteDecision::Cancel;
    case Answer::All:
      mode = OverwriteMode::All;
      return OverwriteDecision::Replace;
    case Answer::None:
      mode = OverwriteMode::None;
      return OverwriteDecision::Leave;
    case Answer::AllOlder:
    case AllOlderByLetter:
      mode = OverwriteMode::AllOlder;
      return OverwriteDecision::CompareDates;
    default:
      return OverwriteDecision::Leave;
  }
}

}  // namespace

OverwriteDecision decideOverwrite(RunningOperation& operation, TransferKind kind,
                                  const Westring& target, MadeBy madeBy) {
  if (madeBy == MadeBy::Others) {
    if (operation.answers.overwrite == OverwriteMode::All) return OverwriteDecision::Replace;
    if (operation.answers.overwrite == OverwriteMode::None) return OverwriteDecision::Leave;
  }
  return askOverwrite(operation, kind, target);
}

OpenFileDecision decideOpenFile(RunningOperation& operation, const Westring& source) {
  StandingAnswer& standing = operation.answers.openFile;
  if (standing == StandingAnswer::None) return OpenFileDecision::Leave;
  switch (operation.ui.ask(L"File is open for writing, copy anyway?", source,
                           AlertButtons::OverwriteOne, AlertColour::Message)) {
    case Answer::All:
      standing = StandingAnswer::All;
      return OpenFileDecision::Copy;
    case Answer::Yes:
      return OpenFileDecision::Copy;
    case Answer::Cancel:
      return OpenFileDecision::Cancel;
    case Answer::None:
      standing = StandingAnswer::None;
      return OpenFileDecision::Leave;
    default:
      return OpenFileDecision::Leave;
  }
}

MergeDecision decideMerge(RunningOperation& operation, const Place& source) {
  if (operation.answers.mergeAll || strchr(source.path, '/')) return MergeDecision::Merge;
  switch (operation.ui.ask(L"Directory already exists, merge with source?", source.shown(),
                           AlertButtons::OverwriteOne, AlertColour::Message)) {
    case Answer::All:
      operation.answers.mergeAll = true;
      return MergeDecision::Merge;
    case Answer::Yes:
      return MergeDecision::Merge;
    case Answer::Cancel:
      return MergeDecision::Cancel;
    case Answer::Skip:
      return MergeDecision::Decline;
    default:
      return MergeDecision::Leave;
  }
}

TargetAge compareAges(const Place& target, const Place& source) {
  DosTime targetTime;
  DosTime sourceTime;
  if (!timeOf(source, sourceTime) || !timeOf(target, targetTime)) return TargetAge::Unknown;
  return compareDosTime(sourceTime, targetTime) <= 0 ? TargetAge::NotOlder : TargetAge::Older;
}
