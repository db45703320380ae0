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

  ArchiveType type() const { return type_; }
  const FileStamp& file() const { return file_; }
  const ArchiveRecords& records() const { return records_; }
  // Whether "./" stands before the member that the last entry was made of.
  bool dotSlash() const { return dotSlash_; }

 private:
  friend struct ArchiveOpening openArchiveFile(const Westring& path, const Westring& diskFile,
                                               ArchiveWatcher& watcher);

  std::wstring_view directory() const { return {directory_.data(), directoryLength_}; }
  entry* nextFile();
  entry* nextDirectory();

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
};

// What came of opening a file.
struct ArchiveOpening {
  std::unique_ptr<ArchiveEntryStore> archive;  // null when it is none, or the reading was stopped
  std::vector<ArchiveMessage> messages;        // to be shown with the archive's path
};

// Reads `diskFile`, a regular file, which a panel shows as `path`.
ArchiveOpening openArchiveFile(const Westring& path, const Westring& diskFile,
                               ArchiveWatcher& watcher);
