#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"

namespace {

void selectAll(CTextEditor& editor) {
  const TextPlace end = editor.document.end();
  editor.moveTo(end);
  editor.setBlock({0, 0}, end, TextBlock::CursorAt::End);
}

void toggleStickyMark(CTextEditor& editor) {
  editor.stickyMark = !editor.stickyMark;
}

}  // namespace

EditCommands markCommands() {
  return {
      {"Select all", {Key::ctrl('a')}, selectAll, BlockUse::Keeps},
      {"Sticky mark", {Key::alt('s')}, toggleStickyMark},
  };
}
