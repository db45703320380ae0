#pragma once

#include <sys/stat.h>

#include "foundation/place.h"

// What a file was when it was read, or that there was none: enough to notice later that somebody
// wrote to it, put another one in its place or removed it.
struct FileStamp {
  bool exists = false;
  FileId id;
  off_t size = 0;
  struct timespec modified {};
  struct timespec changed {};

  static FileStamp of(const struct stat& info) {
    return {true, idOf(info), info.st_size, info.st_mtim, info.st_ctim};
  }

  friend bool operator==(const FileStamp& a, const FileStamp& b) {
    return a.exists == b.exists && a.id == b.id && a.size == b.size &&
           sameTime(a.modified, b.modified) && sameTime(a.changed, b.changed);
  }

  // Whether both are one file with the same content, as far as that can be seen: its mode or its
  // names may have changed.
  friend bool isUnchanged(const FileStamp& a, const FileStamp& b) {
    return a.exists && b.exists && a.id == b.id && a.size == b.size &&
           sameTime(a.modified, b.modified);
  }

 private:
  static bool sameTime(const struct timespec& a, const struct timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
  }
};
