#include "editor/window/move_commands.h"

#include <algorithm>

#include "editor/document/text_rules.h"
#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "options/options.h"
#include "ui/escape_watch.h"

namespace {

constexpr int RowsKeptByPage = 2;  // of a page that show again after PgDn

// ---- by a character or to an end

void left(CTextEditor& editor) {
  editor.moveTo(placeLeft(editor.document, editor.cursor()));
}

void right(CTextEditor& editor) {
  editor.moveTo(placeRight(editor.document, editor.cursor()));
}

void wordLeft(CTextEditor& editor) {
  editor.moveTo(wordLeftPlace(editor.document, editor.cursor()));
}

void wordRight(CTextEditor& editor) {
  editor.moveTo(
      wordRightPlace(editor.document, editor.cursor(),
                     GlobalOptions::BriefWordRight ? WordRight::Brief : WordRight::NextStart));
}

void lineStart(CTextEditor& editor) {
  editor.moveTo({editor.cursor().line, 0});
}

void lineEnd(CTextEditor& editor) {
  editor.moveTo({editor.cursor().line, editor.document.lineLength(editor.cursor().line)});
}

void textStart(CTextEditor& editor) {
  editor.moveTo({0, 0});
}

void textEnd(CTextEditor& editor) {
  editor.moveTo(editor.document.end());
}

void screenStart(CTextEditor& editor) {
  editor.moveTo({editor.view.top, 0});
}

void screenEnd(CTextEditor& editor) {
  const int64_t last =
      std::min(editor.view.top + editor.textRows(), editor.document.lineCount()) - 1;
  editor.moveTo({last, editor.document.lineLength(last)});
}

// ---- to a place that is found

void toBracket(CTextEditor& editor) {
  EscapeWatch watch;
  const auto place =
      matchingBracket(editor.document, editor.cursor(), [&watch] { return watch.pressed(); });
  if (place) editor.moveTo(*place);
}

// ---- by lines

void toLine(CTextEditor& editor, int64_t line) {
  EditorView& view = editor.view;
  if (view.wantedColumn == EditorView::NoColumn) view.wantedColumn = editor.cursorColumn();
  editor.moveToColumn(line, view.wantedColumn);
}

void up(CTextEditor& editor) {
  if (editor.cursor().line > 0) toLine(editor, editor.cursor().line - 1);
}

void down(CTextEditor& editor) {
  if (editor.cursor().line + 1 < editor.document.lineCount()) {
    toLine(editor, editor.cursor().line + 1);
  }
}

// Where the view may begin after it has moved by so many lines: the last line stays below the
// others.
int64_t topAfter(const CTextEditor& editor, int64_t lines) {
  const int64_t top = editor.view.top;
  const int64_t last = std::max<int64_t>(editor.document.lineCount() - editor.textRows(), 0);
  return lines < 0 ? std::max<int64_t>(top + lines, 0) : std::max(top, std::min(top + lines, last));
}

void page(CTextEditor& editor, int64_t lines) {
  if (topAfter(editor, lines) != editor.view.top) return scrollWithCursor(editor, lines);
  toLine(editor, lines < 0 ? 0 : editor.document.lineCount() - 1);
}

int64_t pageOf(const CTextEditor& editor) {
  return std::max(editor.textRows() - RowsKeptByPage, 1);
}

// The cursor stays in the text until the view leaves it behind.
void scroll(CTextEditor& editor, int64_t lines) {
  editor.scrollTo(topAfter(editor, lines));
  const int64_t first = editor.view.top;
  const int64_t line = std::clamp(editor.cursor().line, first, first + editor.textRows() - 1);
  if (line != editor.cursor().line) toLine(editor, line);
}

void scrollUp(CTextEditor& editor) {
  scroll(editor, -1);
}

void scrollDown(CTextEditor& editor) {
  scroll(editor, 1);
}

}  // namespace

void scrollWithCursor(CTextEditor& editor, int64_t lines) {
  const int64_t before = editor.view.top;
  editor.scrollTo(topAfter(editor, lines));
  const int64_t moved = editor.view.top - before;
  if (moved != 0) toLine(editor, editor.cursor().line + moved);
}

void pageUp(CTextEditor& editor) {
  page(editor, -pageOf(editor));
}

void pageDown(CTextEditor& editor) {
  page(editor, pageOf(editor));
}

EditCommands moveCommands() {
  EditCommands rows = {
      {"Up", {Key::Up, Key::ShiftUp}, up},
      {"Down", {Key::Down, Key::ShiftDown}, down},
      {"Left", {Key::Left, Key::ShiftLeft}, left},
      {"Right", {Key::Right, Key::ShiftRight}, right},
      {"Word left", {Key::CtrlLeft, Key::CtrlShiftLeft}, wordLeft},
      {"Word right", {Key::CtrlRight, Key::CtrlShiftRight}, wordRight},
      {"Start of the line", {Key::Home, Key::ShiftHome}, lineStart},
      {"End of the line", {Key::End, Key::ShiftEnd}, lineEnd},
      {"Page up", {Key::PageUp, Key::ShiftPageUp}, pageUp},
      {"Page down", {Key::PageDown, Key::ShiftPageDown}, pageDown},
      {"Start of the screen", {Key::CtrlHome, Key::CtrlShiftHome}, screenStart},
      {"End of the screen", {Key::CtrlEnd, Key::CtrlShiftEnd}, screenEnd},
      {"Start of the text", {Key::CtrlPageUp, Key::CtrlShiftPageUp}, textStart},
      {"End of the text", {Key::CtrlPageDown, Key::CtrlShiftPageDown}, textEnd},
  };
  for (EditCommand& row : rows) row.traits.block = BlockUse::Moves;
  rows.push_back(
      {"Matching bracket", {Key::alt('['), Key::alt('m')}, toBracket, {.block = BlockUse::Moves}});
  rows.push_back({"Scroll up", {Key::CtrlUp}, scrollUp, {.block = BlockUse::Jumps}});
  rows.push_back({"Scroll down", {Key::CtrlDown}, scrollDown, {.block = BlockUse::Jumps}});
  return rows;
}
