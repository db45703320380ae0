#include "commander/connect.h"

#include "archive/archive_chain.h"
#include "archive_actions/open_archive.h"
#include "commander/command_seams.h"
#include "editor/window/editor.h"
#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"
#include "search_dialogs/compare_directories.h"
#include "search_dialogs/file_find.h"
#include "shell/internal_programs.h"
#include "tools/directory_history_window.h"
#include "tools/help.h"
#include "tools/panel_trees.h"
#include "tools/view_list.h"

namespace {

class ViewerAndEditor : public InternalPrograms {
  void view(const Westring& path) override { viewOne(path); }
  void viewList(Panel& panel) override { ::viewList(panel); }
  void edit(const Westring& path) override { editFile(path); }
};

}  // namespace

void connectModules() {
  static ArchiveActions noArchives;
  static HelpOfFile help;
  static HistoryWindowsOfTools windows;
  static ViewerAndEditor viewerAndEditor;
  archiveOpener() = openArchiveShown;
  directoryTree().connect(panelTrees());
  archiveActions().connect(noArchives);
  historyWindows().connect(windows);
  helpWindow().connect(help);
  internalPrograms().connect(viewerAndEditor);
  commandSeams().compareDirectories = compareDirectories;
  commandSeams().fileFind = [](int side, FindStart start) {
    fileFind(side, start == FindStart::Anew ? FindList::New : FindList::Last);
  };
}
