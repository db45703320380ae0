#include "editor/window/edit_record.h"

#include "editor/window/text_editor.h"

namespace {

StoredPlace stored(TextPlace place) {
  return {place.line, place.index};
}

TextPlace restored(StoredPlace place) {
  return {place.line, place.index};
}

}  // namespace

HISTREC* findRecord(const CTextEditor& editor) {
  return fileStatusStore().find(FileStatusStore::keyOfPath(editor.file.saver.path()));
}

void takeView(CTextEditor& editor, const HISTREC& record) {
  const int64_t line = record.topLine + record.cursorRow;
  const int64_t column = record.leftColumn + record.cursorColumn;
  editor.moveToColumn(line, column);
  editor.view.top = record.topLine;
  editor.view.left = record.leftColumn;
  editor.view.cursor.line = line;
  editor.makeSafe();
}

void takeSteps(CTextEditor& editor, const HISTREC& record) {
  for (size_t i = 0; i < record.bookmarks.size(); ++i) {
    editor.history.bookmarks[i] = restored(record.bookmarks[i]);
  }
  editor.history.clearSteps();
  editor.stepsAreForeign = false;
  if (!(record.steps.encoding == editor.document.encoding())) return;
  restoreSteps(record.steps, editor.history);
  editor.stepsAreForeign = !record.steps.empty() && !(record.stamp == editor.file.saver.stamp());
}

void storeRecord(const CTextEditor& editor) {
  HISTREC& record = fileStatusStore().record(FileStatusStore::keyOfPath(editor.file.saver.path()));
  record.topLine = editor.view.top;
  record.leftColumn = editor.view.left;
  record.cursorRow = editor.cursor().line - editor.view.top;
  record.cursorColumn = editor.cursorColumn() - editor.view.left;
  record.viewerPosition = HISTREC::Unset;
  for (size_t i = 0; i < record.bookmarks.size(); ++i) {
    record.bookmarks[i] = stored(editor.history.bookmarks[i]);
  }
  const TextEncoding& encoding = editor.document.encoding();
  record.format = encoding.format;
  record.page = encoding.page;
  record.steps = storeSteps(editor.history, encoding, FileStatusStore::MostStepBytes);
  record.stamp = editor.file.saver.stamp();
  fileStatusStore().stored(record);
}
