#include "commander/connect.h"

#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"

void connectModules() {
  static DirectoryTree noTree;
  static ArchiveActions noArchives;
  static HistoryWindows noWindows;
  directoryTree().connect(noTree);
  archiveActions().connect(noArchives);
  historyWindows().connect(noWindows);
}
