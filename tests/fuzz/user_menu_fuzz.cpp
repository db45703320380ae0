#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "tools/user_menu_file.h"

namespace {
// No menu lies deeper than it may, and each entry can be chosen.
void check(MenuStore& menu, int submenus) {
  if (submenus > DeepestMenu) abort();
  for (int i = 0; i < menu.count(); ++i) {
    MenuEntry& entry = *menu.peek(i);
    if (entry.keyCode == Key::NoKey || entry.key.empty()) abort();
    if (entry.submenu) check(*entry.submenu, submenus + 1);
  }
}
}  // namespace

// Whatever a user menu holds.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Descriptor menuFile(memfd_create("menu", MFD_CLOEXEC));
  const int file = menuFile.get();
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) abort();
  if (lseek(file, 0, SEEK_SET) != 0) abort();
  MenuStore menu;
  readMenu(menuFile, L"/nonexistent/td.mnu", menu,
           [](const char*, const Westring&) { return true; });
  check(menu, 0);
  return 0;
}
