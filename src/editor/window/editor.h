#pragma once

#include <cstdint>

#include "foundation/westring.h"

// Edits one file with the screen and the keyboard to itself until the user leaves it. With an
// offset (a byte position, -1 for none) the cursor starts there, and that many characters from
// there on are selected. What the user must know is shown by then; the caller draws its own screen
// anew. Application thread.
void editFile(const Westring& path, int64_t offset = -1, int64_t selection = 0);
