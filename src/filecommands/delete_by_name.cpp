#include "filecommands/delete_by_name.h"

#include "console/key_codes.h"
#include "filecommands/confirmations.h"
#include "filecommands/console_ui.h"
#include "filecommands/destination.h"
#include "filecommands/entry_path.h"
#include "fileops/delete_file.h"
#include "fileops/notices.h"
#include "fileops/remove_directory.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 76, Rows = 7;
constexpr int UpperQuarter = -4;
constexpr int Left = 1, LabelRow = 0, FieldRow = 2, ButtonRow = 4;
constexpr int FieldWidth = 72, FieldLength = 512;

Westring startText(const Panel& panel) {
  if (panel.isTreeStyle()) return treeDirectory(panel);
  const entry* current = panel.currentEntry();
  return !current || sameName(current->name(), ParentName) ? Westring() : Westring(current->name());
}

void tellError(const char* text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

// The path that the text names, or "" after a message.
Westring pathOf(const Westring& text, const DestinationContext& context) {
  Destination found;
  if (resolveDestination(text, context, found) != 0) {
    tellError("Invalid Path", text);
    return Westring();
  }
  if (!pathExists(found.path)) {
    tellError("File not found", found.path);
    return Westring();
  }
  return found.path;
}

// A real name may consist of blanks.
bool namesNothing(const Westring& text, const DestinationContext& context) {
  return text.empty() || (trim(text).empty() && !sameName(text, context.proposed));
}

// Asks until the text names something that is there; "" on Esc and on an empty field, which would
// name the panel's own directory.
Westring askPath(const Panel& panel) {
  DestinationContext context;
  context.base = panel.path;
  context.proposed = startText(panel);
  context.entryName = context.proposed;
  Westring text = context.proposed;
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.put(Left, LabelRow, L"Delete the file:");
  dialog.addString(Left, FieldRow, Group::New, &text, FieldWidth,
                   std::max(FieldLength, text.length()), FieldHistory::None);
  dialog.addOkCancel(-1, ButtonRow, Group::New);
  while (dialog.run() == Key::Enter && !namesNothing(text, context)) {
    Westring path = pathOf(text, context);
    if (!path.empty()) return path;
  }
  return Westring();
}

// By what stands there itself: a link goes as a link.
bool isRealDirectory(const Westring& path) {
  struct stat info;
  return lstatPath(path, info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

void deleteByNameCommand(Panel& panel) {
  const Westring path = askPath(panel);
  if (path.empty()) return;
  const bool asked = (GlobalOptions::Confirmations & ConfirmationOff::Delete) == 0;
  if (asked && !askDelete(path, UndeleteBox::Hidden)) return;
  {
    const BreakScope armed;
    ConsoleUi ui;
    RunningOperation operation(ui, GlobalOptions::Confirmations);
    if (isRealDirectory(path)) {
      static_cast<void>(removeDirectory(operation, path));
      directoryTree()->save();
    } else {
      static_cast<void>(deleteFile(operation, path, DeleteMode::One));
    }
    operation.descriptions.flush();
    tellDescriptionLeftovers(operation);
  }
  panelRefresh();
}
