#include "search_dialogs/replace_found.h"

#include <string>

#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/status.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "search/file_replacer.h"
#include "search/found_entries.h"
#include "ui/alert.h"
#include "ui/dialog.h"
#include "ui/escape_watch.h"

namespace {

constexpr int UpperQuarter = -4;
constexpr int Columns = 60, AskRows = 8, SureRows = 9, WorkRows = 6;
constexpr int FieldColumn = 1, FieldLabelRow = 2, FieldRow = 3, FieldWidth = 56, AnyLength = -1;
constexpr int SureButtonRow = 6;
constexpr int DoneButtonColumn = 26, DoneButtonRow = 3;
constexpr int TextWidth = 54;  // between quotes

bool askReplacement(Westring& replacement) {
  Dialog dialog(-1, UpperQuarter, Columns, AskRows, colourOf(Colour::Messages));
  dialog.putCentred(0, L"Multi-file search & replace");
  dialog.put(FieldColumn, FieldLabelRow, L"Replace with:");
  dialog.addString(FieldColumn, FieldRow, Group::New, &replacement, FieldWidth, AnyLength,
                   FieldHistory::FindText);
  dialog.addOkCancel(-1, -1, Group::New);
  return dialog.run() == Key::Enter;
}

Westring quoted(const Westring& text) {
  return Westring(L"\"") + cutText(text, TextWidth) + L"\"";
}

Key::Code askSure(const Westring& text, const Westring& replacement, int count) {
  Dialog dialog(-1, UpperQuarter, Columns, SureRows, colourOf(Colour::Errors));
  dialog.putCentred(0, L"Are you sure you want to replace");
  dialog.putCentred(1, quoted(text).data());
  dialog.putCentred(2, L"with");
  dialog.putCentred(3, quoted(replacement).data());
  Estring files;
  files.format("in %d file%s", count, count > 1 ? "s" : "");
  dialog.putCentred(4, files.data());
  dialog.addOkCancel(-1, SureButtonRow, Group::New);
  return dialog.run();
}

void tellError(const FileReplacer& replacer) {
  const Westring path = decodeFileName(replacer.errorPath().c_str());
  if (replacer.error() == Status::ChangedMeanwhile) {
    alert("File has changed", path, AlertButtons::Ok, AlertColour::Error);
  } else {
    alert(errorText(replacer.error()), path, AlertButtons::Ok, AlertColour::Error);
  }
}

void replaceAll(const FindSettings& searched, const Westring& replacement) {
  Dialog window(-1, UpperQuarter, Columns, WorkRows, colourOf(Colour::Messages));
  window.putFrameTitle(" Search & Replace ");
  window.put(FieldColumn, 1, L"Processing");
  EscapeWatch watch;
  FileReplacer replacer(searched.text, searched.rule, searched.wholeWord, replacement,
                        [&watch] { return watch.pressed(); });
  int files = 0;
  for (int i = 0; i < foundEntries().count() && !watch.pressed(); ++i) {
    const FoundRow row = foundEntries().row(i);
    if (!row.valid() || row.item->total == FoundMark::NotOpened) continue;
    const Westring path = row.path();
    window.put(FieldColumn, 2, padRight(shortenPath(path, FieldWidth), FieldWidth));
    const ReplaceResult result = replacer.replaceIn(bytePath(path));
    if (result == ReplaceResult::Failed) tellError(replacer);
    if (result != ReplaceResult::Done) break;
    ++files;
    struct stat info;
    if (statPath(path, info) == 0) foundEntries().update(i, path, info);
  }
  Estring told;
  told.format("Replaced %lld occurances in %d files", static_cast<long long>(replacer.replaced()),
              files);
  window.put(FieldColumn, 1, padRight(Westring(told), FieldWidth));
  window.addButton(DoneButtonColumn, DoneButtonRow, Group::New, Key::Enter, "OK");
  window.run();
}

}  // namespace

void replaceInFound(const FindSettings& searched) {
  Westring replacement;
  while (askReplacement(replacement)) {
    const Key::Code sure = askSure(searched.text, replacement, foundEntries().count());
    if (sure == Dialog::ProgramEnds) return;
    if (sure == Key::Enter) return replaceAll(searched, replacement);
  }
}
