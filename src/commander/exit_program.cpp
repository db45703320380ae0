#include "commander/exit_program.h"

#include "config/config_writer.h"
#include "console/text_state.h"
#include "foundation/file_mode_mask.h"
#include "foundation/safe_file.h"
#include "foundation/utf8.h"
#include "language/shell_quote.h"
#include "language/temporary_names.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/panel_window.h"
#include "ui/alert.h"

bool confirmExit() {
  if (GlobalOptions::Confirmations & ConfirmationOff::Quit) return true;
  return alert("Are you sure you want to exit TD/X ?", L"", AlertButtons::OkCancel) == Answer::Yes;
}

void leavePanels() {
  constexpr int shellCursor = 15;
  if (GlobalOptions::AutoSave) saveConfiguration();
  directoryTree()->save();
  for (int side = 1; side >= 0; --side) {
    Panel& panel = panelPair().side[side];
    while (panel.archive) panel.archive = std::move(panel.archive->parent);
    closePanelWindow(side);
  }
  removeTemporaries();
  setTextAttr(colourOf(Colour::CommandLine));
  int row = panelPair().screenLines - 2;
  for (int i = 0; i < 2; ++i) {
    setTextPos(0, row + i);
    clearToEndOfLine();
  }
  setTextPos(0, row);
  setCursorShape(shellCursor);
  Westring noTitle;
  setWindowTitle(&noTitle);
  syncCursor();
}

void writeExitScript(const Westring& script, const Westring& directory) {
  constexpr mode_t scriptMode = 0660;  // before the umask
  constexpr int driveLength = 2;       // the record keeps the form of a drive letter and a path
  Estring first = toUtf8(left(directory, 1));
  Westring rest = directory.length() > driveLength ? mid(directory, driveLength, 0) : Westring();
  Estring text = first + ":\r\ncd \"" + toUtf8(escapeInDoubleQuotes(rest)) + "\"\r\n";
  SafeFile file;
  if (file.create(script, Links::Refuse) != 0) return;
  if (file.write(text.data(), text.length()) == 0) file.commit(scriptMode & ~fileModeMask());
}
