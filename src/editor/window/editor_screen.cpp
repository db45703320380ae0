#include "editor/window/editor_screen.h"

#include <algorithm>
#include <cwctype>

#include "console/console.h"
#include "console/input.h"
#include "console/text_state.h"
#include "editor/text/edit_directory.h"
#include "editor/window/mark_commands.h"
#include "editor/window/move_commands.h"
#include "editor/window/type_commands.h"
#include "foundation/path_info.h"
#include "options/options.h"
#include "ui/alert.h"

namespace {

constexpr int FirstTextRow = 1;
constexpr int OverStrikeShape = 80, InsertShape = 15;  // percent of a cell
constexpr int WheelLines = 3;
constexpr int PageRepeatMs = 200, ScrollRepeatMs = 50;

// What a key inserts that is no command; 0 for nothing.
wchar_t characterOf(Key::Code key) {
  if (key.has(Key::GrayKey)) return static_cast<wchar_t>(key.value() & 0xFF);
  if (!key.isCharacter()) return 0;
  const wchar_t character = key.character();
  const bool isText = character == L'\t' || character >= 128 || std::iswprint(character) != 0;
  return isText ? character : 0;
}

// Of a move of the view, which may leave the cursor where it is.
BlockUse blockUseOfView(int shiftState) {
  return (shiftState & ShiftState::Shift) != 0 ? BlockUse::Moves : BlockUse::Jumps;
}

}  // namespace

void EditorScreen::draw() {
  editor_.scrollSideways();
  editor_.paint();
  const TextPlace cursor = editor_.cursor();
  setTextPos(static_cast<int>(editor_.cursorColumn() - editor_.view.left),
             FirstTextRow + static_cast<int>(cursor.line - editor_.view.top));
  setCursorShape(GlobalOptions::OverStrike ? OverStrikeShape : InsertShape);
}

// ---- keys

void EditorScreen::onKey(Key::Code key, int shiftState) {
  repeat_ = Repeat::Nothing;
  performKey(key, shiftState);
  afterInput();
}

void EditorScreen::afterInput() {
  if (editor_.hasEnded()) return leave();
  const int error = editor_.file.journal.untoldError();
  if (error == 0) return;
  draw();
  alert(L"Unsaved changes cannot be put aside: " + errorText(error), editDirectory(),
        AlertButtons::Ok, AlertColour::Error);
}

void EditorScreen::performKey(Key::Code key, int shiftState) {
  const bool isQuoted = editor_.quoteNext;
  editor_.quoteNext = false;
  if (key.has(Key::CtrlDigitKey)) {
    editor_.endTyping();
    return runBookmark(key);
  }
  const TextPlace anchor = editor_.cursor();
  if (isQuoted && key.isCharacter()) {
    insertQuoted(editor_, key.character());
    return afterCommand(BlockUse::Drops, shiftState, anchor);
  }
  const EditCommand* command = findEditCommand(key, shiftState);
  if (command) {
    if (command->traits.asks == Asks::Yes) editor_.file.journal.flush();
    command->run(editor_);
    editor_.endTyping();
  } else if (const wchar_t character = characterOf(key); character != 0) {
    insertCharacter(editor_, character);
  }
  afterCommand(command ? command->traits.block : BlockUse::Drops, shiftState, anchor);
}

void EditorScreen::afterCommand(BlockUse use, int shiftState, TextPlace anchor) {
  const bool isShifted = use == BlockUse::Moves && (shiftState & ShiftState::Shift) != 0;
  const bool moves = use == BlockUse::Moves || use == BlockUse::Jumps;
  if (isShifted || (moves && editor_.stickyMark)) return editor_.extendBlock(anchor);
  if (editor_.stickyMark) return;
  const bool keeps = use == BlockUse::Keeps || use == BlockUse::Jumps;
  if (keeps && editor_.cursor() == editor_.block.cursorEnd()) return;
  editor_.dropBlock();
}

// Nothing becomes of the block.
void EditorScreen::runBookmark(Key::Code key) {
  TextPlace& bookmark = editor_.history.bookmarks[static_cast<size_t>(Key::digitOf(key))];
  if (key.has(Key::ShiftedKey)) {
    bookmark = editor_.cursor();
  } else if (bookmark.index != UnsetBookmark) {
    editor_.moveTo(bookmark);
  }
}

