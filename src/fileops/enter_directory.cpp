#include <algorithm>
#include <cstring>

#include "fileops/overwrite_question.h"
#include "fileops/transfer_level.h"
#include "foundation/kept_attributes.h"
#include "foundation/mount_id.h"
#include "foundation/names.h"
#include "foundation/partial_file.h"
#include "foundation/place.h"
#include "foundation/same_place.h"

// A directory is copied by making its target and then taking its members one after the other. A new
// target has a temporary name until it is whole, so that its files need none of their own; in a
// move each file is whole by itself as soon as its source is gone, and the directory has its name
// at once. Where it is to take a file's place it has a temporary name also in a move, and the
// source stays until it is whole.

CopyResult Transfer::enterDirectory(const Item& item, const Attempt& attempt,
                                    const struct stat& source) {
  if (leadsIntoItself(item, idOf(source))) return refuseIntoItself(item);
  auto level = std::make_unique<Level>();
  level->info = source;
  level->method = item.method;
  level->sourceLength = strlen(item.source.path);
  level->targetLength = strlen(item.target.path);
  level->parentSource = item.sourceDescriptions;
  level->parentTarget = item.targetDescriptions;
  CopyResult result = openSource(item, *level);
  if (result.status == CopyStatus::Done) result = mergeOrMake(item, attempt, *level);
  if (result.status != CopyStatus::Done) {
    // What is told about next may be unmounted before it is tried again.
    openingSource_.close();
    openingTarget_.reset();
    return result;
  }
  level->own = level->made || item.inOwnDirectory || made_.contains(level->targetId);
  if (level->made && !item.inOwnDirectory) made_.insert(level->targetId);
  push(item, std::move(level));
  openDescriptions(*levels_.back());
  return {CopyStatus::Entered, 0};
}

CopyResult Transfer::openSource(const Item& item, Level& level) {
  const auto links = item.method == Method::Copy ? FollowLinks::Yes : FollowLinks::No;
  if (const int error = openingSource_.open(item.source.directory, item.source.name, links)) {
    return sourceFailure(error);
  }
  FileId opened;
  if (const int error = openingSource_.id(opened)) return sourceFailure(error);
  if (opened != idOf(level.info)) return sourceFailure(ESTALE);
  // What is mounted there can't go with the tree, so nothing is taken out of it.
  if (item.method != Method::Copy && isMountPoint(openingSource_.fd())) return sourceFailure(EBUSY);
  if (const int error = level.names.read(openingSource_.fd())) return sourceFailure(error);
  return {};
}

bool Transfer::leadsIntoItself(const Item& item, FileId source) {
  if (levels_.empty()) {
    aboveTarget_ = directoriesAbove(item.target.path);
    return liesInside(item.source.path, source, item.target.path);
  }
  return sources_.holds(source) || targets_.holds(source) ||
         std::find(aboveTarget_.begin(), aboveTarget_.end(), source) != aboveTarget_.end();
}

// The item itself ends the command; a member, reached through a link, only stays behind.
CopyResult Transfer::refuseIntoItself(const Item& item) {
  static_cast<void>(operation_.ui.ask(L"Directory cannot be copied into itself",
                                      item.source.shown(), AlertButtons::Ok, AlertColour::Error));
  return {levels_.empty() ? CopyStatus::Cancelled : CopyStatus::Failed, 0};
}

CopyResult Transfer::mergeOrMake(const Item& item, const Attempt& attempt, Level& level) {
  if (item.method == Method::ClearSource) return openTarget(item, level);
  if (!attempt.target) return makeTarget(item, attempt, level);
  if (!attempt.targetIsDirectory) {
    if (attempt.allowed == Allowed::No) return {CopyStatus::Exists, EEXIST};
    return makeTarget(item, attempt, level);
  }
  switch (decideMerge(operation_, item.source)) {
    case MergeDecision::Merge:
      return openTarget(item, level);
    case MergeDecision::Cancel:
      return {CopyStatus::Cancelled, 0};
    default:
      return {CopyStatus::Failed, 0};
  }
}

CopyResult Transfer::makeTarget(const Item& item, const Attempt& attempt, Level& level) {
  const Place& target = item.target;
  const mode_t mode = directoryModeInTheMaking(level.info.st_mode);
  const auto make = [&](const char* name) {
    return System::mkdirAt(target.directory, name, mode) == 0 ? 0 : errno;
  };
  level.replacesFile = attempt.target.has_value();
  if (level.replacesFile && item.method != Method::Copy) level.method = Method::MoveWhole;
  const bool unnamed = keepsSource(level.method) && item.making == Making::Beside;
  const int error = unnamed ? makeBeside(target, level.temporaryName, make) : make(target.name);
  if (error) return targetFailure(error);
  level.made = true;
  level.making = keepsSource(level.method) ? Making::Directly : Making::Beside;
  const CopyResult result = openTarget(item, level);
  if (result.status != CopyStatus::Done) {
    const char* name = unnamed ? level.temporaryName.c_str() : target.name;
    System::unlinkAt(target.directory, name, AT_REMOVEDIR);
  }
  return result;
}

CopyResult Transfer::openTarget(const Item& item, Level& level) {
  const char* name = level.temporaryName.empty() ? item.target.name : level.temporaryName.c_str();
  if (const int error = openToWorkIn(item.target.directory, name, openingTarget_)) {
    return targetFailure(error);
  }
  struct stat info;
  if (System::fstat(openingTarget_.get(), &info) < 0) return targetFailure(errno);
  level.targetId = idOf(info);
  return {};
}

void Transfer::openDescriptions(Level& level) {
  for (size_t i = 0; i < level.names.count() && !level.hasDescriptions; ++i) {
    const unsigned char type = level.names.type(i);
    level.hasDescriptions = strcmp(level.names.name(i), DescriptionFileName) == 0 &&
                            (type == DT_REG || type == DT_UNKNOWN);
  }
  if (!level.hasDescriptions) return;
  const auto presence =
      level.made ? DescriptionFile::Presence::Absent : DescriptionFile::Presence::Unknown;
  level.sourceDescriptions =
      std::make_unique<DescriptionFile>(source_.substr(0, level.sourceLength));
  level.targetDescriptions = std::make_unique<DescriptionFile>(realTarget(), presence);
}

void Transfer::push(const Item& item, std::unique_ptr<Level> level) {
  Place target = item.target;
  if (!level->temporaryName.empty()) target.name = level->temporaryName.c_str();
  sources_.push(openingSource_.release(), idOf(level->info), item.source, WayUp::AlsoByNames);
  targets_.push(std::move(openingTarget_), level->targetId, target, WayUp::AlsoByNames);
  levels_.push_back(std::move(level));
}

void Transfer::pop() {
  levels_.pop_back();
  sources_.pop();
  targets_.pop();
}
