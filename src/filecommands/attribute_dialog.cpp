#include "filecommands/attribute_dialog.h"

#include "foundation/path_info.h"
#include "foundation/text_format.h"
#include "foundation/users.h"
#include "options/colours.h"

namespace {

constexpr int Columns = 45, Lines = 10;
constexpr int UpperQuarter = -4;
constexpr int NameRow = 0, HeadRow = 2, FirstRow = 3;
constexpr int LabelColumn = 1, FirstBox = 8, BoxWidth = 4;
constexpr int FieldLabelColumn = 28, FieldColumn = 34;
constexpr int FieldWidth = 8, FieldLength = 20;
constexpr mode_t HighestBit = 04000;
constexpr Key::Code FirstDigit{'0'};
constexpr int Digits = 8;

// The states of a box over many files.
constexpr unsigned char Cleared = 0, Left = 1, Set = 2;

constexpr mode_t bitOf(int index) {
  return HighestBit >> index;
}

}  // namespace

CFileAttributeDialog::CFileAttributeDialog(const Panel& panel, const ChosenItems& items)
    : Dialog(-1, UpperQuarter, Columns, Lines, colourOf(Colour::Messages)), tagged_(items.tagged) {
  state_.fill(Left);
  putFrameTitle(" File  Attributes ");
  if (!tagged_) {
    start(panel, items.single());
    putCentred(NameRow, shortenPath(items.name, innerWidth()).data());
  }
  put(FirstBox, HeadRow, L" R   W   X   S");
  addBoxes();
  addFields();
  ok_ = addOkCancel(-1, -1, Group::New);
  for (int digit = 0; digit < Digits; ++digit) addExitKey(Key::Code(FirstDigit.value() + digit));
}

// As the file is now; what the panel knows of it where it can't be looked at.
void CFileAttributeDialog::start(const Panel& panel, const entry& single) {
  struct stat info {};
  if (statPath(itemPath(panel, single), info) != 0) {
    info.st_mode = single.mode;
    info.st_uid = single.owner;
    info.st_gid = single.group;
  }
  for (int i = 0; i < Bits; ++i) on_[i] = (info.st_mode & bitOf(i)) != 0;
  owner_ = userName(info.st_uid);
  group_ = groupName(info.st_gid);
}

void CFileAttributeDialog::addBoxes() {
  constexpr const char* Labels[Rows] = {"User", "Group", "Other"};
  for (int row = 0; row < Rows; ++row) {
    const int y = FirstRow + row;
    put(LabelColumn, y, Labels[row]);
    int x = FirstBox;
    for (int box = 0; box < RowBoxes; ++box, x += BoxWidth) {
      const int index =
          addBox(x, y, box == 0 ? Group::New : Group::Same, Rows + row * RowBoxes + box);
      if (box == 0) firstOfRow_[row] = index;
    }
    addBox(x, y, Group::Same, row);
  }
}

int CFileAttributeDialog::addBox(int x, int y, Group group, int bit) {
  return tagged_ ? addCheck3(x, y, group, &state_[bit], nullptr)
                 : addCheck(x, y, group, &on_[bit], nullptr);
}

void CFileAttributeDialog::addFields() {
  put(FieldLabelColumn, FirstRow, L"Owner");
  addString(FieldColumn, FirstRow, Group::New, &owner_, FieldWidth, FieldLength);
  put(FieldLabelColumn, FirstRow + 1, L"Group");
  addString(FieldColumn, FirstRow + 1, Group::New, &group_, FieldWidth, FieldLength);
}

bool CFileAttributeDialog::ask() {
  for (;;) {
    const Key::Code key = run();
    const int digit = key.value() - FirstDigit.value();
    if (digit < 0 || digit >= Digits) return key == Key::Enter;
    takeDigit(digit);
  }
}

int CFileAttributeDialog::focusedRow() const {
  for (int row = 0; row < Rows; ++row) {
    if (focus() >= firstOfRow_[row] && focus() <= firstOfRow_[row] + RowBoxes) return row;
  }
  return -1;
}

void CFileAttributeDialog::takeDigit(int digit) {
  const int row = focusedRow();
  if (row < 0) return;
  for (int box = 0; box < RowBoxes; ++box) {
    const bool set = (digit >> (RowBoxes - 1 - box) & 1) != 0;
    const int bit = Rows + row * RowBoxes + box;
    on_[bit] = set;
    state_[bit] = set ? Set : Cleared;
  }
  redraw(-1);
  setFocus(row + 1 < Rows ? firstOfRow_[row + 1] : ok_);
}

AttributeChange CFileAttributeDialog::boxes() const {
  AttributeChange change;
  for (int i = 0; i < Bits; ++i) {
    const bool set = tagged_ ? state_[i] == Set : on_[i];
    const bool cleared = tagged_ ? state_[i] == Cleared : !on_[i];
    if (set) change.set |= bitOf(i);
    if (cleared) change.clear |= bitOf(i);
  }
  return change;
}
