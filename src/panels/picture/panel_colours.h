#pragma once

#include "foundation/entry.h"

// The colour of an entry as it stands in its list: tagged, or by its kind and the configured
// phrases.
unsigned char naturalColour(const entry& item);
// The same under the cursor bar.
unsigned char barColour(const entry& item);
