#include "archive_actions/compress_dialog.h"

#include <algorithm>
#include <iterator>

#include "foundation/utf8.h"
#include "options/colours.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 70, Rows = 6;
constexpr int UpperQuarter = -4;
constexpr int Left = 1, LabelRow = 0, FieldRow = 1, ButtonRow = 3;
constexpr int FieldWidth = 44, FieldLength = 512;
constexpr int TypeColumns[] = {48, 58}, TypesInColumn = 4;
constexpr int OkColumn = 12, CancelColumn = 20;
constexpr char NameHotKey[] = "N";
constexpr ArchiveType Types[] = {ArchiveType::Zip,  ArchiveType::Rar, ArchiveType::Lharc,
                                 ArchiveType::Arj,  ArchiveType::Ace, ArchiveType::Ha,
                                 ArchiveType::Gzip, ArchiveType::Tar};
static_assert(std::size(Types) <= std::size(TypeColumns) * TypesInColumn);

void addTypes(Dialog& dialog, int* chosen) {
  Group group = Group::New;
  for (const ArchiveType type : Types) {
    const int number = static_cast<int>(type);
    dialog.addRadio(TypeColumns[number / TypesInColumn], number % TypesInColumn, group, chosen,
                    number, toUtf8(archiveTypeName(type)).data());
    group = Group::Same;
  }
}

}  // namespace

bool askNewArchive(Westring& name, ArchiveType& type,
                   const std::function<bool(const Westring& name, ArchiveType type)>& accepts) {
  static int lastChosen = static_cast<int>(ArchiveType::Zip);
  int chosen = lastChosen;
  // A longer proposal stays whole; only typing is limited.
  const int longest = std::max(FieldLength, name.length());
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.putFrameTitle(" Compress Files ");
  dialog.putHotKeys(Left, LabelRow, "Archive Name:", NameHotKey);
  dialog.addString(Left, FieldRow, Group::New, &name, FieldWidth, longest, FieldHistory::Archive);
  addTypes(dialog, &chosen);
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.setHotChars(NameHotKey, 1);
  for (;;) {
    if (dialog.run() != Key::Enter) return false;
    lastChosen = chosen;
    type = static_cast<ArchiveType>(chosen);
    if (accepts(name, type)) return true;
  }
}
