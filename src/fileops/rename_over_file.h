#pragma once

#include "foundation/place.h"

// Puts a directory in the place of an existing file, which goes: in one step where the system can
// exchange two names, else with the file standing aside under a temporary name meanwhile. 0 or
// errno; after an error both are where they were.
int renameDirectoryOverFile(const Place& directory, const Place& file);
