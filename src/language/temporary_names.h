#pragma once

#include <optional>
#include <vector>

#include "foundation/westring.h"

// Temporary files and directories of this process: "TD#%u.%d" of the low 16 bits of the process id
// and the first sequence number that is free, in the directory that TMP, else TEMP names, else in
// /tmp. Another process may have the same low bits, so a name tells nothing: what was made here is
// kept in a list. Application thread.

// A relative value is passed over: it would mean another place after each change of directory.
Westring temporaryDirectory();

// A new directory of such a name, for this user alone. 0 or errno.
int makeTemporaryDirectory(Westring& path);
// The same in `where`, for a caller who removes it: it isn't kept in the list.
int makeOwnedDirectory(const Westring& where, Westring& path);

// A new file of such a name, for this user alone, that holds the lines, each ended by CR LF.
// Nothing when it couldn't be written whole; then it is gone again.
std::optional<Westring> writeListFile(const std::vector<Westring>& lines);

// Deletes what processes of this user that are no more left behind: names of the form above, last
// changed more than a day ago, while no process lives whose number has these low bits. At the
// start.
void removeLeftOverTemporaries();

// Deletes what was made here and belongs to this user, directories with all they hold, and forgets
// it. A link is unlinked and never followed. What can't be deleted stays, in silence.
void removeTemporaries();
