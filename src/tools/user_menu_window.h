#pragma once

#include "tools/user_menu_file.h"

// Shows a menu, and the ones below it as they are opened, until an entry with commands is chosen,
// or one with nothing at all; null when the user left. There must be entries. Application thread.
const MenuEntry* chooseFromMenu(MenuStore& menu);
