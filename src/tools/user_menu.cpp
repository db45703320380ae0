#include "tools/user_menu.h"

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "panels/model/panel_pair.h"
#include "shell/process_command.h"
#include "tools/user_menu_place.h"
#include "tools/user_menu_window.h"
#include "ui/alert.h"

namespace {

bool tellInBox(const char* text, const Westring& file) {
  const int answer = alert(text, file, AlertButtons::Ok, AlertColour::Error);
  return answer != Answer::Cancel && answer != Answer::ProgramEnds;
}

MenuFile menuFor(int side, UserMenuKind kind) {
  if (kind == UserMenuKind::OfDirectory) {
    const Westring name = lastComponent(dataFilePath(DataFile::UserMenu));
    MenuFile local = findLocalMenu(physicalDirectory(panelPair().side[side]), name);
    if (local.file.valid()) return local;
  }
  return openMainMenu();
}

}  // namespace

void userMenu(int side, UserMenuKind kind) {
  const MenuFile file = menuFor(side, kind);
  if (!file.file.valid()) return;
  MenuStore menu;
  readMenu(file.file, file.path, menu, tellInBox);
  if (menu.count() == 0) return;
  if (const MenuEntry* entry = chooseFromMenu(menu)) processSeries(entry->commands, side);
}
