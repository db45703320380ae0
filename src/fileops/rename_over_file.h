#pragma once

#include "fileops/operation.h"

// Puts a directory in the place of an existing file, which goes: in one step where the system can
// exchange two names, else with the file standing aside under a temporary name meanwhile. 0 or
// errno; after an error both are where they were. A file that has to stay aside, because it can
// neither go nor come back, is told.
int renameDirectoryOverFile(RunningOperation& operation, const Place& directory, const Place& file);
