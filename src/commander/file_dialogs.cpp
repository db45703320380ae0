#include "commander/file_dialogs.h"

#include "console/key_codes.h"
#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "language/typed_path.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "shell/internal_programs.h"
#include "shell/process_command.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {

constexpr int FieldX = 1, FieldY = 2;

struct OneFieldLayout {
  int top;
  int width;
  int height;
  int fieldWidth;
};
constexpr OneFieldLayout NamedFile{6, 74, 9, 70};
constexpr OneFieldLayout Filter{5, 76, 8, 72};
constexpr int MaxFieldLength = 512;

// True when the user ended the dialog with Enter; `text` is untouched otherwise.
bool askText(const OneFieldLayout& layout, const char* heading, FieldHistory history,
             Westring& text) {
  Westring edited = text;
  Dialog dialog(-1, layout.top, layout.width, layout.top + layout.height - 1,
                colourOf(Colour::Messages));
  dialog.addText(-1, 0, heading);
  dialog.addString(FieldX, FieldY, Group::New, &edited, layout.fieldWidth, MaxFieldLength, history);
  const Key::Code ended = dialog.run();
  if (ended == Key::Esc || ended == Dialog::ProgramEnds) return false;
  text = edited;
  return true;
}

// A typed name as a path of the active panel; false when it can't be one.
bool askFile(const char* heading, Westring& path) {
  Panel& panel = panelPair().active();
  const entry* item = panel.currentEntry();
  path = item ? item->name() : L"";
  if (!askText(NamedFile, heading, FieldHistory::ViewFile, path)) return false;
  if (trim(path).empty()) return false;
  // In an archive only the listing knows what is there.
  if (item && sameName(path, item->name())) {
    path = joinPath(shownPath(panel), path);
    return true;
  }
  const Westring typed = path;
  if (existsAsWritten(typed, shownPath(panel), path)) return true;
  if (canonicalPath(path, &shownPath(panel)) == 0) return true;
  alert("Invalid path", typed, AlertButtons::Ok, AlertColour::Error);
  return false;
}

void runOn(const Westring& path, const Westring& program) {
  processCommand(program, panelPair().activeSide, Westring(), MacroMode::Program, path);
}

}  // namespace

void viewNamedFile() {
  Westring path;
  if (!askFile("View the file:", path)) return;
  if (!GlobalOptions::Viewer.empty()) {
    runOn(path, GlobalOptions::Viewer);
    return;
  }
  internalPrograms()->view(path);
}

void editNamedFile() {
  Westring path;
  if (!askFile("Edit the file:", path)) return;
  if (!GlobalOptions::Editor.empty()) {
    runOn(path, GlobalOptions::Editor);
  } else {
    internalPrograms()->edit(path);
  }
  panelRefresh();
  Panel& panel = panelPair().active();
  if (!sameName(parentOf(path), shownPath(panel))) return;
  selectName(panel, lastComponent(path).data());
  drawPanel(panel);
}

void setFilterDialog(int side) {
  Panel& panel = panelPair().side[side];
  Estring heading;
  heading.format("Filter for %s panel", side == 0 ? "left" : "right");
  if (!askText(Filter, heading.data(), FieldHistory::Filter, panel.filter)) return;
  (side == 0 ? GlobalOptions::LeftFilter : GlobalOptions::RightFilter) = panel.filter;
  if (panel.isTree()) panel.rescanTree = true;
  enterPath(panel, L"", KeepTags::Yes);
  drawPanel(panel);
}
