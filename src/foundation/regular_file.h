#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "foundation/file_stamp.h"
#include "foundation/system.h"
#include "foundation/westring.h"
#include "foundation/written_place.h"

// Reading small files: a pipe or a device of that name is never read, and never waited for. For the
// program's own files, in a directory of anybody a link isn't opened through either; in the user's
// own one it is.

// Opens for reading when the path is a regular file. 0 or errno: ELOOP for a refused link, EISDIR,
// EINVAL for anything else that is no file.
int openRegularFile(const Westring& path, Descriptor& result, Links links = Links::Refuse);

// The whole content of an open file, from where it stands. 0 or errno; EFBIG when there is more
// than `limit` bytes. After an error nothing has been read.
int readWhole(const Descriptor& file, std::string& content, size_t limit);
// The whole content. 0 or errno; EFBIG, with nothing read, when the file is longer than `limit`
// bytes. `stamp`, where one is wanted, tells what the file was before it was read.
int readRegularFile(const Westring& path, std::string& content, size_t limit,
                    Links links = Links::Refuse, FileStamp* stamp = nullptr);

// At most the first `limit` bytes of a regular file, also when it is reached through a link.
// Nothing when it can't be read or is no regular file; a pipe or a device is neither opened nor
// waited for.
std::optional<std::string> readBeginning(const char* utf8Path, size_t limit);