// ---- the mouse

void EditorScreen::onMouse(const MouseMessage& mouse) {
  editor_.endTyping();
  repeat_ = Repeat::Nothing;
  const TextPlace anchor = editor_.cursor();
  Key::Code key;
  if (selecting_ && mouse.kind == MouseKind::LeftDrag) {
    dragTo(mouse);
  } else if (selecting_ && mouse.kind == MouseKind::LeftRelease) {
    selecting_ = false;
    if (editor_.block.empty()) editor_.dropBlock();
  } else if (keyBar_.take(mouse, key)) {
    if (key != Key::NoKey) performKey(key, mouse.state);
  } else {
    mouseInText(mouse, anchor);
  }
  afterInput();
}

void EditorScreen::mouseInText(const MouseMessage& mouse, TextPlace anchor) {
  switch (mouse.kind) {
    case MouseKind::LeftPress:
      return press(mouse, anchor);
    case MouseKind::LeftDoubleClick:
      selecting_ = mouse.y >= FirstTextRow;
      if (!selecting_) return;
      pointAt(mouse);
      return selectWord(editor_);
    case MouseKind::RightPress:
      if (mouse.y * 3 < console->rows()) repeat_ = Repeat::PageUp;
      if (mouse.y * 3 >= console->rows() * 2) repeat_ = Repeat::PageDown;
      return repeatStep();
    case MouseKind::Wheel:
      scrollWithCursor(editor_, mouse.wheel > 0 ? -WheelLines : WheelLines);
      return afterCommand(blockUseOfView(mouse.state), mouse.state, anchor);
    default:
      return;
  }
}

void EditorScreen::press(const MouseMessage& mouse, TextPlace anchor) {
  selecting_ = mouse.y >= FirstTextRow;
  if (!selecting_) return;
  pointAt(mouse);
  afterCommand(BlockUse::Moves, mouse.state, anchor);
}

// Beyond the first or the last row the text scrolls while the button is held.
void EditorScreen::dragTo(const MouseMessage& mouse) {
  if (mouse.y < FirstTextRow) repeat_ = Repeat::ScrollUp;
  if (mouse.y >= FirstTextRow + editor_.textRows()) repeat_ = Repeat::ScrollDown;
  dragged_ = mouse;
  dragStep();
}

void EditorScreen::dragStep() {
  const TextPlace anchor = editor_.cursor();
  if (repeat_ == Repeat::ScrollUp) scrollWithCursor(editor_, -1);
  if (repeat_ == Repeat::ScrollDown) scrollWithCursor(editor_, 1);
  pointAt(dragged_);
  editor_.extendBlock(anchor);
}

void EditorScreen::pointAt(const MouseMessage& mouse) {
  const int row = std::clamp(mouse.y - FirstTextRow, 0, editor_.textRows() - 1);
  editor_.moveToColumn(editor_.view.top + row, editor_.view.left + mouse.x);
  editor_.view.wantedColumn = EditorView::NoColumn;
}

void EditorScreen::repeatStep() {
  const TextPlace anchor = editor_.cursor();
  switch (repeat_) {
    case Repeat::Nothing:
      return;
    case Repeat::PageUp:
    case Repeat::PageDown:
      repeat_ == Repeat::PageUp ? pageUp(editor_) : pageDown(editor_);
      return afterCommand(blockUseOfView(lastShiftState()), lastShiftState(), anchor);
    case Repeat::ScrollUp:
    case Repeat::ScrollDown:
      return dragStep();
  }
}

void EditorScreen::onTimeOut() {
  if (editor_.file.journal.dueIn() == 0) editor_.file.journal.flush();
  repeatStep();
  afterInput();
}

// A new file whose text is only in its journal stays, or the journal would have nothing to fit.
void EditorScreen::onEnd() {
  editor_.file.journal.flush();
  if (editor_.isModified) editor_.file.created.keep();
}

int EditorScreen::waitMs() const {
  switch (repeat_) {
    case Repeat::Nothing:
      if (const auto due = editor_.file.journal.dueIn()) return static_cast<int>(*due);
      return NoLimit;
    case Repeat::PageUp:
    case Repeat::PageDown:
      return PageRepeatMs;
    case Repeat::ScrollUp:
    case Repeat::ScrollDown:
      return ScrollRepeatMs;
  }
  return NoLimit;
}
