#pragma once

#include <cerrno>

// What a file system answers that has no such thing as was asked of it. Content counts: whoever
// asked does without, or goes another way. Everything else is an error.

inline bool isNotOffered(int error) {
  return error == ENOSYS || error == EOPNOTSUPP || error == ENOTSUP || error == ENOTTY ||
         error == EINVAL;
}

// Owners, times, modes and attributes, which besides are refused for files of others.
inline bool isAttributeNotOffered(int error) {
  return isNotOffered(error) || error == EPERM;
}
