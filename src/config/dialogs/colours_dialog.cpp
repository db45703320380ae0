#include "config/dialogs/colours_dialog.h"

#include <algorithm>

#include "options/colours.h"
#include "ui/dialog.h"
#include "ui/list_box.h"

namespace {

constexpr int Columns = 32, Lines = 21;
constexpr int UpperThird = -3;
constexpr int ListColumn = 1, ListRow = 1, ListWidth = 28, ListRows = 13;
constexpr int FirstHelpRow = 15, SecondHelpRow = 16;
constexpr int ButtonRow = 18, OkColumn = 6, CancelColumn = 14;
constexpr unsigned char Foreground = 0x0F;
constexpr int Kept = 0, PutBack = -1;

}  // namespace

int coloursDialog() {
  unsigned char before[ColourCount];
  std::copy_n(colourTable, ColourCount, before);
  int selected = 0;
  Dialog dialog(-1, UpperThird, Columns, Lines, colourOf(Colour::Messages));
  dialog.putFrameTitle(" TD/X Colours ");
  dialog.addColourSelector(ListColumn, ListRow, Group::New, ListWidth, ListRows,
                           colourAttributeNames, ColourCount, colourTable, &selected,
                           ListExit::DialogDefault);
  dialog.addText(-1, FirstHelpRow, "F=Foreground B=Background");
  dialog.addText(-1, SecondHelpRow, "Shift-F/B=Change Backwards");
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  if (dialog.run() != Key::Enter) {
    std::copy_n(before, ColourCount, colourTable);
    return PutBack;
  }
  // Of the quick letters only the foreground counts.
  colourTable[static_cast<int>(Colour::MenuQuickKey)] &= Foreground;
  return Kept;
}
