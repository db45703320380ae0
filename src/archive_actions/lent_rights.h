#pragma once

#include <sys/types.h>

#include <unordered_map>

#include "foundation/place.h"

// Directories that a tool wrote and their owner may not write in. Neither they nor what is in them
// can be moved: until they are in place, they may be written in. No link is followed, and what
// can't be changed stays as it is. Application thread.
class LentRights {
 public:
  // To the directory and all below it.
  void lend(const Place& directory);
  // From those that are this directory or lie below it by now.
  void takeBack(const Place& directory);

 private:
  std::unordered_map<FileId, mode_t, FileIdHash> modes_;  // that they have by themselves
};
