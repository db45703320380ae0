#pragma once

#include <optional>
#include <string>

// At most the first `limit` bytes of a regular file, also when it is reached through a link.
// Nothing when it can't be read or is no regular file; a pipe or a device is neither opened nor
// waited for.
std::optional<std::string> readBeginning(const char* utf8Path, size_t limit);
