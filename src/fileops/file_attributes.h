#pragma once

#include <sys/stat.h>

#include <optional>

#include "foundation/place.h"

inline constexpr mode_t AttributeBits = 07777;  // set-id, sticky and the nine permissions

// What is to become of a file; whatever isn't said here stays.
struct AttributeChange {
  mode_t clear = 0;  // of AttributeBits
  mode_t set = 0;
  std::optional<uid_t> owner = {};
  std::optional<gid_t> group = {};
};

// Changes what differs, of what a link leads to. 0 and in `after` what the file is then, or errno.
// Set-id bits that a new owner takes away are there again if they were to stay.
int changeAttributes(const Place& file, const AttributeChange& change, struct stat& after);
