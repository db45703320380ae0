#include "fileops/delete_file.h"
#include "fileops/error_dialog.h"
#include "fileops/overwrite_question.h"
#include "fileops/transfer_level.h"
#include "foundation/place.h"
#include "foundation/same_place.h"

// One item by copying: attempts and questions until it is decided.

namespace {

// A link that leads nowhere is copied as what it is.
bool leadsNowhere(int error) {
  return error == ENOENT || error == ELOOP || error == ENOTDIR;
}

bool hasNoRoom(int error) {
  return error == ENOSPC || error == EDQUOT;
}

}  // namespace

Transfer::Verdict Transfer::copyItem(const Item& item) {
  Attempt attempt;
  attempt.openAnyway = operation_.answers.openFile == StandingAnswer::All;
  if (operation_.answers.overwrite == OverwriteMode::All) {
    attempt.allowed = Allowed::ByAnswer;
    attempt.inPlace = true;
  }
  for (;;) {
    const Verdict verdict = settleCopy(item, attempt, attemptCopy(item, attempt));
    if (verdict.kind != Verdict::Kind::Again) return verdict;
  }
}

int Transfer::lookAtSource(const Item& item, struct stat& info) {
  const Place& place = item.source;
  if (item.method == Method::Copy) {
    if (System::statAt(place.directory, place.name, &info, 0) == 0) return 0;
    const int error = errno;
    if (!leadsNowhere(error)) return error;
    if (System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) < 0) return errno;
    return S_ISLNK(info.st_mode) ? 0 : error;
  }
  return System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

int Transfer::lookAtTarget(const Item& item, Attempt& attempt) {
  const Place& place = item.target;
  struct stat info;
  attempt.target.reset();
  attempt.targetIsDirectory = false;
  if (System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) < 0) {
    return errno == ENOENT ? 0 : errno;
  }
  attempt.target = info;
  if (S_ISLNK(info.st_mode) && System::statAt(place.directory, place.name, &info, 0) < 0) return 0;
  attempt.targetIsDirectory = S_ISDIR(info.st_mode);
  return 0;
}

MadeBy Transfer::makerOf(const Item& item, const Attempt& attempt) const {
  const bool own = item.inOwnDirectory || (attempt.target && made_.contains(idOf(*attempt.target)));
  return own ? MadeBy::ThisCommand : MadeBy::Others;
}

OverwriteDecision Transfer::askOnce(const Item& item, Attempt& attempt) {
  const MadeBy maker = makerOf(item, attempt);
  attempt.asked = true;
  return decideOverwrite(operation_, kindOf(item), item.target.shown(), maker);
}

// In a directory of the command's own everything counts as made by it.
void Transfer::noteMade(const Item& item) {
  const Place& place = item.target;
  struct stat info;
  if (item.inOwnDirectory) return;
  if (System::statAt(place.directory, place.name, &info, AT_SYMLINK_NOFOLLOW) < 0) return;
  made_.insert(idOf(info));
}

CopyRequest Transfer::requestFor(const Item& item, const Attempt& attempt) const {
  CopyRequest request;
  request.source = item.source;
  request.target = item.target;
  request.kind = kindOf(item);
  request.making = item.making;
  if (attempt.allowed != Allowed::No) request.overwrite = Permission::Yes;
  if (attempt.inPlace) request.inPlace = Permission::Yes;
  if (attempt.openAnyway) request.openAnyway = Permission::Yes;
  if (item.method == Method::MoveWhole) request.keepSource = KeepSource::Yes;
  request.replaced = attempt.target;
  return request;
}

CopyResult Transfer::attemptCopy(const Item& item, Attempt& attempt) {
  // In a directory of our own making nothing can be in the way, and the listing told what this is.
  const bool known = item.making == Making::Directly && item.type == DT_REG;
  if (known && item.method == Method::Copy && !attempt.target) {
    const CopyResult result = copyFile(operation_, requestFor(item, attempt));
    const bool otherwise = result.status == CopyStatus::SourceFailed && result.code == ESTALE;
    if (!otherwise && result.status != CopyStatus::Exists) return result;
  }
  struct stat source;
  if (const int error = lookAtSource(item, source)) return sourceFailure(error);
  if (const int error = lookAtTarget(item, attempt)) return {CopyStatus::TargetFailed, error};
  const bool protectedOne =
      attempt.target && !attempt.asked && makerOf(item, attempt) == MadeBy::ThisCommand;
  if (protectedOne) {
    attempt.allowed = Allowed::No;
    attempt.inPlace = false;
  }
  if (S_ISDIR(source.st_mode)) return enterDirectory(item, attempt, source);
  if (attempt.target) {
    if (isSameFile(item.source, item.target)) return {CopyStatus::Itself, 0};
    const bool compare = operation_.answers.overwrite == OverwriteMode::AllOlder && !protectedOne &&
                         attempt.allowed == Allowed::No && !attempt.targetIsDirectory;
    const TargetAge age = compare ? compareAges(item.target, item.source) : TargetAge::Unknown;
    if (age == TargetAge::NotOlder) return {CopyStatus::PassedOver, 0};
    if (age == TargetAge::Older) attempt.allowed = Allowed::ByDate;
  }
  return attemptFile(item, attempt, source);
}

CopyResult Transfer::attemptFile(const Item& item, const Attempt& attempt,
                                 const struct stat& source) {
  if (attempt.targetIsDirectory && S_ISDIR(attempt.target->st_mode)) {
    return {CopyStatus::TargetFailed, attempt.allowed == Allowed::No ? EACCES : EISDIR};
  }
  CopyRequest request = requestFor(item, attempt);
  request.looked = source;
  if (item.method == Method::MoveWhole) noteCopied(source);
  if (S_ISLNK(source.st_mode)) return copyLink(operation_, request);
  const bool read = item.chosen && item.method == Method::Copy;
  if (isSpecialFile(source.st_mode) && !read) return copyNode(operation_, request);
  return copyFile(operation_, request);
}

