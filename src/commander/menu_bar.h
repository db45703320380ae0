#pragma once

enum class MenuStart { Fresh, Reopen };

// Runs the menu bar until a command is chosen and returns its code, or 0. Fresh starts at the menu
// of `side` with nothing open; Reopen returns to the last place.
int pullDownMenu(int side, MenuStart start);
