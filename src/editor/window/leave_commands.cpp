#include "editor/dialogs/questions.h"
#include "editor/window/edit_command.h"
#include "editor/window/edit_record.h"
#include "editor/window/save_file.h"
#include "editor/window/text_editor.h"

namespace {

void leaveSaved(CTextEditor& editor) {
  storeRecord(editor);
  editor.file.journal.end();
  editor.end();
}

// What the record says stays true of the file: it tells of the text as it was saved last.
void leaveUnsaved(CTextEditor& editor) {
  editor.file.journal.end();
  editor.end();
}

void leave(CTextEditor& editor) {
  while (editor.isModified) {
    switch (TDEditor::askLeave()) {
      case TDEditor::LeaveAnswer::Save:
        saveFile(editor);
        break;
      case TDEditor::LeaveAnswer::Discard:
        return leaveUnsaved(editor);
      case TDEditor::LeaveAnswer::Edit:
      case TDEditor::LeaveAnswer::ProgramEnds:
        return;
    }
  }
  leaveSaved(editor);
}

void saveAndLeave(CTextEditor& editor) {
  if (editor.isModified) saveFile(editor);
  leave(editor);
}

}  // namespace

EditCommands leaveCommands() {
  return {
      {"Leave", {Key::F10, Key::Esc}, leave, {.block = BlockUse::Keeps, .asks = Asks::Yes}},
      {"Save and leave", {Key::ShiftF10}, saveAndLeave},
  };
}
