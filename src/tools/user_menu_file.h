#pragma once

#include <functional>
#include <memory>

#include "console/key_codes.h"
#include "foundation/string_collections.h"
#include "foundation/system.h"

class MenuStore;

// One command of the user menu. Texts are UTF-8 bytes as the file has them, commands wide as a
// command line is.
struct MenuEntry {
  Key::Code keyCode;
  Estring key;  // as it is shown, in upper case
  Estring title;
  FnStringStore commands;
  std::unique_ptr<MenuStore> submenu;
};

class MenuStore : public TObjectStore<MenuEntry> {
 public:
  int greatestKeyLength = 0;  // characters
};

// Which key an entry's key text names: one character, or F1 to F12, also with C, S or A in front
// for Ctrl, Shift and Alt. 0 for none.
Key::Code menuKeyCode(const Westring& upperCaseText);

// Told of an include that isn't read; false when the user has seen enough of them.
using MenuTeller = std::function<bool(const char* text, const Westring& file)>;

// The menu of an open file, which is a regular one and known by `path`; menus that it includes are
// looked for from its directory. What can't be read is told and left out, lines that are malformed
// in silence.
inline constexpr int DeepestMenu = 32;     // includes in each other, and submenus in each other
inline constexpr int MostIncludes = 1000;  // in all
inline constexpr size_t LongestMenu = 4 << 20;  // bytes of one file
void readMenu(const Descriptor& file, const Westring& path, MenuStore& menu,
              const MenuTeller& tell);
