#include "editor/window/type_commands.h"

#include "editor/document/text_rules.h"
#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "options/options.h"
#include "ui/escape_watch.h"

namespace {

// ---- lines

// The blanks that lead a line made by a split at the cursor; none when it is to be a plain one.
std::optional<std::wstring> indentAtCursor(const CTextEditor& editor) {
  if (!GlobalOptions::AutoIndent) return std::nullopt;
  EscapeWatch watch;
  return leadingIndent(editor.document, editor.cursor(), [&watch] { return watch.pressed(); });
}

int64_t blanksFrom(const CTextEditor& editor, TextPlace place) {
  int64_t count = 0;
  while (isEditBlank(editor.document.characterAt({place.line, place.index + count}))) ++count;
  return count;
}

void split(CTextEditor& editor) {
  editor.stickyMark = false;
  const TextPlace cursor = editor.cursor();
  const std::optional<std::wstring> indent = indentAtCursor(editor);
  const int64_t blanks = indent ? blanksFrom(editor, cursor) : 0;
  const int64_t rest = editor.document.lineLength(cursor.line) - cursor.index - blanks;
  const int64_t led = indent ? static_cast<int64_t>(indent->size()) : 0;
  if (led == 0 && blanks == 0) return editor.change(cursor, cursor, editor.spanOf(L"\n"));
  if (led + rest > LongestEditedLine) return;
  // What is skipped stays at the end of the line; it goes out and in again with the step.
  const TextPlace behind{cursor.line, cursor.index + blanks};
  editor.change(
      cursor, behind,
      editor.spanOf(editor.document.slice(cursor.line, cursor.index, blanks) + L"\n" + *indent));
}

void openAbove(CTextEditor& editor) {
  editor.stickyMark = false;
  const TextPlace start{editor.cursor().line, 0};
  const std::wstring indent = indentAtCursor(editor).value_or(L"");
  const TextPlace behindIndent{start.line, static_cast<int64_t>(indent.size())};
  editor.change(start, start, editor.spanOf(indent + L"\n"), StepKind::Single, behindIndent);
}

void splitAtEnd(CTextEditor& editor) {
  const int64_t line = editor.cursor().line;
  editor.moveTo({line, editor.document.lineLength(line)});
  split(editor);
}

void duplicateLine(CTextEditor& editor) {
  const TextPlace cursor = editor.cursor();
  const Document& document = editor.document;
  if (cursor.line + 1 < document.lineCount()) {
    const TextPlace next{cursor.line + 1, 0};
    return editor.change(next, next, document.span({cursor.line, 0}, next), StepKind::Single,
                         cursor);
  }
  const TextPlace end = document.end();
  editor.change(end, end, editor.spanOf(L"\n" + document.text(cursor.line)), StepKind::Single,
                cursor);
}

// ---- what stands above

// The place above the cursor; the end of that line where it is shorter.
TextPlace placeAbove(const CTextEditor& editor) {
  const int64_t line = editor.cursor().line - 1;
  return {line, editor.document.indexAt(line, editor.cursorColumn(), GlobalOptions::TabWidth)};
}

void insertCharacterAbove(CTextEditor& editor) {
  if (editor.cursor().line == 0) return;
  const wchar_t above = editor.document.characterAt(placeAbove(editor));
  if (above != 0) insertCharacter(editor, above);
}

void insertRestAbove(CTextEditor& editor) {
  if (editor.cursor().line == 0) return;
  const TextPlace from = placeAbove(editor);
  const int64_t length = editor.document.lineLength(from.line);
  if (from.index == length || !editor.hasRoomFor(length - from.index)) return;
  editor.stickyMark = false;
  editor.changeBlock(editor.document.span(from, {from.line, length}));
}

void quoteNext(CTextEditor& editor) {
  editor.quoteNext = true;
}

// How many characters behind the place OverStrike takes away.
int64_t struckAt(const CTextEditor& editor, TextPlace place) {
  const bool strikes =
      GlobalOptions::OverStrike && place.index < editor.document.lineLength(place.line);
  return strikes ? 1 : 0;
}

}  // namespace

void insertCharacter(CTextEditor& editor, wchar_t character) {
  TextRange range = editor.replacedRange();
  const int64_t struck = struckAt(editor, range.to);
  if (!editor.hasRoomFor(1 - struck)) return;
  editor.stickyMark = false;
  range.to.index += struck;
  editor.change(range.from, range.to, editor.spanOf({&character, 1}), StepKind::Typed);
}

void insertQuoted(CTextEditor& editor, wchar_t character) {
  if (character == 0) return;  // it would end a line, and not come back as one
  if (character != L'\r' && character != L'\n') return insertCharacter(editor, character);
  editor.stickyMark = false;
  editor.changeBlock(TextSpan::lineEnd({&character, 1}));
}

EditCommands typeCommands() {
  return {
      {"Open a line above", {Key::Enter}, openAbove, {.modifiers = ShiftState::Shift}},
      {"Split the line", {Key::Enter}, split},
      {"New line below", {Key::AltEnter}, splitAtEnd},
      {"Duplicate the line", {Key::ctrl('d')}, duplicateLine},
      {"Character above", {Key::Space}, insertCharacterAbove, {.modifiers = ShiftState::Ctrl}},
      {"Rest of the line above", {Key::AltSpace}, insertRestAbove},
      {"Quote the next key", {Key::ctrl('q')}, quoteNext},
  };
}
