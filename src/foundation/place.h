#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <functional>
#include <string>

#include "foundation/utf8.h"
#include "foundation/westring.h"

// One name in a directory that is held open, and the whole path that the user is shown for it.
// Calls on the disk use the first pair, so that they work beyond the system's longest path and
// can't be led elsewhere by a link put in the way. Borrowed text.
struct Place {
  int directory = AT_FDCWD;
  const char* name = "";
  const char* path = "";

  Westring shown() const { return decodeFileName(path); }
};

// The place that an absolute path names by itself.
inline Place placeOf(const char* path) {
  return {AT_FDCWD, path, path};
}

// Identity of a file: what stays the same however it is reached.
struct FileId {
  dev_t device = 0;
  ino_t inode = 0;

  friend bool operator==(const FileId&, const FileId&) = default;
};

struct FileIdHash {
  size_t operator()(const FileId& id) const noexcept {
    return std::hash<ino_t>()(id.inode) ^ (std::hash<dev_t>()(id.device) << 1);
  }
};

inline FileId idOf(const struct stat& info) {
  return {info.st_dev, info.st_ino};
}

// Paths as the system has them: UTF-8 or whatever bytes a name holds, split at '/' only.

std::string bytePath(const Westring& path);
std::string byteParent(const std::string& path);  // "/a/b" -> "/a", "/a" -> "/", "a" -> "."
const char* byteName(const char* path);           // behind the last '/'
// Puts `name` behind the first `length` bytes of `path`.
void replaceTail(std::string& path, size_t length, const char* name);

// Longer paths can't be given to the system in one piece.
inline constexpr size_t LongestPath = 4095;
