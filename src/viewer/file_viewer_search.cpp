// Going somewhere in the file: to what was searched, to a line, to an offset.

#include "editor/dialogs/goto_dialogs.h"
#include "editor/dialogs/note_window.h"
#include "foundation/utf8.h"
#include "ui/alert.h"
#include "viewer/file_viewer.h"

int64_t CViewer::behindCharacter(int64_t position) {
  return file_.lines().characterStart(position + 1);
}

void CViewer::showHit(int64_t from, int64_t to) {
  hit_ = {from, to};
  page_.show(from, to);
}

void CViewer::askOffset() {
  const std::optional<int64_t> offset = TDEditor::askOffset();
  if (!offset) return;
  if (*offset >= file_.size()) {
    Estring text;
    text.format("Only %lld bytes in this file", static_cast<long long>(file_.size()));
    alert(text.data(), Westring());
    return;
  }
  page_.goTo(*offset);
  hit_ = {*offset, behindCharacter(*offset)};
}

// False when there are fewer lines, or the user didn't want to wait.
bool CViewer::goToLine(int64_t number) {
  TDEditor::CSearchWatch watch;
  int64_t line = file_.textStart();
  for (int64_t i = 0; i < number; ++i) {
    if (line >= file_.size() || watch.pressed()) return false;
    line = file_.nextLine(line);
  }
  if (line >= file_.size()) return false;
  page_.goTo(line);
  return true;
}
