#include "commander/connect.h"

#include "archive/archive_chain.h"
#include "archive_actions/actions_by_tools.h"
#include "archive_actions/open_archive.h"
#include "editor/window/editor.h"
#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"
#include "shell/internal_programs.h"
#include "tools/directory_history_window.h"
#include "tools/help.h"
#include "tools/panel_trees.h"
#include "tools/view_list.h"

namespace {

// Shell, menus and keys show files; viewer and editor stand beside or above them.
class ViewerAndEditor : public InternalPrograms {
  void view(const Westring& path) override { viewOne(path); }
  void viewList(Panel& panel) override { ::viewList(panel); }
  void edit(const Westring& path) override { editFile(path); }
};

}  // namespace

void connectModules() {
  static ActionsByTools archivers;
  static HelpOfFile help;
  static HistoryWindowsOfTools windows;
  static ViewerAndEditor viewerAndEditor;
  // Panels list archives; opening one shows boxes, which they stand below.
  archiveOpener() = openArchiveShown;
  // Panels and copies tell the tree what they change; its window shows panels.
  directoryTree().connect(panelTrees());
  // Copy and delete meet archives; packers run in the shell, which stands on both.
  archiveActions().connect(archivers);
  // Fields of the file dialogs choose from the histories, whose windows stand on panels.
  historyWindows().connect(windows);
  // F1 works in every dialog; the help is a window itself and reads the program's data.
  helpWindow().connect(help);
  internalPrograms().connect(viewerAndEditor);
}
