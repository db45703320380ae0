#pragma once

#include <ctime>
#include <string>

#include "archive/archive_entry_store.h"
#include "foundation/place.h"

// What a tool has put into an archive, compared with the files that it was made of. Application
// thread.
class PackedFiles {
 public:
  // `archive` was read after the tool had ended, which was started at `start`, a time as files have
  // them.
  PackedFiles(const ArchiveEntryStore& archive, const struct timespec& start)
      : archive_(archive), start_(start) {}

  // Whether the archive holds the file under this path inside, in its size, and nobody has changed
  // it meanwhile; of a directory whether that is so for it and for all that lies below it.
  bool holds(const Place& item, const Westring& innerPath) const;
  // Removes what the archive holds, one file after the other; a directory goes when nothing is left
  // in it. False when something had to stay.
  [[nodiscard]] bool remove(const Place& item, const Westring& innerPath) const;

 private:
  class Walk;
  enum class Task { Look, Remove };
  bool run(const Place& item, const Westring& innerPath, Task task) const;
  const ArchiveRecord* recordOf(const Westring& innerPath) const;
  bool holdsOne(const Place& item, const Westring& innerPath) const;
  bool holdsDirectory(const Westring& innerPath) const;

  const ArchiveEntryStore& archive_;
  const struct timespec start_;
};

// No file that was changed before this has a later time.
struct timespec fileTimeNow();
