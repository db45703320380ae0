#include "filecommands/entry_path.h"

#include "foundation/names.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"

Westring entryPath(const Panel& panel, const wchar_t* name) {
  return name[0] == L'/' ? Westring(name) : joinPath(panel.path, name);
}

bool isReadableDirectory(const Panel& panel) {
  return panel.showing && panel.isList() && !panel.archive && panel.readError == 0;
}

Westring destinationDirectory(const Panel& panel) {
  if (panel.showing && panel.isTree()) return treeDirectory(panel);
  return isReadableDirectory(panel) ? panel.path : Westring();
}

Panel& panelOpposite(const Panel& panel) {
  PanelPair& pair = panelPair();
  return pair.holds(panel) ? pair.other(panel) : pair.inactive();
}

Westring currentDirectoryOf(const Panel& panel) {
  const entry* line = panel.isTree() ? panel.currentEntry() : nullptr;
  return line ? treeDirectory(panel) : shownPath(panel);
}
