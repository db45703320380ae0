#include "editor/window/type_commands.h"

#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "options/options.h"

namespace {

// How many characters behind the place OverStrike takes away.
int64_t struckAt(const CTextEditor& editor, TextPlace place) {
  const bool strikes =
      GlobalOptions::OverStrike && place.index < editor.document.lineLength(place.line);
  return strikes ? 1 : 0;
}

}  // namespace

void insertCharacter(CTextEditor& editor, wchar_t character) {
  editor.stickyMark = false;
  const TextPlace from = editor.block.active ? editor.block.start : editor.cursor();
  TextPlace to = editor.block.active ? editor.block.end : from;
  const int64_t struck = struckAt(editor, to);
  if (!editor.hasRoomFor(1 - struck)) return;
  to.index += struck;
  editor.change(from, to, editor.spanOf({&character, 1}), StepKind::Typed);
}

void insertQuoted(CTextEditor& editor, wchar_t character) {
  if (character != L'\r' && character != L'\n') return insertCharacter(editor, character);
  editor.stickyMark = false;
  editor.changeBlock(TextSpan::lineEnd({&character, 1}));
}
