#include "fileops/delete_tree.h"
#include "fileops/error_dialog.h"
#include "fileops/notices.h"
#include "fileops/rename_over_file.h"
#include "fileops/transfer_level.h"
#include "foundation/kept_attributes.h"
#include "foundation/partial_file.h"
#include "foundation/place.h"

// A directory whose members are all done: its target gets its name and attributes, the source of a
// move goes when nothing is left in it.

namespace {

Outcome outcomeOf(ErrorAnswer answer) {
  return answer == ErrorAnswer::Cancel ? Outcome::Cancelled : Outcome::Failed;
}

}  // namespace

Transfer::Verdict Transfer::leaveDirectory() {
  Level& level = *levels_.back();
  reopenParent();
  const Outcome outcome = finishDirectory(level);
  if (level.method == Method::MoveWhole && outcome == Outcome::Done) noteCopied(level.info);
  const bool clears = level.method == Method::MoveWhole && level.replacesFile;
  Item item = selfItem(level);
  pop();
  if (!clears || outcome != Outcome::Done) return decided(outcome);
  item.method = Method::ClearSource;
  return clearItem(item);
}

// Should the directory above be another one now, nothing more is done in it.
void Transfer::reopenParent() {
  const int sourceError = sources_.reopenParent();
  const int targetError = targets_.reopenParent();
  if (sourceError == 0 && targetError == 0) return;
  Level& parent = *levels_[levels_.size() - 2];
  parent.left = true;
  parent.next = parent.names.count();
}

Transfer::Item Transfer::selfItem(const Level& level) const {
  Item item;
  const bool outermost = levels_.size() == 1;
  item.source = placeOf(source_.c_str());
  item.target = placeOf(target_.c_str());
  if (!outermost) {
    item.source = {sources_.parentFd(), byteName(source_.c_str()), source_.c_str()};
    item.target = {targets_.parentFd(), byteName(target_.c_str()), target_.c_str()};
  }
  item.sourceDescriptions = level.parentSource;
  item.targetDescriptions = level.parentTarget;
  item.method = level.method;
  return item;
}

Outcome Transfer::finishDirectory(Level& level) {
  source_.resize(level.sourceLength);
  target_.resize(level.targetLength);
  settleDescriptions(level);
  const Outcome named = nameDirectory(level);
  if (named != Outcome::Done) return named;
  Outcome outcome = dressOrTell(level);
  if (outcome != Outcome::Done) {
    level.left = true;
  } else if (level.left) {
    outcome = Outcome::LeftInPlace;
  }
  const bool clearing = !keepsSource(level.method);
  if (clearing && !level.left) outcome = removeSource(level);
  const bool gone = clearing && outcome == Outcome::Done;
  describeDirectory(level, gone ? SourceIs::Gone : SourceIs::There, selfItem(level));
  return outcome;
}

// A merged directory keeps the description it had; one whose source is cleared was made before.
void Transfer::describeDirectory(const Level& level, SourceIs source, const Item& self) {
  const bool sourceGone = source == SourceIs::Gone;
  const char* sourceName = byteName(self.source.path);
  const char* targetName = byteName(self.target.path);
  if (level.replacesFile) dropOldDescription(self);
  if (sourceGone && (level.made || level.method == Method::ClearSource)) {
    moveDescription(self.sourceDescriptions, sourceName, self.targetDescriptions, targetName);
  } else if (level.made) {
    copyDescription(self.sourceDescriptions, sourceName, self.targetDescriptions, targetName);
  } else if (sourceGone && self.sourceDescriptions) {
    self.sourceDescriptions->erase(sourceName);
  }
}

// First the target, so that no line is ever in neither file.
void Transfer::settleDescriptions(Level& level) {
  if (!level.sourceDescriptions) return;
  static_cast<void>(flushOrTell(operation_, *level.targetDescriptions));
  static_cast<void>(flushOrTell(operation_, *level.sourceDescriptions));
  if (!keepsSource(level.method) && !level.left) carryOrphanLines(level);
}

// Lines that describe nothing go along, so that the emptied directory can go.
void Transfer::carryOrphanLines(Level& level) {
  const std::string lines = level.sourceDescriptions->remaining();
  if (!lines.empty()) {
    level.targetDescriptions->append(lines);
    if (flushOrTell(operation_, *level.targetDescriptions) != 0) return;
  }
  level.sourceDescriptions->clear();
  static_cast<void>(flushOrTell(operation_, *level.sourceDescriptions));
}

