#include <optional>

#include "editor/document/edit_clipboard.h"
#include "editor/document/text_rules.h"
#include "editor/window/desktop_clipboard.h"
#include "editor/window/edit_command.h"
#include "editor/window/mark_commands.h"
#include "editor/window/text_editor.h"

namespace {

EditClipboard& clipboard() {
  connectDesktopClipboard();
  return editClipboard();
}

void copy(CTextEditor& editor) {
  editor.stickyMark = false;
  if (editor.hasBlock()) clipboard().set(editor.blockText());
}

void copyBehind(CTextEditor& editor) {
  editor.stickyMark = false;
  if (!editor.hasBlock()) return;
  clipboard().append(editor.blockText(), editor.document.lineEndStyle());
}

// What was marked and isn't in the text any more; none where taking it out would join lines to one
// that is too long.
std::optional<TextSpan> takeBlock(CTextEditor& editor) {
  editor.stickyMark = false;
  if (!editor.hasBlock()) return {};
  TextSpan text = editor.blockText();
  editor.deleteSpan(editor.block.start, editor.block.end);
  if (editor.hasBlock()) return {};
  return text;
}

void cut(CTextEditor& editor) {
  if (const auto text = takeBlock(editor)) clipboard().set(*text);
}

void cutBehind(CTextEditor& editor) {
  if (const auto text = takeBlock(editor)) {
    clipboard().append(*text, editor.document.lineEndStyle());
  }
}

void paste(CTextEditor& editor) {
  editor.stickyMark = false;
  const TextSpan text = clipboard().get(editor.document.lineEndStyle());
  const TextRange range = editor.replacedRange();
  if (!text.empty() && fitsLine(editor.document, range.from, range.to, text)) {
    editor.changeBlock(text);
  }
}

void copyWord(CTextEditor& editor) {
  selectWord(editor);
  if (editor.hasBlock()) clipboard().set(editor.blockText());
}

}  // namespace

EditCommands blockCommands() {
  using namespace Key;
  return {
      {"Cut behind", {ShiftF4, CtrlShiftX}, cutBehind},
      {"Cut", {F4, ShiftDelete, ctrl('x')}, cut},
      {"Copy behind", {ShiftF5}, copyBehind},
      {"Copy behind, still marked",
       {CtrlShiftInsert, CtrlShiftC},
       copyBehind,
       {.block = BlockUse::Keeps}},
      {"Copy", {F5}, copy},
      {"Copy, still marked", {CtrlInsert, ctrl('c')}, copy, {.block = BlockUse::Keeps}},
      {"Paste", {F6, ShiftInsert, ctrl('v')}, paste},
      {"Copy word", {ctrl('w')}, copyWord, {.block = BlockUse::Keeps}},
  };
}
