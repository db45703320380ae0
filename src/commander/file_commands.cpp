#include "commander/command_rooms.h"
#include "commander/file_dialogs.h"
#include "commander/view_edit.h"
#include "filecommands/archive_actions.h"
#include "filecommands/attribute_command.h"
#include "filecommands/case_command.h"
#include "filecommands/copy_command.h"
#include "filecommands/date_command.h"
#include "filecommands/delete_by_name.h"
#include "filecommands/delete_command.h"
#include "filecommands/link_command.h"
#include "filecommands/make_directory.h"
#include "filecommands/object_command.h"
#include "search_dialogs/compare_directories.h"
#include "search_dialogs/file_find.h"
#include "tools/directory_sizes.h"

namespace {

Panel& active() {
  return panelPair().active();
}

void copyOrMove(int flags) {
  Panel& other = panelPair().inactive();
  bool archived = active().archive || (other.showing && other.isFiles() && other.archive);
  if (archived) {
    const bool moves = flags & CopyFlag::Move;
    return archiveActions()->transfer(active(), moves ? TransferKind::Move : TransferKind::Copy);
  }
  copyCommand(active(), flags);
}

Action finding(FindList list) {
  return [list] { fileFind(panelPair().activeSide, list); };
}

std::vector<Command> viewAndEditRows() {
  using enum When;
  return {
      {.name = "View",
       .codes = {Key::F3},
       .run = [] { viewCommand(Program::First); },
       .menu = {"View               F3", 0},
       .label = "View",
       .help = HelpTopic::Viewer},
      {.name = "View with the second viewer",
       .codes = {Key::AltF3},
       .run = [] { viewCommand(Program::Second); },
       .label = "View..",
       .help = HelpTopic::Viewer},
      {.name = "View a named file",
       .codes = {Key::ShiftF3},
       .when = NoArchive,
       .run = viewNamedFile,
       .label = "View..",
       .help = HelpTopic::Viewer},
      {.name = "Edit",
       .codes = {Key::F4},
       .run = [] { editCommand(Program::First); },
       .menu = {"Edit               F4", 0},
       .label = "Edit",
       .help = HelpTopic::Editor},
      {.name = "Edit with the second editor",
       .codes = {Key::AltF4},
       .run = [] { editCommand(Program::Second); },
       .label = "Edit..",
       .help = HelpTopic::Editor},
      {.name = "Edit a named file",
       .codes = {Key::ShiftF4},
       .when = NoArchive,
       .run = editNamedFile,
       .label = "Edit..",
       .help = HelpTopic::Editor},
  };
}

std::vector<Command> copyRows() {
  using enum When;
  return {
      {.name = "Copy",
       .codes = {Key::F5},
       .when = PanelsOn | Files,
       .run = [] { copyOrMove(0); },
       .menu = {"Copy               F5", 0},
       .label = "Copy"},
      {.name = "Rename or move",
       .codes = {Key::F6},
       .when = PanelsOn | Files,
       .run = [] { copyOrMove(CopyFlag::Move); },
       .menu = {"Rename or Move     F6", 0},
       .label = "RenMov"},
      {.name = "Copy under a name",
       .codes = {Key::ShiftF5},
       .when = PanelsOn | Files | NoArchive,
       .run = [] { copyCommand(active(), CopyFlag::BareName); },
       .label = "Copy"},
      {.name = "Rename",
       .codes = {Key::ShiftF6},
       .when = PanelsOn | Files | NoArchive,
       .run = [] { copyCommand(active(), CopyFlag::Move | CopyFlag::BareName); },
       .label = "Rename"},
      {.name = "Make a symbolic link",
       .codes = {Key::CtrlShiftF5},
       .when = PanelsOn | Files | NoArchive,
       .run = [] { linkCommand(active()); },
       .label = "SymLnk"},
      {.name = "Compress into an archive",
       .codes = {Key::ShiftF7},
       .run = [] { archiveActions()->compress(active()); },
       .label = "MkArch"},
  };
}

std::vector<Command> makeAndDeleteRows() {
  using enum When;
  return {
      {.name = "Make directory",
       .codes = {Key::F7},
       .when = NoArchive,
       .run = [] { makeDirectoryCommand(panelPair().activeSide); },
       .menu = {"Make Directory     F7", 0},
       .label = "Mkdir"},
      {.name = "Make objects",
       .codes = {Key::AltF6},
       .run = [] { objectCommand(active()); },
       .label = "Object"},
      {.name = "Delete",
       .codes = {Key::F8},
       .when = PanelsOn | Files,
       .run = [] { deleteCommand(active()); },
       .menu = {"Delete             F8", 0},
       .label = "Delete"},
      {.name = "Delete by name",
       .codes = {Key::ShiftF8},
       .run = [] { deleteByNameCommand(active()); },
       .label = "DelOne"},
  };
}

std::vector<Command> attributeRows() {
  using enum When;
  return {
      {.name = "File attributes",
       .codes = {Key::ctrl('a')},
       .when = NoArchive,
       .run = [] { attributeCommand(active()); },
       .menu = {"File Attributes    Ctrl-A", 5}},
      {.name = "File case",
       .codes = {Key::ctrl('c')},
       .when = NoArchive,
       .run = [] { caseCommand(active()); },
       .menu = {"File Case          Ctrl-C", 0}},
      {.name = "File date and time",
       .codes = {MenuCode::FileDateTime},
       .when = NoArchive,
       .run = [] { dateCommand(active()); },
       .menu = {"File Date/Time", 10}},
  };
}

std::vector<Command> searchRows() {
  using enum When;
  return {
      {.name = "File find",
       .codes = {Key::AltF7},
       .run = finding(FindList::New),
       .menu = {"File Find            Alt-F7", 0},
       .label = "Find",
       .help = HelpTopic::FileFind},
      {.name = "File find with the last result",
       .codes = {Key::ShiftAltF7},
       .run = finding(FindList::Last),
       .label = "FindRC",
       .help = HelpTopic::FileFind},
      {.name = "Compare directories",
       .codes = {Key::ctrl('k')},
       .run = compareDirectories,
       .menu = {"Compare Directories  Ctrl-K", 0},
       .help = HelpTopic::DirectoryCompare},
      {.name = "Calculate directory sizes",
       .codes = {Key::ctrl('q')},
       .when = PanelsOn | Files | Entry,
       .run = [] { countDirectorySizes(panelPair().active()); },
       .menu = {"Calculate Dir Size   Ctrl-Q", 10}},
  };
}

}  // namespace

std::vector<Command> fileCommands() {
  return joined(
      {viewAndEditRows(), copyRows(), makeAndDeleteRows(), attributeRows(), searchRows()});
}
