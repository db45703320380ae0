#pragma once

#include <dirent.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/place.h"

enum class FollowLinks { No, Yes };

// A directory held open for calls relative to it. Closes itself.
class OpenDirectory {
 public:
  OpenDirectory() = default;
  ~OpenDirectory() { close(); }
  OpenDirectory(OpenDirectory&& other) noexcept : stream_(other.stream_) {
    other.stream_ = nullptr;
  }
  OpenDirectory& operator=(OpenDirectory&& other) noexcept;
  OpenDirectory(const OpenDirectory&) = delete;
  OpenDirectory& operator=(const OpenDirectory&) = delete;

  // 0 or errno; ENOTDIR or ELOOP when `name` is no directory, or a link that must not be followed.
  int open(int directory, const char* name, FollowLinks links);
  void close();
  bool isOpen() const { return stream_ != nullptr; }
  int fd() const;
  int id(FileId& result) const;  // 0 or errno
  DIR* stream() const { return stream_; }

 private:
  DIR* stream_ = nullptr;
};

// All names of a directory but "." and "..", in directory order, read in one go into one block.
// Types are DT_ values; DT_UNKNOWN where the file system doesn't tell.
class DirectoryNames {
 public:
  // 0 or errno; what was read before an error stays.
  int read(const OpenDirectory& directory);
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
