#pragma once

#include <cstddef>
#include <string>

#include "foundation/system.h"
#include "foundation/westring.h"

// Reading a file that the program keeps in a directory of anybody: a link, a pipe or a device of
// that name is never opened through, and never waited for.

// Opens for reading when the path itself is a regular file. 0 or errno: ELOOP for a link, EISDIR,
// EINVAL for anything else that is no file.
int openRegularFile(const Westring& path, Descriptor& result);

// The whole content. 0 or errno; EFBIG, with nothing read, when the file is longer than `limit`
// bytes.
int readRegularFile(const Westring& path, std::string& content, size_t limit);
