#include <algorithm>

#include "editor/document/text_rules.h"
#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "options/options.h"

namespace {

void deleteLeft(CTextEditor& editor) {
  if (editor.hasBlock()) return editor.deleteSpan(editor.block.start, editor.block.end);
  editor.deleteSpan(placeLeft(editor.document, editor.cursor()), editor.cursor());
}

void deleteRight(CTextEditor& editor) {
  if (editor.hasBlock()) return editor.deleteSpan(editor.block.start, editor.block.end);
  editor.deleteSpan(editor.cursor(), placeRight(editor.document, editor.cursor()));
}

void deleteWordLeft(CTextEditor& editor) {
  if (editor.cursor().index == 0) return deleteLeft(editor);
  editor.deleteSpan(deleteWordStart(editor.document, editor.cursor()), editor.cursor());
}

void deleteWordRight(CTextEditor& editor) {
  const TextPlace cursor = editor.cursor();
  const TextPlace lineEnd{cursor.line, editor.document.lineLength(cursor.line)};
  if (editor.hasBlock() || cursor == lineEnd) return deleteRight(editor);
  const WordRight kind = GlobalOptions::BriefWordRight ? WordRight::Brief : WordRight::NextStart;
  editor.deleteSpan(cursor, std::min(wordRightPlace(editor.document, cursor, kind), lineEnd));
}

void deleteLine(CTextEditor& editor) {
  const int64_t line = editor.cursor().line;
  const bool isLast = line + 1 == editor.document.lineCount();
  editor.deleteSpan({line, 0}, isLast ? editor.document.end() : TextPlace{line + 1, 0});
}

}  // namespace

EditCommands deleteCommands() {
  return {
      {"Delete left", {Key::Backspace}, deleteLeft},
      {"Delete right", {Key::Delete}, deleteRight},
      {"Delete word left", {Key::CtrlBackspace}, deleteWordLeft},
      {"Delete word right", {Key::CtrlDelete}, deleteWordRight},
      {"Delete the line", {Key::ctrl('y')}, deleteLine},
  };
}
