#pragma once

#include <sys/stat.h>

#include <string>
#include <unordered_map>

#include "foundation/place.h"

// The files with more than one name that a command has moved to another device: where their further
// names come by, they become names of what was made there, instead of one more copy each.
// Application thread.
class MovedLinks {
 public:
  // All of `source` stands at `target` now; nothing when it has no further name.
  void remember(const struct stat& source, const Place& target);
  // Gives what was made of `source` the name `target`, which must be free. 0, or errno: ENOENT when
  // it wasn't moved by this command, or one of both is not what it was then.
  int link(const struct stat& source, const Place& target);

 private:
  struct Made {
    std::string path;    // as the user knows it
    std::string actual;  // where it was made, below a directory that may carry a temporary name
    struct stat source {};
    struct stat info {};
    nlink_t left = 0;  // names that may still come
  };
  static int linkFrom(const std::string& path, const Made& made, const Place& target);

  std::unordered_map<FileId, Made, FileIdHash> made_;
};
