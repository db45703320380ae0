#include "editor/dialogs/code_page_dialog.h"

#include "editor/text/code_page_list.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {
constexpr int UpperThird = -3;
constexpr int Columns = 34, Rows = 7;
constexpr int LabelColumn = 1, FieldColumn = 17, FieldRow = 1, ButtonRow = 4;
constexpr int FieldWidth = 12, LongestList = 255;
}  // namespace

namespace TDEditor {

bool askCodePageList(Estring& list) {
  Westring text(list.data());
  Dialog dialog(-1, UpperThird, Columns, Rows, colourOf(Colour::Messages));
  dialog.putFrameTitle(" Code Page Translation ");
  dialog.addString(FieldColumn, FieldRow, Group::New, &text, FieldWidth, LongestList);
  dialog.addOkCancel(-1, ButtonRow, Group::New);
  dialog.addText(LabelColumn, FieldRow, "Code Page List:");
  const Key::Code key = dialog.run();
  if (key == Key::Esc || key == Dialog::ProgramEnds) return false;
  list = toUtf8(text);
  return true;
}

int stepCodePage() {
  const CodePageList::Step step = codePageList().next();
  if (step.number == CodePageList::Number::Unknown) {
    alert("Invalid code page", Westring(), AlertButtons::Ok, AlertColour::Error);
  }
  return step.page;
}

std::optional<int> askCodePage() {
  if (!askCodePageList(GlobalOptions::TranslateCP)) return std::nullopt;
  codePageList().restart();
  return stepCodePage();
}

}  // namespace TDEditor
