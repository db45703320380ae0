#pragma once

#include <string>

#include "foundation/westring.h"

// Paths as the system has them: UTF-8 or whatever bytes a name holds, split at '/' only.

std::string bytePath(const Westring& path);
std::string byteParent(const std::string& path);  // "/a/b" -> "/a", "/a" -> "/", "a" -> "."
const char* byteName(const char* path);           // behind the last '/'
// Puts `name` behind the first `length` bytes of `path`.
void replaceTail(std::string& path, size_t length, const char* name);

// Longer paths can't be given to the system in one piece.
inline constexpr size_t LongestPath = 4095;
