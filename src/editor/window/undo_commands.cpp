#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "ui/alert.h"
#include "ui/escape_watch.h"

namespace {

using Step = UndoOutcome (*)(EditHistory& history, Document& document, TextPlace& cursor);

// Steps of an earlier edit were made in a text that may have become another since.
bool mayTakeBack(CTextEditor& editor) {
  if (!editor.stepsAreForeign) return true;
  const int answer =
      alert(L"The file has changed since. Undo anyway?", L"", AlertButtons::OkCancel);
  if (answer != Answer::Yes) return false;
  editor.stepsAreForeign = false;
  return true;
}

void perform(CTextEditor& editor, Step step) {
  TextPlace cursor = editor.cursor();
  editor.dropBlock();
  const UndoOutcome outcome = step(editor.history, editor.document, cursor);
  if (outcome == UndoOutcome::Nothing) return;
  editor.moveTo(cursor);
  if (outcome != UndoOutcome::Done) return;
  editor.isModified = true;
  editor.redraw();
}

void takeBack(CTextEditor& editor, Step step) {
  if (!editor.history.undo.empty() && mayTakeBack(editor)) perform(editor, step);
}

void makeAgain(CTextEditor& editor, Step step) {
  if (!editor.history.redo.empty() && mayTakeBack(editor)) perform(editor, step);
}

void undoStep(CTextEditor& editor) {
  takeBack(editor, [](EditHistory& history, Document& document, TextPlace& cursor) {
    return history.undoStep(document, cursor);
  });
}

void redoStep(CTextEditor& editor) {
  makeAgain(editor, [](EditHistory& history, Document& document, TextPlace& cursor) {
    return history.redoStep(document, cursor);
  });
}

// A replacement of all hits may have been many of them.
void undoCommand(CTextEditor& editor) {
  takeBack(editor, [](EditHistory& history, Document& document, TextPlace& cursor) {
    EscapeWatch watch;
    return history.undoCommand(document, cursor, [&watch] { return watch.pressed(); });
  });
}

void redoCommand(CTextEditor& editor) {
  makeAgain(editor, [](EditHistory& history, Document& document, TextPlace& cursor) {
    EscapeWatch watch;
    return history.redoCommand(document, cursor, [&watch] { return watch.pressed(); });
  });
}

}  // namespace

EditCommands undoCommands() {
  return {
      {"Undo a key", {Key::AltBackspace}, undoStep},
      {"Redo a key", {Key::ShiftAltBackspace}, redoStep},
      {"Undo a command", {Key::ctrl('z')}, undoCommand},
      {"Redo a command", {Key::CtrlShiftZ}, redoCommand},
  };
}
