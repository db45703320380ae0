#include "archive_actions/destination_dialog.h"

#include <algorithm>

#include "foundation/text_format.h"
#include "options/colours.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 76, Rows = 7;
constexpr int UpperQuarter = -4;
constexpr int Left = 1, LineRow = 0, FieldRow = 2, ButtonRow = 4;
constexpr int FieldWidth = 72, FieldLength = 512, NameWidth = 50;
constexpr int OkColumn = 21, CancelColumn = 29, TreeColumn = 41;

Westring verbOf(ArchiveAction action, TransferKind kind) {
  const Westring verb(action == ArchiveAction::Extract ? L"Extract" : L"Compress");
  return kind == TransferKind::Move ? verb + L" and Move" : verb;
}

}  // namespace

Westring destinationLine(ArchiveAction action, TransferKind kind, const Westring& name) {
  return verbOf(action, kind) + L" \"" + shortenPath(name, NameWidth) + L"\" to";
}

Westring destinationLine(ArchiveAction action, TransferKind kind, int count) {
  Estring counted;
  counted.format(" %d file%c to", count, count < 2 ? ' ' : 's');
  return verbOf(action, kind) + Westring(counted);
}

bool askArchiveDestination(const Westring& line, Westring& text) {
  // A longer proposal stays whole; only typing is limited.
  const int longest = std::max(FieldLength, text.length());
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.put(Left, LineRow, line);
  const int field = dialog.addString(Left, FieldRow, Group::New, &text, FieldWidth, longest);
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.addButton(TreeColumn, ButtonRow, Group::Same, Key::F10, "F10-Tree");
  for (;;) {
    const Key::Code key = dialog.run();
    if (key != Key::F10) {
      text = trim(text);
      return key == Key::Enter;
    }
    const Westring chosen = directoryTree()->choose(panelPair().active(), TreeWindowUse::Field);
    if (chosen.empty()) continue;
    text = chosen;
    dialog.redraw(field);
  }
}
