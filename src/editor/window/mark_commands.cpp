#include "editor/window/mark_commands.h"

#include <algorithm>

#include "editor/document/text_rules.h"
#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "options/options.h"
#include "ui/escape_watch.h"

namespace {

void selectAll(CTextEditor& editor) {
  const TextPlace end = editor.document.end();
  editor.moveTo(end);
  editor.setBlock({0, 0}, end, TextBlock::CursorAt::End);
}

void toggleStickyMark(CTextEditor& editor) {
  editor.stickyMark = !editor.stickyMark;
}

// The lines of the block but its last one, or the cursor's, by so many columns. What is marked and
// where the cursor stands stay with their characters.
void indent(CTextEditor& editor, int64_t columns) {
  const TextBlock block = editor.block;
  const TextPlace cursor = editor.cursor();
  const bool hasBlock = editor.hasBlock();
  const int64_t first = hasBlock ? block.start.line : cursor.line;
  const int64_t behind = hasBlock ? block.end.line : first + 1;
  EscapeWatch watch;
  const auto change = indentChange(editor.document, first, behind, columns, GlobalOptions::TabWidth,
                                   [&watch] { return watch.pressed(); });
  if (!change) return;
  const int64_t moved = change->text.firstLength() - editor.document.lineLength(first);
  const auto followed = [&](TextPlace place) {
    if (place.line != first || place.index == 0) return place;
    return TextPlace{first, std::max<int64_t>(place.index + moved, 0)};
  };
  editor.change(change->from, change->to, change->text, StepKind::Single, followed(cursor));
  if (hasBlock) editor.setBlock(followed(block.start), block.end, block.cursorAt);
}

void indentLess(CTextEditor& editor) {
  indent(editor, -indentStep(GlobalOptions::IndentWidth));
}

void indentMore(CTextEditor& editor) {
  indent(editor, indentStep(GlobalOptions::IndentWidth));
}

}  // namespace

void selectWord(CTextEditor& editor) {
  editor.dropBlock();
  const auto word = wordAt(editor.document, editor.cursor());
  if (!word) return;
  editor.moveTo(word->from);
  editor.setBlock(word->from, word->to, TextBlock::CursorAt::Start);
}

EditCommands markCommands() {
  return {
      {"Select all", {Key::ctrl('a')}, selectAll, {.block = BlockUse::Keeps}},
      {"Indent less", {Key::AltLeft}, indentLess, {.block = BlockUse::Keeps}},
      {"Indent more", {Key::AltRight}, indentMore, {.block = BlockUse::Keeps}},
      {"Sticky mark", {Key::alt('s')}, toggleStickyMark, {.block = BlockUse::Moves}},
  };
}
