#pragma once

#include <dirent.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/place.h"
#include "foundation/system.h"

enum class FollowLinks { No, Yes };

// A directory held open for calls relative to it. Closes itself.
class OpenDirectory {
 public:
  // 0 or errno; ENOTDIR or ELOOP when `name` is no directory, or a link that must not be followed.
  int open(int directory, const char* name, FollowLinks links);
  void close() { directory_.reset(); }
  bool isOpen() const { return directory_.valid(); }
  int fd() const { return directory_.get(); }
  Descriptor release() { return std::move(directory_); }
  int id(FileId& result) const;  // 0 or errno

 private:
  Descriptor directory_;
};

// All names of a directory but "." and "..", in directory order, in one block of memory. Types are
// DT_ values; DT_UNKNOWN where the file system doesn't tell.
class DirectoryNames {
 public:
  // Lists a directory that was just opened. 0 or errno; what was read before an error stays.
  int read(int directory);
  // The next hundreds of names behind those that are there; false in `more` when there are none.
  int readSome(int directory, bool& more);
  size_t count() const { return starts_.size(); }
  const char* name(size_t index) const { return block_.data() + starts_[index] + 1; }
  unsigned char type(size_t index) const {
    return static_cast<unsigned char>(block_[starts_[index]]);
  }
  void clear();

 private:
  std::string block_;  // for each name its type, its bytes and a 0
  std::vector<size_t> starts_;
};
