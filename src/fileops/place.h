#pragma once

#include <fcntl.h>
#include <sys/stat.h>

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

inline FileId idOf(const struct stat& info) {
  return {info.st_dev, info.st_ino};
}
