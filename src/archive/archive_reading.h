#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

#include "archive/archive_bytes.h"
#include "archive/archive_message.h"
#include "archive/archive_records.h"
#include "archive/header_bytes.h"

// Who waits for an archive to be read.
class ArchiveWatcher {
 public:
  virtual ~ArchiveWatcher() = default;
  virtual bool stopped() { return false; }  // asked each 1024 records or headers
  std::atomic<int> records{0};              // so far; another thread may look at it
};

// What a reader works with: the bytes, the records it fills, what it has to tell. Nothing that the
// bytes claim is believed: positions only grow and end with the file.
class ArchiveReading {
 public:
  // `fileName`: the archive's own, for formats that may store none.
  ArchiveReading(ArchiveBytes& bytes, ArchiveRecords& records, std::wstring_view fileName,
                 ArchiveWatcher& watcher)
      : bytes_(bytes), records_(records), fileName_(fileName), watcher_(watcher) {}

  uint64_t size() const { return bytes_.size(); }
  std::wstring_view fileName() const { return fileName_; }
  // The bytes at `position`, as ArchiveBytes::at gives them.
  std::string_view bytes(uint64_t position, size_t count) { return bytes_.at(position, count); }
  HeaderBytes header(uint64_t position, size_t count) {
    return HeaderBytes(bytes_.at(position, count));
  }
  // A header that must be whole: where only a part of it is there, the archive is damaged, and the
  // header empty.
  HeaderBytes wholeHeader(uint64_t position, size_t count);

  // False when the list must end: it was stopped, or holds all that it may.
  bool add(const ArchiveMember& member);
  // Goes on by `bytes`, which must be some and must lie in the file; false when the list must end.
  bool advance(uint64_t& position, uint64_t bytes);

  void tell(ArchiveNote note);
  uint32_t recordCount() const { return taken_; }
  bool stopped() const { return stopped_; }
  const std::vector<ArchiveMessage>& messages() const { return messages_; }
  void startAgain();  // for another reader; its format's messages stay

 private:
  bool goesOn();

  ArchiveBytes& bytes_;
  ArchiveRecords& records_;
  std::wstring_view fileName_;
  ArchiveWatcher& watcher_;
  std::vector<ArchiveMessage> messages_;
  uint32_t taken_ = 0;
  uint32_t steps_ = 0;
  bool stopped_ = false;
};
