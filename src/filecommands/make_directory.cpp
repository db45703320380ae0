#include "filecommands/make_directory.h"

#include <cerrno>

#include "console/key_codes.h"
#include "filecommands/console_ui.h"
#include "filecommands/entry_path.h"
#include "fileops/error_dialog.h"
#include "fileops/folded_name.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 76, Rows = 6;
constexpr int UpperQuarter = -4;
constexpr int Left = 1, LabelRow = 0, FieldRow = 1, ButtonRow = 3;
constexpr int FieldWidth = 72, FieldLength = 512;
constexpr int OkColumn = 28, CancelColumn = 36;

// This system tells no names of file systems.
constexpr wchar_t FileSystemName[] = L"";

// "" on Esc.
Westring askName() {
  Westring text;
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.put(Left, LabelRow, L"Create the directory");
  dialog.addString(Left, FieldRow, Group::New, &text, FieldWidth, FieldLength, FieldHistory::None);
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  return dialog.run() == Key::Enter ? trim(text) : Westring();
}

Westring parentDirectory(const Panel& panel) {
  if (panel.type == PanelType::Info) return panelOpposite(panel).path;
  if (panel.isTreeStyle()) return treeDirectory(panel);
  return panel.path;
}

// False when it wasn't made; told then.
bool make(OperationUi& ui, const Westring& path, const Westring& text) {
  for (;;) {
    const int error = makeDir(path);
    if (error == 0) return true;
    if (error == EACCES && pathExists(path)) {
      const char* message =
          isDirectoryPath(path) ? "Directory already exists" : "File already exists named";
      static_cast<void>(ui.ask(Westring(message), text, AlertButtons::Ok, AlertColour::Error));
      return false;
    }
    if (showError(ui, error, path) != ErrorAnswer::Retry) return false;
  }
}

void tellTree(const Panel& panel, const Westring& path) {
  const bool folded = isInCaseFilter(FileSystemName, GlobalOptions::CaseFilter);
  directoryTree()->made(panel,
                        folded ? decodeFileName(foldedName(toUtf8(path).data()).c_str()) : path);
  directoryTree()->save();
}

}  // namespace

void makeDirectoryCommand(int side) {
  Panel& panel = panelPair().side[side];
  const Westring text = askName();
  if (text.empty()) return;
  const Westring parent = parentDirectory(panel);
  if (parent.empty() && text[0] != L'/') return;
  const Westring path = withoutSlashes(text[0] == L'/' ? text : joinPath(parent, text));
  ConsoleUi ui;
  if (!make(ui, path, text)) return;
  tellTree(panel, path);
  panelRefresh();
  if (!sameName(parentOf(path), panel.path)) return;
  selectName(panel, lastComponent(path).data());
  drawPanel(panel);
}
