#include "editor/window/format_commands.h"

#include "editor/dialogs/code_page_dialog.h"
#include "editor/dialogs/format_dialog.h"
#include "editor/dialogs/questions.h"
#include "editor/window/edit_command.h"
#include "editor/window/load_file.h"
#include "editor/window/text_editor.h"

namespace {

bool isPage(const TextEncoding& encoding) {
  return encoding.format == TextFormat::CodePage;
}

bool hasText(const CTextEditor& editor) {
  return editor.document.end() != TextPlace();
}

// A file that is still to be written gets the encoding, any other is read in it. False when
// everything is as it was.
bool becomeText(CTextEditor& editor, const TextEncoding& encoding) {
  if (editor.file.isNew) {
    setSavedEncoding(editor, encoding);
    editor.isModified = editor.isModified || hasText(editor);
    return true;
  }
  return (!editor.isModified || TDEditor::askReload()) && reloadFile(editor, encoding);
}

void setEncoding(CTextEditor& editor, const TextEncoding& encoding) {
  const TextEncoding now = editor.document.encoding();
  if (now == encoding) return;
  if (isPage(now) && isPage(encoding)) return recodeText(editor, encoding.page);
  if (becomeText(editor, encoding)) warnOfInvalidLines(editor);
}

void selectEncoding(CTextEditor& editor) {
  TextForm form{editor.document.encoding(), editor.file.hasMark};
  const TextEncoding before = form.encoding;
  if (!TDEditor::CFormatSelectDlg(" Select File Encoding ", form).ask(form)) return;
  setEncoding(editor, form.encoding);
  const bool isDone = before == form.encoding || editor.document.encoding() == form.encoding;
  if (isDone) setMark(editor, form.hasMark);
}

void chooseCodePages(CTextEditor& editor) {
  const std::optional<int> page = TDEditor::askCodePage();
  if (page) setEncoding(editor, {TextFormat::CodePage, *page});
}

void nextCodePage(CTextEditor& editor) {
  if (!isPage(editor.document.encoding())) return;
  setEncoding(editor, {TextFormat::CodePage, TDEditor::stepCodePage()});
}

}  // namespace

void recodeText(CTextEditor& editor, int page) {
  const TextEncoding from = editor.document.encoding();
  editor.document.recode(page);
  editor.history.recode(from, editor.document.encoding());
  editor.file.journal.onRecoded(page);
  editor.dropBlock();
  editor.makeSafe();
}

void setSavedEncoding(CTextEditor& editor, const TextEncoding& encoding) {
  editor.document.setEncoding(encoding);
  editor.file.journal.onEncoding(encoding);
}

void setMark(CTextEditor& editor, bool hasMark) {
  if (markOf(editor.document.encoding().format).empty()) hasMark = false;
  if (hasMark == editor.file.hasMark) return;
  editor.file.hasMark = hasMark;
  editor.file.journal.onMark(hasMark);
  editor.isModified = true;
}

EditCommands formatCommands() {
  return {
      {"Encoding", {Key::alt('e')}, selectEncoding, {.asks = Asks::Yes}},
      {"Code page list", {Key::alt('c')}, chooseCodePages, {.asks = Asks::Yes}},
      {"Next code page", {Key::alt('t')}, nextCodePage},
  };
}
