#pragma once

#include "foundation/westring.h"

// Asks how names are to change; the answer goes into the options. False on Esc, which changes
// nothing. `subject`: whose names.
bool askCase(const Westring& subject);
