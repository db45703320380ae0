#pragma once

#include <memory>

#include "archive/archive_entry_store.h"
#include "archive_actions/member_tools.h"

// What goes on with an open archive beside its listing: the member that was taken out last, and, of
// an archive inside another one, the copy that it is itself. When the archive is closed, or another
// member is taken, a member that was changed goes back into it first; one that can't stays on the
// disk, and its path is told. Application thread.
class ArchiveWork : public ArchiveEntryStore::Companion {
 public:
  // That of this archive, made when there is none.
  static ArchiveWork& of(ArchiveEntryStore& archive);

  explicit ArchiveWork(ArchiveEntryStore& archive);
  ~ArchiveWork() override;

  // Where the file of this path inside can be read and edited; "" after a failure, which has been
  // told. What was taken out last isn't taken again.
  Westring take(const Westring& innerPath);

  // Puts the member back that was taken out, if it was changed. What can't go back stays on the
  // disk, and its path is told.
  void giveBack();

  // This archive is the member that was taken out of another one last.
  void standIn(const ArchiveWork& parent) { standsIn_ = parent.copy_; }

 private:
  bool isTaken(const Westring& innerPath) const;
  bool isAsSeen() const;
  void noteSeen();
  Westring extract(const Westring& innerPath, const ArchiveRecord& record);
  void leaveOnDisk(MemberCopy& copy, const Westring& why);
  // What kept the member from going back; "" when it is there, or needn't go.
  Westring update(const MemberCopy& copy);

  ArchiveEntryStore& archive_;
  FileStamp seen_;       // the archive file, when this program dealt with it last
  SingleMember member_;  // what was taken out
  std::shared_ptr<MemberCopy> copy_;
  std::shared_ptr<MemberCopy> standsIn_;
};
