#include "archive_actions/archive_work.h"

#include <cstdio>
#include <utility>

#include "archive_actions/archive_members.h"
#include "console/input.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "language/temporary_names.h"
#include "ui/alert.h"

namespace {

void tellError(const Westring& text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

}  // namespace

ArchiveWork& ArchiveWork::of(ArchiveEntryStore& archive) {
  if (!archive.companion()) archive.accompany(std::make_unique<ArchiveWork>(archive));
  return static_cast<ArchiveWork&>(*archive.companion());
}

ArchiveWork::ArchiveWork(ArchiveEntryStore& archive) : archive_(archive), seen_(archive.file()) {}

ArchiveWork::~ArchiveWork() {
  giveBack();
}

bool ArchiveWork::isAsSeen() const {
  struct stat info;
  return statPath(archive_.diskFile(), info) == 0 && isUnchanged(seen_, FileStamp::of(info));
}

void ArchiveWork::noteSeen() {
  struct stat info;
  if (statPath(archive_.diskFile(), info) == 0) seen_ = FileStamp::of(info);
}

// A copy of what the archive holds no more is only kept while it is edited.
bool ArchiveWork::isTaken(const Westring& innerPath) const {
  if (!copy_ || !sameName(member_.innerPath, innerPath)) return false;
  int error = 0;
  const MemberCopy::State state = copy_->compare(error);
  return state == MemberCopy::State::Changed || (state == MemberCopy::State::Same && isAsSeen());
}

Westring ArchiveWork::take(const Westring& innerPath) {
  if (isTaken(innerPath)) return copy_->path();
  giveBack();
  const bool current = isAsSeen();
  // Another file may stand there by now; the panel reads it with its next reading.
  const ArchiveOpening anew = current ? ArchiveOpening() : readQuietly(archive_);
  const ArchiveEntryStore* const holder = current ? &archive_ : anew.archive.get();
  const ArchiveRecord* const record = holder ? holder->fileOf(innerPath) : nullptr;
  if (!record) {
    tellError(L"File not found", joinPath(archive_.path(), innerPath));
    return Westring();
  }
  noteSeen();
  return extract(innerPath, *record);
}

Westring ArchiveWork::extract(const Westring& innerPath, const ArchiveRecord& record) {
  PrivateDirectory directory;
  const Westring where = temporaryDirectory();
  if (directory.make(where) != 0) {
    tellError(L"Unable to create temporary directory", where);
    return Westring();
  }
  const SingleMember member{innerPath, fileOperand(innerPath, record), record.size};
  Westring path = extractMember(archive_, member, directory);
  if (path.empty()) return path;
  auto copy = std::make_shared<MemberCopy>();
  if (const int error = copy->adopt(std::move(directory), path); error != 0) {
    tellError(errorText(error), path);
    return Westring();
  }
  copy_ = std::move(copy);
  member_ = member;
  return copy_->path();
}

void ArchiveWork::giveBack() {
  // The tool may show its terminal, and panels are read again behind it: nothing goes back twice.
  const std::shared_ptr<MemberCopy> copy = std::exchange(copy_, nullptr);
  if (!copy) return;
  const Westring why = update(*copy);
  if (!why.empty()) leaveOnDisk(*copy, why);
}

// Whoever holds this archive must not take it for whole, and keeps its copy of it too.
void ArchiveWork::leaveOnDisk(MemberCopy& copy, const Westring& why) {
  if (standsIn_) standsIn_->distrust();
  const Westring path = copy.keep();
  // There is nobody to answer a box then; who looks for the edit later may look there.
  if (programEnds()) {
    fprintf(stderr, "td: %s\n    %s\n", bytePath(why).c_str(), bytePath(path).c_str());
  }
  tellError(why, path);
}

Westring ArchiveWork::update(const MemberCopy& copy) {
  int error = 0;
  const MemberCopy::State state = copy.compare(error);
  if (state == MemberCopy::State::Same) return Westring();
  if (state == MemberCopy::State::Unreadable) {
    return Westring(L"Error reading file time stamp: ") + errorText(error);
  }
  if (!copy.isTrusted()) return L"An archive in it couldn't be updated, this is kept";
  if (!isAsSeen()) {
    const int answer =
        alert("Archive has changed, update anyway?", archive_.path(), AlertButtons::OkCancel);
    if (answer != Answer::Yes) return L"The archive wasn't updated, this is kept";
  }
  Westring why = updateMember(archive_, member_, copy);
  noteSeen();
  return why;
}
