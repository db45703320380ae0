#include "editor/window/save_file.h"

#include <optional>

#include "editor/text/file_status_store.h"
#include "editor/window/edit_record.h"
#include "editor/window/editor_painter.h"
#include "editor/window/file_work.h"
#include "editor/window/recovery.h"
#include "editor/window/text_editor.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "foundation/utf8.h"
#include "ui/alert.h"

namespace {

constexpr char Saving[] = "Saving File";

void tell(const Westring& text, const std::string& path = {}) {
  alert(text, decodeFileName(path.c_str()), AlertButtons::Ok, AlertColour::Error);
}

// The text on its way to a file, and why it isn't there when it isn't.
class Written {
 public:
  Written(const CTextEditor& editor, const TextForm& form) : editor_(editor), form_(form) {}

  TextSaver::Text text() {
    return [this](const TextSaver::Sink& sink) { return write(sink); };
  }
  // A bar once it lasts to copy the text over the file itself. Esc is of no use then: half a copy
  // would be the end of the file.
  FileProgress overwriting() {
    return [this](int64_t done, int64_t total) {
      if (!overwriting_) overwriting_.emplace(Saving);
      overwriting_->report(done, total);
      return true;
    };
  }
  void endWork() { overwriting_.reset(); }
  // The place of a character that the encoding can't hold.
  std::optional<TextPlace> refused() const {
    return result_.refused ? std::optional(result_.place) : std::nullopt;
  }

 private:
  int write(const TextSaver::Sink& sink) {
    FileWork work(Saving);
    const std::string_view mark = form_.hasMark ? markOf(form_.encoding.format) : "";
    const int error = mark.empty() ? 0 : sink(mark);
    if (error != 0) return error;
    const int64_t count = editor_.document.lineCount();
    result_ = editor_.document.write(form_.encoding, sink,
                                     [&](int64_t lines) { return work.report(lines, count); });
    return result_.refused ? EILSEQ : result_.error;
  }

  const CTextEditor& editor_;
  const TextForm& form_;
  Document::Written result_;
  std::optional<FileWork> overwriting_;
};

// Whether the file may be replaced by the text, as far as others have changed it.
bool mayReplace(CTextEditor& editor) {
  TextSaver::Change change = TextSaver::Change::None;
  int error = 0;
  {
    FileWork work(Saving);
    error = editor.file.saver.look(change, work.progress());
  }
  if (error != 0) {
    if (error != ECANCELED) tell(L"Error writing text file: " + errorText(error));
    return false;
  }
  if (change != TextSaver::Change::Changed) return true;
  return alert("The file was changed by another program. Overwrite?", L"",
               AlertButtons::OkCancel) == Answer::Yes;
}

bool mayOverride(const CTextEditor& editor, ReadOnlyFile& readOnly) {
  readOnly = editor.file.isReadOnly ? ReadOnlyFile::Override : ReadOnlyFile::Refuse;
  return !editor.file.isReadOnly ||
         alert("File is Read Only, override?", L"", AlertButtons::OkCancel) == Answer::Yes;
}

void tellRefused(CTextEditor& editor, TextPlace place, const TextEncoding& encoding) {
  editor.dropBlock();
  editor.moveTo(place);
  editor.scrollSideways();
  editor.paint();
  const std::wstring line = std::to_wstring(place.line + 1);
  tell(L"Line " + Westring(line.c_str()) + L" cannot be saved in " + formatName(encoding));
}

void tellFailure(CTextEditor& editor, const TextSaver::Outcome& outcome, const Written& written,
                 const TextEncoding& encoding) {
  if (written.refused()) return tellRefused(editor, *written.refused(), encoding);
  if (outcome.error == ECANCELED) return;
  if (outcome.clearingReadOnlyFailed) {
    return tell(L"Error clearing Read Only flag: " + errorText(outcome.error));
  }
  const Westring text = L"Error writing text file: " + errorText(outcome.error);
  if (outcome.wholeText.empty()) return tell(text);
  tell(text + L". All of the text is in", outcome.wholeText);
}

void settle(CTextEditor& editor, const TextSaver::Outcome& outcome, const TextForm& form) {
  editor.document.setEncoding(form.encoding);
  editor.file.hasMark = form.hasMark;
  editor.isModified = false;
  beginJournal(editor);
  storeRecord(editor);
  if (!outcome.leftover.empty()) tell(L"This file could not be removed", outcome.leftover);
}

}  // namespace

bool saveFile(CTextEditor& editor) {
  return saveFile(editor, {editor.document.encoding(), editor.file.hasMark});
}

bool saveFile(CTextEditor& editor, const TextForm& form) {
  ReadOnlyFile readOnly = ReadOnlyFile::Refuse;
  if (!mayOverride(editor, readOnly)) return false;
  for (;;) {
    if (!mayReplace(editor)) return false;
    Written written(editor, form);
    const TextSaver::Outcome outcome =
        editor.file.saver.save(written.text(), readOnly, written.overwriting());
    written.endWork();
    // It was changed just now.
    if (outcome.error == Status::ChangedMeanwhile) continue;
    if (outcome.error == 0) {
      editor.file.created.keep();
      settle(editor, outcome, form);
    } else {
      tellFailure(editor, outcome, written, form.encoding);
    }
    return outcome.error == 0;
  }
}

bool saveFileAs(CTextEditor& editor, const Westring& path, const FileStamp& seen,
                const TextForm& form) {
  Written written(editor, form);
  const TextSaver::Outcome outcome = editor.file.saver.saveAs(
      path, seen, written.text(), ReadOnlyFile::Refuse, written.overwriting());
  written.endWork();
  if (!outcome.isOpened) tell(L"Unable to open: " + errorText(outcome.error));
  if (outcome.isOpened && outcome.error != 0) {
    tellFailure(editor, outcome, written, form.encoding);
  }
  if (outcome.error != 0) return false;
  editor.file.created.removeIfEmpty();
  editor.file.name = path;
  editor.file.isNew = false;
  editor.file.isReadOnly = false;
  settle(editor, outcome, form);
  editor.painter().syntax().load(path, editor.document);
  editor.redraw();
  return true;
}
