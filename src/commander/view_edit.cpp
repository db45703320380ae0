#include "commander/view_edit.h"

#include "commander/main_loop.h"
#include "filecommands/archive_actions.h"
#include "foundation/names.h"
#include "language/association_set.h"
#include "language/temporary_names.h"
#include "options/options.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/reader/directory_reader.h"
#include "shell/internal_programs.h"
#include "shell/process_command.h"
#include "tools/directory_sizes.h"

namespace {

constexpr wchar_t DirectoryNote[] = L"dirinfo";

// The associated program comes first, but only for the plain key.
Westring commandFor(AssociationSet& set, const wchar_t* name, Program program,
                    const Westring& first, const Westring& second) {
  if (program == Program::Second) return second;
  const Westring* associated = set.findByName(name);
  return associated ? *associated : first;
}

// `file` "" is the entry under the cursor.
void runProgram(const Westring& command, const Westring& file) {
  processCommand(command, panelPair().activeSide, Westring(), MacroMode::Program, file);
}

// Takes the entry's file out of an archive; elsewhere it stands where it is. False when it could
// not be taken out.
bool fetchFile(Panel& panel, const Westring& name, Westring& path) {
  if (!panel.archive) {
    path = joinPath(shownPath(panel), name);
    return true;
  }
  removeTemporaries();  // of the command before
  path = archiveActions()->extract(panel, name);
  return !path.empty();
}

// The note of the directory that an INFO panel tells about.
void editDirectoryNote(Panel& infoPanel) {
  Westring note = joinPath(shownPath(panelPair().other(infoPanel)), DirectoryNote);
  internalPrograms()->edit(note);
  drawPanel(infoPanel);
}

}  // namespace

void viewCommand(Program program) {
  Panel& panel = panelPair().active();
  entry* item = panel.currentEntry();
  if (bothPanelsOff() || !panel.isFiles() || !item) return;
  if (item->isDirectory()) return countDirectorySizes(panel);
  Westring name = item->name();
  Westring command = commandFor(associationSets().viewers, name.data(), program,
                                GlobalOptions::Viewer, GlobalOptions::Viewer2);
  if (command.empty()) return internalPrograms()->viewList(panel);
  Westring path;
  if (!fetchFile(panel, name, path)) return;
  setWindowTitle(&name);
  runProgram(command, panel.archive ? path : Westring());
}

void editCommand(Program program) {
  Panel& panel = panelPair().active();
  if (!bothPanelsOff() && !panel.isFiles()) return editDirectoryNote(panel);
  entry* item = panel.currentEntry();
  if (bothPanelsOff() || !item || item->isDirectory()) return;
  Westring name = item->name();
  Westring command = commandFor(associationSets().editors, name.data(), program,
                                GlobalOptions::Editor, GlobalOptions::Editor2);
  Westring path;
  if (!fetchFile(panel, name, path)) return;
  setWindowTitle(&name);
  if (!command.empty()) return runProgram(command, panel.archive ? path : Westring());
  internalPrograms()->edit(path);
  panelRefresh();
}
