#pragma once

#include "console/key_codes.h"

enum class MenuStart { Fresh, Reopen };

// Runs the menu bar until a command is chosen and returns its code, or NoKey. Fresh starts at the
// menu of `side` with nothing open; Reopen returns to the last place.
Key::Code pullDownMenu(int side, MenuStart start);
