#include "editor/dialogs/save_as_dialog.h"
#include "editor/text/file_status_store.h"
#include "editor/window/edit_command.h"
#include "editor/window/save_file.h"
#include "editor/window/text_editor.h"
#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "language/environment.h"
#include "language/typed_path.h"
#include "ui/alert.h"

namespace {

bool beginsAtHome(const Westring& text) {
  return text[0] == L'~' && (text[1] == L'/' || text[1] == 0);
}

// The path of a typed name: what is there as it is written, else by the rules for typed text. ""
// when it can't be one.
Westring typedPath(const CTextEditor& editor, const Westring& text) {
  const Westring base = parentOf(editor.file.saver.path());
  Westring path;
  if (existsAsWritten(text, base, path)) return path;
  path = beginsAtHome(text) ? expandPathVariables(text) : text;
  if (canonicalPath(path, &base) == 0 || writtenPath(path, &base) == 0) return path;
  return L"";
}

void tellNotOpened(int error) {
  alert(L"Unable to open: " + errorText(error), L"", AlertButtons::Ok, AlertColour::Error);
}

// True when the text is in the file of that name.
bool saveUnder(CTextEditor& editor, const Westring& name, const TextForm& form) {
  const Westring path = typedPath(editor, name);
  FileStamp seen;
  const int error = path.empty() ? EINVAL : lookAtFile(path, seen);
  if (error != 0) {
    tellNotOpened(error);
    return false;
  }
  if (sameName(path, editor.file.saver.path()) || isSameFile(seen, editor.file.saver.stamp())) {
    return saveFile(editor, form);
  }
  if (seen.exists &&
      alert("File already exists, Overwrite?", path, AlertButtons::OkCancel) != Answer::Yes) {
    return false;
  }
  return saveFileAs(editor, path, seen, form);
}

void saveAs(CTextEditor& editor) {
  TextForm form{editor.document.encoding(), editor.file.hasMark};
  Westring name = editor.file.name;
  TDEditor::CSaveAsDlg dialog(name, form);
  while (dialog.ask(name, form)) {
    dialog.hide();
    if (saveUnder(editor, name, form)) return;
    dialog.unhide();
  }
}

void save(CTextEditor& editor) {
  saveFile(editor);
}

}  // namespace

EditCommands saveCommands() {
  return {
      {"Save", {Key::F2, Key::ctrl('s')}, save},
      {"Save as", {Key::F3}, saveAs, {.asks = Asks::Yes}},
  };
}
