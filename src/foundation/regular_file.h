#pragma once

#include <cstddef>
#include <string>

#include "foundation/file_stamp.h"
#include "foundation/system.h"
#include "foundation/westring.h"
#include "foundation/written_place.h"

// Reading the program's own files: a pipe or a device of that name is never read, and never waited
// for. In a directory of anybody a link isn't opened through either; in the user's own one it is.

// Opens for reading when the path is a regular file. 0 or errno: ELOOP for a refused link, EISDIR,
// EINVAL for anything else that is no file.
int openRegularFile(const Westring& path, Descriptor& result, Links links = Links::Refuse);

// The whole content. 0 or errno; EFBIG, with nothing read, when the file is longer than `limit`
// bytes. `stamp`, where one is wanted, tells what the file was before it was read.
int readRegularFile(const Westring& path, std::string& content, size_t limit,
                    Links links = Links::Refuse, FileStamp* stamp = nullptr);