int Transfer::tryName(const Level& level) const {
  const Place target = selfItem(level).target;
  const Place unnamed = {target.directory, level.temporaryName.c_str(), target.path};
  const int renamed =
      System::renameAtNoReplace(unnamed.directory, unnamed.name, target.directory, target.name);
  if (renamed == 0) return 0;
  if (errno != EEXIST || !level.replacesFile) return errno;
  return renameDirectoryOverFile(operation_, unnamed, target);
}

Outcome Transfer::nameDirectory(Level& level) {
  if (level.temporaryName.empty()) return Outcome::Done;
  // A file only makes room for a whole directory.
  if (level.replacesFile && level.left) {
    removeUnnamed(level);
    return Outcome::LeftInPlace;
  }
  for (;;) {
    const int error = tryName(level);
    if (error == 0) {
      level.temporaryName.clear();
      return Outcome::Done;
    }
    const ErrorAnswer answer = showError(operation_.ui, error, selfItem(level).target.shown());
    if (answer == ErrorAnswer::Retry) continue;
    removeUnnamed(level);
    return outcomeOf(answer);
  }
}

// What can't get its name is of no use to anybody; it holds copies only.
void Transfer::removeUnnamed(const Level& level) {
  const Place target = selfItem(level).target;
  const char* name = level.temporaryName.c_str();
  removeTreeQuietly({target.directory, name, target.path});
  struct stat info;
  if (System::statAt(target.directory, name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
    tellLeftover(operation_, pathBeside(target, level.temporaryName));
  }
}

int Transfer::dressDirectory(const Level& level) const {
  if (!level.made && level.method != Method::ClearSource) return 0;
  int error = 0;
  if (level.method != Method::Copy) {
    error = keepOwnership(sources_.fd(), targets_.fd(), level.info);
    if (error == 0) error = keepTimes(targets_.fd(), level.info, TimeGrain::Whole);
  }
  const int modeError = keepMode(targets_.fd(), level.info);
  return error ? error : modeError;
}

// A source whose attributes couldn't be taken over stays.
Outcome Transfer::dressOrTell(const Level& level) {
  for (;;) {
    const int error = dressDirectory(level);
    if (error == 0) return Outcome::Done;
    const ErrorAnswer answer = showError(operation_.ui, error, selfItem(level).target.shown());
    if (answer != ErrorAnswer::Retry) return outcomeOf(answer);
  }
}

// Never with what is in it: whatever appeared there in the meantime was not copied.
Outcome Transfer::removeSource(const Level& level) {
  const Place source = selfItem(level).source;
  for (;;) {
    if (System::unlinkAt(source.directory, source.name, AT_REMOVEDIR) == 0) return Outcome::Done;
    if (errno == ENOTEMPTY || errno == EEXIST) return Outcome::LeftInPlace;
    const ErrorAnswer answer = showError(operation_.ui, errno, source.shown());
    if (answer != ErrorAnswer::Retry) return outcomeOf(answer);
  }
}

// Where the target of the innermost level lies now, temporary names included.
std::string Transfer::realTarget() const {
  const Level& outermost = *levels_.front();
  std::string path = outermost.temporaryName.empty() ? target_.substr(0, outermost.targetLength)
                                                     : outermost.temporaryName;
  for (size_t i = 1; i < levels_.size(); ++i) {
    const Level& level = *levels_[i];
    const std::string own = target_.substr(0, level.targetLength);
    replaceTail(path, path.size(),
                level.temporaryName.empty() ? byteName(own.c_str()) : level.temporaryName.c_str());
  }
  return path;
}

// After a cancel: what is whole stays, under its name and with its mode, unless it would cost the
// file whose place it was to take.
void Transfer::unwind() {
  while (!levels_.empty()) {
    Level& level = *levels_.back();
    level.left = true;
    reopenParent();
    source_.resize(level.sourceLength);
    target_.resize(level.targetLength);
    settleDescriptions(level);
    const bool unnamed = !level.temporaryName.empty();
    if (unnamed && (level.replacesFile || tryName(level) != 0)) {
      removeUnnamed(level);
    } else {
      static_cast<void>(dressDirectory(level));
      if (level.made) describeDirectory(level, SourceIs::There, selfItem(level));
    }
    pop();
  }
}
