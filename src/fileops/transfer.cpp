#include "fileops/transfer.h"

#include <cstring>

#include "fileops/folded_name.h"
#include "fileops/transfer_level.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "foundation/place.h"

Transfer::Transfer(RunningOperation& operation, TransferKind kind)
    : operation_(operation), kind_(kind) {}

Transfer::~Transfer() = default;

TransferKind Transfer::kindOf(const Item& item) const {
  return item.method == Method::Copy ? TransferKind::Copy : TransferKind::Move;
}

Outcome Transfer::run(const std::string& source, const std::string& target, int index, int count) {
  BreakScope armed;
  source_ = source;
  target_ = target;
  aboveTarget_.clear();
  copied_.clear();
  const std::string sourceParent = byteParent(source);
  const std::string targetParent = byteParent(target);
  if (isDescriptionFileName(byteName(source.c_str()))) operation_.descriptions.forget(sourceParent);
  if (isDescriptionFileName(byteName(target.c_str()))) operation_.descriptions.forget(targetParent);
  Item item;
  item.source = placeOf(source.c_str());
  item.target = placeOf(target.c_str());
  item.sourceDescriptions = &operation_.descriptions.of(sourceParent);
  item.targetDescriptions = &operation_.descriptions.of(targetParent);
  item.method = kind_ == TransferKind::Copy ? Method::Copy : Method::Rename;
  item.chosen = true;
  Verdict verdict = begin(item, index, count);
  while (!levels_.empty()) {
    Level& level = *levels_.back();
    if (verdict.kind == Verdict::Kind::Decided) {
      if (verdict.outcome == Outcome::Cancelled) {
        unwind();
        break;
      }
      if (verdict.outcome != Outcome::Done) level.left = true;
    }
    verdict = level.next < level.names.count() ? beginMember() : leaveDirectory();
  }
  return verdict.outcome;
}

Transfer::Verdict Transfer::begin(const Item& item, int index, int count) {
  if (item.method == Method::ClearSource) return clearItem(item);
  operation_.ui.itemStarted(kind_, item.source.path, item.target.path, index, count);
  if (strlen(item.source.path) > LongestPath) {
    return settleFailure(item, sourceFailure(ENAMETOOLONG));
  }
  if (strlen(item.target.path) > LongestPath) {
    return settleFailure(item, targetFailure(ENAMETOOLONG));
  }
  if (item.method != Method::Rename) return copyItem(item);
  if (count > 1) operation_.ui.itemsDone(index, count);
  return moveItem(item);
}

Transfer::Verdict Transfer::beginMember() {
  if (operation_.cancelled()) return decided(Outcome::Cancelled);
  Level& level = *levels_.back();
  const size_t index = level.next++;
  if (isKeptBack(level, index)) return decided(Outcome::Done);
  return begin(memberItem(level, index), 1, 1);
}

// The lines of a description file travel one by one, with the files they describe.
bool Transfer::isKeptBack(Level& level, size_t index) {
  const char* name = level.names.name(index);
  if (!isDescriptionFileName(name)) return false;
  unsigned char type = level.names.type(index);
  struct stat info;
  if (type == DT_UNKNOWN && System::statAt(sources_.fd(), name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
    type = IFTODT(info.st_mode);
  }
  if (type != DT_REG) return false;
  // A file that only looks like one has nobody to carry its lines.
  if (strcmp(name, DescriptionFileName) != 0) level.left = true;
  return true;
}

Transfer::Item Transfer::memberItem(Level& level, size_t index) {
  Item item;
  item.type = level.names.type(index);
  item.method = level.method;
  item.making = level.making;
  item.inOwnDirectory = level.own;
  replaceTail(source_, level.sourceLength, level.names.name(index));
  if (operation_.foldNames && !isDirectoryMember(sources_.fd(), level.names.name(index))) {
    replaceTail(target_, level.targetLength, foldedName(level.names.name(index)).c_str());
  } else {
    replaceTail(target_, level.targetLength, level.names.name(index));
  }
  item.source = {sources_.fd(), byteName(source_.c_str()), source_.c_str()};
  item.target = {targets_.fd(), byteName(target_.c_str()), target_.c_str()};
  item.sourceDescriptions = level.sourceDescriptions.get();
  item.targetDescriptions = level.targetDescriptions.get();
  return item;
}
