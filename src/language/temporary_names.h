#pragma once

#include <optional>
#include <vector>

#include "foundation/westring.h"

// Temporary files and directories of this process: "TD#%u.%d" of the low 16 bits of the process id
// and a sequence number, in the directory that TMP, else TEMP names, else in /tmp. Application
// thread.

// A relative value is passed over: it would mean another place after each change of directory.
Westring temporaryDirectory();

// The full path of the first name that nothing has yet; nothing is made. 0, or errno when no
// look-up tells.
int tempName(Westring& path);

// A new directory of such a name, for this user alone. 0 or errno.
int makeTemporaryDirectory(Westring& path);

// A new file of such a name, for this user alone, that holds the lines, each ended by CR LF.
// Nothing when it couldn't be written whole; then it is gone again.
std::optional<Westring> writeListFile(const std::vector<Westring>& lines);

// Deletes what has a name of this process and belongs to this user, directories with all they hold.
// A link is unlinked and never followed. What can't be deleted stays, in silence.
void removeTemporaries();
