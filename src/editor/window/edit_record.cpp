#include "editor/window/edit_record.h"

#include "editor/window/text_editor.h"

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
  editor.history.bookmarks = record.bookmarks;
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
  record.bookmarks = editor.history.bookmarks;
  const TextEncoding& encoding = editor.document.encoding();
  record.format = encoding.format;
  record.page = encoding.page;
  record.steps = storeSteps(editor.history, encoding, FileStatusStore::MostStepBytes);
  record.stamp = editor.file.saver.stamp();
  fileStatusStore().stored(record);
}