Transfer::Verdict Transfer::settleCopy(const Item& item, Attempt& attempt, CopyResult result) {
  switch (result.status) {
    case CopyStatus::PassedOver:
      return decided(item.method == Method::Copy ? Outcome::Done : Outcome::LeftInPlace);
    case CopyStatus::LeftInPlace:
      noteMade(item);
      if (tookPlaceOfOld(attempt)) dropOldDescription(item);
      copyDescription(item.sourceDescriptions, byteName(item.source.path), item.targetDescriptions,
                      byteName(item.target.path));
      return decided(Outcome::LeftInPlace);
    case CopyStatus::KeptSource:
      return tellKept(item);
    case CopyStatus::Failed:
      return decided(Outcome::Failed);
    case CopyStatus::Cancelled:
      return decided(Outcome::Cancelled);
    case CopyStatus::Itself:
      return refuseItself(item);
    case CopyStatus::OpenForWriting:
      return settleOpenFile(item, attempt);
    case CopyStatus::Exists:
    case CopyStatus::Refused:
      return settleExisting(item, attempt, result.status);
    case CopyStatus::SourceFailed:
    case CopyStatus::TargetFailed:
      return settleFailure(item, result);
    case CopyStatus::Entered:
      return entered();
    case CopyStatus::Done:
      noteMade(item);
      if (tookPlaceOfOld(attempt)) dropOldDescription(item);
      takeDescription(item);
      break;
  }
  return decided(Outcome::Done);
}

// What was deleted on the user's word takes its description along; where "All" was in force from
// the start only the content is another one.
bool Transfer::tookPlaceOfOld(const Attempt& attempt) {
  return attempt.allowed == Allowed::ByAnswer && !attempt.inPlace;
}

void Transfer::dropOldDescription(const Item& item) {
  if (item.targetDescriptions) item.targetDescriptions->erase(byteName(item.target.path));
}

void Transfer::takeDescription(const Item& item) {
  const auto carry = keepsSource(item.method) ? copyDescription : moveDescription;
  carry(item.sourceDescriptions, byteName(item.source.path), item.targetDescriptions,
        byteName(item.target.path));
}

// Once for a command: many files may go the same way.
Transfer::Verdict Transfer::tellKept(const Item& item) {
  int answer = Answer::Yes;
  if (!toldKept_) {
    answer = operation_.ui.ask(L"Target is a device, source is kept", item.source.shown(),
                               AlertButtons::OkCancel, AlertColour::Message);
  }
  toldKept_ = true;
  return decided(answer == Answer::Cancel ? Outcome::Cancelled : Outcome::LeftInPlace);
}

Transfer::Verdict Transfer::refuseItself(const Item& item) {
  const int answer = operation_.ui.ask(L"File cannot overwrite itself", item.source.shown(),
                                       AlertButtons::OkCancel, AlertColour::Error);
  return decided(answer == Answer::Cancel ? Outcome::Cancelled : Outcome::LeftInPlace);
}

Transfer::Verdict Transfer::settleOpenFile(const Item& item, Attempt& attempt) {
  switch (decideOpenFile(operation_, item.source.shown())) {
    case OpenFileDecision::Copy:
      attempt.openAnyway = true;
      return again();
    case OpenFileDecision::Cancel:
      return decided(Outcome::Cancelled);
    default:
      return decided(Outcome::LeftInPlace);
  }
}

// Only an answer that allows replacing ever touches the old target.
Transfer::Verdict Transfer::settleExisting(const Item& item, Attempt& attempt, CopyStatus status) {
  const bool refused = status == CopyStatus::Refused;
  if (refused && attempt.allowed == Allowed::ByAnswer) return settleRefused(item, attempt);
  switch (askOnce(item, attempt)) {
    case OverwriteDecision::Replace:
      attempt.allowed = Allowed::ByAnswer;
      return refused ? settleRefused(item, attempt) : again();
    case OverwriteDecision::CompareDates:
      return refused ? settleRefused(item, attempt) : again();
    case OverwriteDecision::Cancel:
      return decided(Outcome::Cancelled);
    default:
      return decided(Outcome::LeftInPlace);
  }
}

// The target's directory takes no new name. Removing the old target first would win nothing, since
// the new one is refused all the same; so after the question one more try decides.
Transfer::Verdict Transfer::settleRefused(const Item& item, Attempt& attempt) {
  if (attempt.insisted) {
    operation_.answers.readOnly = StandingAnswer::Ask;
    return decided(Outcome::LeftInPlace);
  }
  switch (askReadOnlyFile(operation_, item.target)) {
    case ReadOnlyAnswer::ShowError:
      return settleFailure(item, targetFailure(EACCES));
    case ReadOnlyAnswer::GoOn:
      attempt.insisted = true;
      return again();
    case ReadOnlyAnswer::Cancel:
      return decided(Outcome::Cancelled);
    default:
      return decided(Outcome::LeftInPlace);
  }
}

Transfer::Verdict Transfer::settleFailure(const Item& item, CopyResult result) {
  const bool source = result.status == CopyStatus::SourceFailed || hasNoRoom(result.code);
  const ErrorAnswer answer =
      source
          ? showError(operation_.ui, result.code, item.source.shown(),
                      result.status == CopyStatus::SourceFailed ? Westring() : item.target.shown())
          : showError(operation_.ui, result.code, item.target.shown());
  if (answer == ErrorAnswer::Retry) return again();
  return decided(answer == ErrorAnswer::Cancel ? Outcome::Cancelled : Outcome::Failed);
}
