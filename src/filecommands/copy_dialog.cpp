#include "filecommands/copy_dialog.h"

#include <algorithm>

#include "console/key_codes.h"
#include "filecommands/history_windows.h"
#include "foundation/names.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 76, Rows = 7;
constexpr int UpperQuarter = -4;
constexpr int Left = 1, LineRow = 0, FieldRow = 2, ButtonRow = 4;
constexpr int FieldWidth = 72, FieldLength = 512;
constexpr int OkColumn = 14, CancelColumn = 22, TreeColumn = 34, HistoryColumn = 48;
constexpr int NameWidth = 55;
constexpr Key::Code ToggleKeys[] = {Key::AltD, Key::F5, Key::F6};

const char* verbOf(TransferKind kind) {
  return kind == TransferKind::Copy ? "Copy" : "Move";
}

bool isToggleKey(Key::Code key) {
  return std::find(std::begin(ToggleKeys), std::end(ToggleKeys), key) != std::end(ToggleKeys);
}

// The buttons that only help to fill the field; true when they did.
bool pick(Key::Code key, Westring& text) {
  PanelPair& pair = panelPair();
  const bool tree = key == Key::F10;
  const Westring chosen = tree ? directoryTree()->choose(pair.active(), TreeWindowUse::Field)
                               : historyWindows()->chooseDirectory();
  if (chosen.empty()) return false;
  text = tree ? chosen : addSlash(chosen);
  return true;
}

}  // namespace

CopyDialogTexts copyDialogTexts(TransferKind kind, const Westring& name) {
  const bool copy = kind == TransferKind::Copy;
  const Westring verb(copy ? "Copy" : "Move/Rename");
  return {copy ? " Copy " : " Move/Rename ",
          verb + L" \"" + shortenPath(name, NameWidth) + L"\" to"};
}

CopyDialogTexts copyDialogTexts(TransferKind kind, int count) {
  Estring line;
  line.format("%s %d file%c to", verbOf(kind), count, count < 2 ? ' ' : 's');
  return {kind == TransferKind::Copy ? " Copy " : " Move/Rename ", Westring(line)};
}

Westring toggledDirectory(const Westring& text, const Westring& directory) {
  const int slash = text.rfind(L'/');
  if (slash >= 0) return Westring(text.data() + slash + 1);
  return directory.empty() ? text : addSlash(directory) + text;
}

bool runCopyDialog(const CopyDialogTexts& texts, Westring& text, const Westring& otherDirectory,
                   Toggle toggle, const std::function<bool(const Westring& text)>& accepts) {
  // A longer proposal stays whole; only typing is limited.
  const int longest = std::max(FieldLength, text.length());
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.putFrameTitle(texts.title);
  dialog.put(Left, LineRow, texts.line);
  const int field = dialog.addString(Left, FieldRow, Group::New, &text, FieldWidth, longest,
                                     FieldHistory::Destination);
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.addButton(TreeColumn, ButtonRow, Group::Same, Key::F10, "F10-Tree");
  dialog.addButton(HistoryColumn, ButtonRow, Group::Same, Key::AltBackslash, "Dir Hist");
  if (toggle == Toggle::On) {
    for (const Key::Code key : ToggleKeys) dialog.addExitKey(key);
  }
  for (;;) {
    const Key::Code key = dialog.run();
    if (key == Key::F10 || key == Key::AltBackslash) {
      if (pick(key, text)) dialog.redraw(field);
    } else if (isToggleKey(key)) {
      text = toggledDirectory(text, otherDirectory);
      dialog.redraw(field);
    } else if (key != Key::Enter) {
      return false;
    } else if (!accepts || accepts(text)) {
      return true;
    }
  }
}
