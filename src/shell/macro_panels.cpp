#include "shell/macro_panels.h"

#include "filecommands/archive_actions.h"
#include "language/temporary_names.h"
#include "shell/ask_text.h"

Westring PanelMacros::path(MacroPanel which) {
  return shownPath(panel(which));
}

Westring PanelMacros::currentName(MacroPanel which) {
  const entry* item = panel(which).currentEntry();
  return item ? Westring(item->name()) : Westring();
}

int PanelMacros::entryCount(MacroPanel which) {
  return panel(which).count();
}

entry* PanelMacros::entryAt(MacroPanel which, int index) {
  return panel(which).entries[index];
}

bool PanelMacros::inArchive(MacroPanel which) {
  return panel(which).archive != nullptr;
}

std::optional<Westring> PanelMacros::extract(MacroPanel which, const Westring& name) {
  const Westring path = archiveActions()->extract(panel(which), name);
  return path.empty() ? std::nullopt : std::optional<Westring>(path);
}

std::optional<Westring> PanelMacros::ask(const Westring& title) {
  return askText(title);
}

std::optional<Westring> PanelMacros::writeList(const std::vector<Westring>& lines) {
  return writeListFile(lines);
}
