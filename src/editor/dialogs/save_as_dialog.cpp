#include "editor/dialogs/save_as_dialog.h"

#include <algorithm>

namespace {
constexpr int MoreRows = 2;
constexpr int NameRow = 1, LabelColumn = 1, NameColumn = 7;
constexpr int NameWidth = 50, NameLength = 512;
}  // namespace

namespace TDEditor {

CSaveAsDlg::CSaveAsDlg(const Westring& name, const TextForm& form)
    : CFormatSelectDlg(" Save As ", form, MoreRows), name_(name) {
  BatchScope batch;
  // A longer name stays whole; only typing is limited.
  const int longest = std::max(NameLength, name_.length());
  const int field = addString(NameColumn, NameRow, Group::New, &name_, NameWidth, longest);
  addEnd();
  addText(LabelColumn, NameRow, "Name:");
  setFocus(field);
}

bool CSaveAsDlg::ask(Westring& name, TextForm& form) {
  if (!CFormatSelectDlg::ask(form)) return false;
  name = name_;
  return true;
}

}  // namespace TDEditor
