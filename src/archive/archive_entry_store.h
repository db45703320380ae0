#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "archive/archive_chain.h"
#include "archive/archive_formats.h"
#include "archive/archive_records.h"
#include "foundation/file_stamp.h"

// An archive file that was read: its members as directories. Application thread.
class ArchiveEntryStore : public OpenArchive {
 public:
  // `path`: as the panel shows it. `diskFile`: where the file stands, which was `file` when it was
  // read.
  ArchiveEntryStore(const Westring& path, const Westring& diskFile, const FileStamp& file);

  const Westring& path() const override { return path_; }
  // ".." first, but for the root; then the files, then a directory for each name that paths go on
  // with. Status::EndOfFile for a directory that the archive doesn't hold. Of members with equal
  // names the last one is listed.
  int first(const Westring& innerPath, entry*& result) override;
  int next(entry*& result) override;
  ArchiveFacts facts() const override;
  bool isCurrent() const override;
  ArchiveCount countBelow(const Westring& innerPath) const override;
  void forEachDirectory(const std::function<void(const Westring& innerPath)>& visit) const override;

  const Westring& diskFile() const { return diskFile_; }
  ArchiveType type() const { return type_; }
  const FileStamp& file() const { return file_; }
  const ArchiveRecords& records() const { return records_; }
  // The file of this path, the one that is listed; null when there is none.
  const ArchiveRecord* fileOf(const Westring& innerPath) const;
  // Whether "./" stands before the member that the last entry was made of.
  bool dotSlash() const { return dotSlash_; }

  // What somebody keeps with the archive for as long as it is open.
  class Companion {
   public:
    virtual ~Companion() = default;
  };
  const std::unique_ptr<Companion>& companion() const { return companion_; }
  void accompany(std::unique_ptr<Companion> companion) { companion_ = std::move(companion); }

 private:
  friend struct ArchiveOpening openArchiveFile(const Westring& path, const Westring& diskFile,
                                               ArchiveWatcher& watcher);

  std::wstring_view directory() const { return {directory_.data(), directoryLength_}; }
  entry* nextFile();
  entry* nextDirectory();
  // Of the records before `end`; a directory's own has no name and is never one.
  bool isLastOfItsName(uint32_t record, uint32_t end) const;
  uint64_t filesIn(const ArchiveDirectory& directory) const;

  Westring path_;
  Westring diskFile_;
  FileStamp file_;
  ArchiveType type_ = ArchiveType::Zip;
  ArchiveRecords records_;
  Westring directory_;  // the one that is listed
  size_t directoryLength_ = 0;
  uint32_t nextRecord_ = 0;  // of its own
  uint32_t endOfRecords_ = 0;
  uint32_t nextDirectory_ = 0;  // the first one that isn't looked at yet
  bool dotSlash_ = false;
  std::unique_ptr<Companion> companion_;  // the first to go: it may look at everything else
};

// What came of opening a file.
struct ArchiveOpening {
  std::unique_ptr<ArchiveEntryStore> archive;  // null when it is none, or the reading was stopped
  std::vector<ArchiveMessage> messages = {};   // to be shown with the archive's path
  bool stopped = false;                        // by the watcher
};

// Reads `diskFile`, a regular file, which a panel shows as `path`.
ArchiveOpening openArchiveFile(const Westring& path, const Westring& diskFile,
                               ArchiveWatcher& watcher);
