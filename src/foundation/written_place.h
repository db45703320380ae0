#pragma once

#include <string>

#include "foundation/system.h"

enum class Links { Follow, Refuse };

// Where a file that is to be written really lies.
struct WrittenPlace {
  Descriptor directory;       // O_PATH, so that nobody can lead elsewhere what is done in it
  std::string name;           // in it
  std::string directoryPath;  // for messages
};

// Goes through symbolic links at the path's end as the system would; what the last one names need
// not exist. 0 or errno: ELOOP for a circle, or for any link when they are refused; EACCES for a
// link of somebody else in a directory where everybody may put one; EISDIR for a path without a
// name at its end.
int findWrittenPlace(const std::string& path, Links links, WrittenPlace& place);
