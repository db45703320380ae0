#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "foundation/file_stamp.h"
#include "foundation/system.h"
#include "foundation/westring.h"
#include "foundation/written_place.h"

// Replaces a file by a whole new one: what is written goes to a new file beside the target
// (exclusive, not through links, mode 0600 while in the making), and commit flushes it and renames
// it over the target. Where the target is a symbolic link, the file that it leads to is replaced,
// or made, and the link stays. Without commit the destructor removes the new file and the target is
// untouched. Whoever must know whether it could be removed calls `discard`, and asks `leftover`.
class SafeFile {
 public:
  static constexpr mode_t PrivateMode = 0600;

  SafeFile() = default;
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  // 0 or errno; only a regular file is ever replaced (EISDIR, EINVAL).
  int create(const Westring& target, Links links = Links::Follow);
  // The same for a target that was read before: Status::ChangedMeanwhile, here or from commit, when
  // it isn't any more what it was then.
  int create(const Westring& target, const FileStamp& read);
  int descriptor() const { return fd_.get(); }
  int write(const void* bytes, size_t count);  // all of it, or errno
  // Gives the new file the target's owner, mode and extended attributes, as far as the system
  // allows, or `newMode` where there was none; fsync, close, rename, fsync of the directory. 0 or
  // an error, after which the new file is gone and the target is as it was; only an error of the
  // very last step comes when the target is the new one already (`stamp` tells).
  int commit(mode_t newMode = PrivateMode);
  // The steps of commit by themselves, for whoever has another way when one of them is refused: the
  // new file stays until it is discarded. First it gets the target's attributes, all of them, or
  // Status::NotOffered; where there is no target, `newMode`.
  int dressExactly(mode_t newMode = PrivateMode);
  int flush();     // and close
  int takeName();  // after flush. Also EBUSY for a mount point, EPERM or EACCES where others decide
  void keep();     // the new file stays where it is, under its temporary name
  void discard();
  // The path of the last new file that discard couldn't remove, also the discard of a failed commit
  // or of the next create; "" when there is none.
  const std::string& leftover() const { return leftover_; }
  const std::string& temporaryPath() const { return temporaryPath_; }  // "" when there is none
  // The target after commit, for the next `create`; without one there is nothing in it.
  const FileStamp& stamp() const { return stamp_; }
  const FileStamp& made() const { return made_; }  // the new file, after flush
  // Where the target really lies, after create.
  const WrittenPlace& place() const { return place_; }

 private:
  int lookAtTarget();
  int createBeside();
  int passOn();
  int dress(mode_t newMode);
  int dressAs(const struct stat& old);
  int syncDirectory();

  Descriptor fd_;
  off_t size_ = 0;      // of the new file
  off_t passedOn_ = 0;  // how much of it is on its way to the disk
  WrittenPlace place_;
  std::string temporary_;  // name in the place's directory; "" when there is none
  std::string temporaryPath_;
  std::string leftover_;
  std::optional<struct stat> old_;  // the target, when it was looked at last
  std::optional<FileStamp> read_;   // what it must still be
  FileStamp made_;                  // the new file, flushed
  FileStamp stamp_;
};

// The recognisable path of a file in the making, in the directory of `utf8Target`: ".td-" and eight
// hex digits. Each call gives another one.
std::string temporaryNameBeside(const char* utf8Target, unsigned attempt);
