#include "editor/window/text_editor.h"

#include <algorithm>

#include "console/console.h"
#include "editor/document/text_rules.h"
#include "editor/window/editor_painter.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

constexpr int RowsAround = 2;  // status line and key bar
constexpr int SidewaysStep = 4;
constexpr int LeastColumnsInView = 8;  // of the cursor's line, once the view is moved sideways

// The next multiple of SidewaysStep that is not below `columns`.
int64_t steps(int64_t columns) {
  return (columns + SidewaysStep - 1) / SidewaysStep * SidewaysStep;
}

}  // namespace

CTextEditor::CTextEditor(const Westring& path)
    : columns_(console->columns()),
      textRows_(std::max(console->rows() - RowsAround, 1)),
      window_(0, 0, console->columns() - 1, console->rows() - 1, colourOf(Colour::FileViewer),
              NoFrame, Shadow::None),
      painter_(std::make_unique<EditorPainter>(*this, window_)) {
  file.name = path;
}

CTextEditor::~CTextEditor() = default;

int64_t CTextEditor::cursorColumn() const {
  return document.columnOf(view.cursor, GlobalOptions::TabWidth);
}

// ---- moving

void CTextEditor::moveTo(TextPlace place) {
  view.cursor = document.clamped(place);
  view.wantedColumn = EditorView::NoColumn;
  showCursorRow();
}

void CTextEditor::moveToColumn(int64_t line, int64_t column) {
  line = std::clamp<int64_t>(line, 0, document.lineCount() - 1);
  view.cursor = {line, document.indexAt(line, column, GlobalOptions::TabWidth)};
  showCursorRow();
}

void CTextEditor::showCursorRow() {
  const int64_t line = view.cursor.line;
  if (line < view.top) scrollTo(line);
  if (line >= view.top + textRows_) scrollTo(line - textRows_ + 1);
}

void CTextEditor::scrollTo(int64_t topLine) {
  topLine = std::clamp<int64_t>(topLine, 0, document.lineCount() - 1);
  if (topLine == view.top) return;
  const int64_t down = topLine - view.top;
  view.top = topLine;
  painter_->scrolled(down);
}

void CTextEditor::scrollSideways() {
  const int64_t column = cursorColumn();
  int64_t left = view.left;
  if (column - left >= columns_) left += steps(column - left - columns_ + 1);
  const int64_t width = document.widthOf(view.cursor.line, GlobalOptions::TabWidth);
  const int64_t most = std::min(column, width - LeastColumnsInView);
  if (left > most) left = std::max<int64_t>(left - steps(left - most), 0);
  if (left == view.left) return;
  view.left = left;
  redrawFrom(view.top);
}

void CTextEditor::makeVisible(TextPlace from, TextPlace to) {
  const int64_t first = document.columnOf(from, GlobalOptions::TabWidth);
  const int64_t last = document.columnOf(to, GlobalOptions::TabWidth);
  int64_t left = view.left;
  if (last - left > columns_) left += steps(last - left - columns_);
  if (first < left) left -= std::min(steps(left - first), left);
  if (left == view.left) return;
  view.left = left;
  redrawFrom(view.top);
}

void CTextEditor::makeSafe() {
  const int64_t count = document.lineCount();
  if (view.cursor.line >= count) {
    view.top = std::max<int64_t>(count + 1 - textRows_, 0);
    view.cursor = {count - 1, view.cursor.index};
  }
  view.top = std::clamp<int64_t>(view.top, 0, view.cursor.line);
  view.top = std::max(view.top, view.cursor.line - textRows_ + 1);
  view.cursor = document.clamped(view.cursor);
  view.left = std::max<int64_t>(view.left, 0) / SidewaysStep * SidewaysStep;
  view.wantedColumn = EditorView::NoColumn;
  redraw();
}

// ---- the block

void CTextEditor::setBlock(TextPlace start, TextPlace end, TextBlock::CursorAt cursorAt) {
  dropBlock();
  block = {document.clamped(start), document.clamped(end), cursorAt, true};
  redrawLines(block.start.line, block.end.line);
}

void CTextEditor::dropBlock() {
  if (!block.active) return;
  block.active = false;
  redrawLines(block.start.line, block.end.line);
}

void CTextEditor::extendBlock(TextPlace anchor) {
  const TextPlace fixed = block.active ? block.fixedEnd() : anchor;
  const TextPlace moving = block.active ? block.cursorEnd() : anchor;
  if (block.active && moving == view.cursor) return;
  block = blockBetween(fixed, view.cursor);
  redrawLines(std::min(moving.line, view.cursor.line), std::max(moving.line, view.cursor.line));
}

TextSpan CTextEditor::blockText() const {
  return hasBlock() ? document.span(block.start, block.end) : TextSpan();
}

TextRange CTextEditor::replacedRange() const {
  return hasBlock() ? TextRange{block.start, block.end} : TextRange{view.cursor, view.cursor};
}

// ---- changing the text

void CTextEditor::change(TextPlace from, TextPlace to, const TextSpan& inserted, StepKind kind,
                         std::optional<TextPlace> cursorAfter) {
  from = document.clamped(from);
  to = std::max(document.clamped(to), from);
  if (from == to && inserted.empty()) return;
  const TextPlace before = view.cursor;
  dropBlock();
  const Document::Replaced replaced = document.replace(from, to, inserted);
  redrawFrom(from.line);
  moveTo(cursorAfter.value_or(replaced.end));
  history.push({.text = replaced.removed,
                .before = before,
                .after = view.cursor,
                .from = from,
                .to = replaced.end,
                .command = kind == StepKind::Typed ? typedCommand(before) : 0});
  isModified = true;
}

// Typed characters are one command for as long as each stands where the one before left the cursor.
int64_t CTextEditor::typedCommand(TextPlace before) {
  const bool goesOn = !history.undo.empty() && history.undo.top().command == typing_ &&
                      history.undo.top().after == before && typing_ != 0;
  if (!goesOn) typing_ = history.newTypingRun();
  return typing_;
}

void CTextEditor::deleteSpan(TextPlace from, TextPlace to) {
  const int64_t joined = from.index + document.lineLength(to.line) - to.index;
  const bool grows =
      joined > std::max(document.lineLength(from.line), document.lineLength(to.line));
  if (joined <= LongestEditedLine || !grows) change(from, to, TextSpan());
}

void CTextEditor::changeBlock(const TextSpan& inserted, StepKind kind) {
  const TextRange range = replacedRange();
  change(range.from, range.to, inserted, kind);
}

bool CTextEditor::hasRoomFor(int64_t count) const {
  const TextRange range = replacedRange();
  const int64_t rest = document.lineLength(range.to.line) - range.to.index;
  return range.from.index + rest + count <= LongestEditedLine;
}

TextSpan CTextEditor::spanOf(std::wstring_view text) const {
  return TextSpan::fromText(text, document.lineEndStyle());
}

// ---- the picture

void CTextEditor::redraw() {
  painter_->redraw();
}

void CTextEditor::redrawFrom(int64_t line) {
  painter_->redrawFrom(line);
}

void CTextEditor::redrawLines(int64_t first, int64_t last) {
  painter_->redrawLines(first, last);
}

void CTextEditor::paint() {
  painter_->paint();
}
