#include "editor/dialogs/search_dialog.h"

#include "options/colours.h"
#include "ui/dialog.h"

namespace {
constexpr int UpperThird = -3;
constexpr int Columns = 65, SearchRows = 7, ReplaceRows = 9;
constexpr int LabelColumn = 1, BoxColumn = 43, FieldWidth = 40, AnyLength = -1;
constexpr int SearchLabelRow = 1, SearchRow = 2, ReplaceLabelRow = 3, ReplaceRow = 4;
constexpr char SearchHotChars[] = "so", ReplaceHotChars[] = "spo";
}  // namespace

namespace TDEditor {

bool askSearch(SearchValues& values, SearchDialogUse use) {
  const bool replaces = use == SearchDialogUse::Replace;
  SearchValues edited = values;
  Dialog dialog(-1, UpperThird, Columns, replaces ? ReplaceRows : SearchRows,
                colourOf(Colour::Messages));
  const char* const hotChars = replaces ? ReplaceHotChars : SearchHotChars;
  dialog.setHotChars(hotChars, replaces ? sizeof ReplaceHotChars - 1 : sizeof SearchHotChars - 1);
  dialog.addString(LabelColumn, SearchRow, Group::New, &edited.text, FieldWidth, AnyLength,
                   FieldHistory::SearchText);
  if (replaces) {
    dialog.addString(LabelColumn, ReplaceRow, Group::New, &edited.replacement, FieldWidth,
                     AnyLength, FieldHistory::Replacement);
  }
  dialog.addOkCancel(-1, -1, Group::New);
  dialog.addCheck(BoxColumn, 1, Group::New, &edited.caseSensitive, "Case Sensitive");
  dialog.addCheck(BoxColumn, 2, Group::Same, &edited.reverse, "Reverse");
  dialog.addCheck(BoxColumn, 3, Group::Same, &edited.wholeWord, "Whole Word");
  dialog.addText(LabelColumn, SearchLabelRow, "Search for:");
  if (replaces) dialog.addText(LabelColumn, ReplaceLabelRow, "Replace with:");
  const Key::Code key = dialog.run();
  if (key == Key::Esc || key == Dialog::ProgramEnds) return false;
  values = edited;
  return true;
}

}  // namespace TDEditor
