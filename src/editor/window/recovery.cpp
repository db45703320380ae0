#include "editor/window/recovery.h"

#include "editor/dialogs/questions.h"
#include "editor/text/edit_journal.h"
#include "editor/window/format_commands.h"
#include "editor/window/load_file.h"
#include "editor/window/text_editor.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "ui/alert.h"

namespace {

enum class Found { Done, Restored, GivenUp };

void tell(const wchar_t* text, const std::string& path) {
  alert(text, decodeFileName(path.c_str()), AlertButtons::Ok, AlertColour::Error);
}

void makeAgain(CTextEditor& editor, const JournalStep& step) {
  switch (step.kind) {
    case JournalStep::Kind::Replace:
      return editor.change(step.from, step.to, TextSpan::fromStored(step.bytes));
    case JournalStep::Kind::LineEnds:
      return editor.document.setLineEnds(step.value == static_cast<int64_t>(LineEndStyle::Lf)
                                             ? LineEndStyle::Lf
                                             : LineEndStyle::CrLf);
    case JournalStep::Kind::Recode:
      return recodeText(editor, static_cast<int>(step.value));
    case JournalStep::Kind::Mark:
      return setMark(editor, step.value != 0);
    case JournalStep::Kind::Encoding:
      return setSavedEncoding(editor, encodingOfNumber(step.value).value_or(TextEncoding()));
  }
}

// The steps go into the journal of this edit before that of the earlier one goes. False when the
// file can't be read as it was then.
bool restore(CTextEditor& editor, const LeftJournal& journal) {
  const JournalBase& base = journal.content().base;
  if (!(editor.document.encoding() == base.encoding) && !reloadFile(editor, base.encoding)) {
    return false;
  }
  editor.file.hasMark = base.hasMark;
  beginJournal(editor);
  for (const JournalStep& step : journal.content().steps) makeAgain(editor, step);
  editor.isModified = true;
  editor.redraw();
  editor.paint();
  if (editor.file.journal.flush() == 0) journal.remove();
  return true;
}

Found askAbout(CTextEditor& editor, const LeftJournal& journal) {
  switch (TDEditor::askRecovery(editor.file.name)) {
    case TDEditor::RecoveryAnswer::Restore:
      return restore(editor, journal) ? Found::Restored : Found::GivenUp;
    case TDEditor::RecoveryAnswer::Delete:
      if (const int error = journal.remove(); error != 0) {
        tell(errorText(error).data(), journal.path());
      }
      return Found::Done;
    case TDEditor::RecoveryAnswer::Cancel:
      return Found::Done;
    case TDEditor::RecoveryAnswer::ProgramEnds:
      return Found::GivenUp;
  }
  return Found::Done;
}

Found lookAt(CTextEditor& editor, const LeftJournal& journal) {
  if (journal.isInUse()) {
    const int answer =
        alert("This file is being edited. Edit anyway?", editor.file.name, AlertButtons::OkCancel);
    return answer == Answer::Yes ? Found::Done : Found::GivenUp;
  }
  if (journal.fits()) return askAbout(editor, journal);
  if (!journal.wholeText().empty()) {
    tell(L"Saving this file was interrupted. All of its text is in", journal.wholeText());
  } else {
    tell(
        L"Unsaved changes of an earlier edit were found, but the file has changed since. They "
        L"are in",
        journal.path());
  }
  return Found::Done;
}

}  // namespace

void beginJournal(CTextEditor& editor) {
  const TextSaver& saver = editor.file.saver;
  editor.file.journal.begin(editor.document, {.path = toUtf8(saver.path()).data(),
                                              .stamp = saver.stamp(),
                                              .encoding = editor.document.encoding(),
                                              .hasMark = editor.file.hasMark});
}

bool recoverChanges(CTextEditor& editor) {
  const TextSaver& saver = editor.file.saver;
  Found found = Found::Done;
  for (const LeftJournal& journal : findJournals(saver.path(), saver.stamp())) {
    if (found == Found::Restored) break;
    found = lookAt(editor, journal);
    if (found == Found::GivenUp) return false;
  }
  return true;
}
