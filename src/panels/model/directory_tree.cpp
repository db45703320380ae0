#include "panels/model/directory_tree.h"

#include "panels/model/panel.h"

Connection<DirectoryTree>& directoryTree() {
  static Connection<DirectoryTree> tree;
  return tree;
}

Westring treeDirectory(const Panel& panel) {
  if (!panel.isTreeStyle() || !panel.currentEntry()) return Westring();
  return directoryTree()->pathOf(panel, panel.currentIndex());
}
