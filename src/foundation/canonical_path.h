#pragma once

#include "foundation/westring.h"

// Typed or stored text made into an absolute path: '\' becomes '/', ':' anywhere but in second
// place fails, n dots go up n-1 levels (above the root fails). Relative paths start at `base`, or
// at the working directory when it is null; the base is a real path and taken as it is. 0, or -1
// with errno (ENAMETOOLONG when the result can't be held) and the path unchanged.
int canonicalPath(Westring& path, const Westring* base = nullptr);
// The same for a path that is meant as it is written: only "." and ".." and repeated slashes are
// worked out, a backslash, a colon and a longer run of dots belong to names.
int writtenPath(Westring& path, const Westring* base = nullptr);
