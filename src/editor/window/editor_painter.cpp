#include "editor/window/editor_painter.h"

#include <algorithm>

#include "console/text_state.h"
#include "editor/window/status_line.h"
#include "editor/window/text_editor.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

constexpr int StatusRow = 0, FirstTextRow = 1;
constexpr const char* KeyBar[KeyBarFields] = {"1Help",  "2Save",   "3SaveAs", "4Cut", "5Copy",
                                              "6Paste", "7Search", "8Rplace", " ",    "10Quit"};

}  // namespace

EditorPainter::EditorPainter(const CTextEditor& editor, Win& window)
    : editor_(editor), window_(window) {}

// ---- what has changed

void EditorPainter::redraw() {
  topStateLost_ = true;
  firstDirty_ = 0;
  lastDirty_ = None;
}

void EditorPainter::redrawFrom(int64_t line) {
  if (line < editor_.view.top) return redraw();
  firstDirty_ = std::min(firstDirty_, line);
  lastDirty_ = None;
}

void EditorPainter::redrawLines(int64_t first, int64_t last) {
  const bool nothing = firstDirty_ == None;
  firstDirty_ = std::min(firstDirty_, first);
  lastDirty_ = nothing ? last : std::max(lastDirty_, last);
}

void EditorPainter::scrolled(int64_t down) {
  if (down != 1 || topAdvanced_ || topStateLost_) return redraw();
  topAdvanced_ = true;
  firstDirty_ = 0;
  lastDirty_ = None;
}

// ---- painting

void EditorPainter::paint() {
  if (!console) return;
  BatchScope batch;
  findTopState();
  paintRows();
  firstDirty_ = None;
  lastDirty_ = None;
  paintStatus();
}

void EditorPainter::findTopState() {
  const int64_t top = editor_.view.top;
  if (topStateLost_) {
    syntax_.rescan(editor_.document, top);
    drawKeyBarLine(KeyBar);
  } else if (topAdvanced_) {
    syntax_.advance(editor_.document, top - 1);
  }
  topStateLost_ = false;
  topAdvanced_ = false;
}

void EditorPainter::paintRows() {
  const int64_t top = editor_.view.top;
  const int64_t bottom = top + editor_.textRows() - 1;
  const int64_t last = std::min(lastDirty_, bottom);
  if (firstDirty_ > last) return;
  syntax_.restart();
  for (int64_t line = top; line <= last; ++line) {
    if (line >= firstDirty_) {
      paintRow(line);
    } else {
      syntax_.pass(editor_.document, line);
    }
  }
}

void EditorPainter::paintRow(int64_t line) {
  const bool exists = line < editor_.document.lineCount();
  CellString cells(colourOf(Colour::FileViewer));
  if (exists) cells = visibleCells(line);
  cells.setAttr(colourOf(Colour::FileViewer));
  cells = padded(cells, editor_.columns());
  if (exists) markBlock(line, cells);
  window_.put(0, FirstTextRow + static_cast<int>(line - editor_.view.top), cells);
}

// The cells of a line from the view's left edge to its right one, or to the line's end.
CellString EditorPainter::visibleCells(int64_t line) {
  const int64_t left = editor_.view.left;
  const int64_t right = left + editor_.columns();
  CellString all;
  syntax_.colour(editor_.document, line, all, right);
  CellString cells = left < all.length() ? mid(all, static_cast<int>(left), editor_.columns())
                                         : CellString(colourOf(Colour::FileViewer));
  const TextPlace behind{line, EditorSyntax::MostCharacters};
  if (all.length() < right && editor_.document.characterAt(behind) != 0) {
    cells.append(plainCells(line, std::max<int64_t>(left, all.length())));
  }
  return cells;
}

// Those from a column on that is too far along the line to have colours.
CellString EditorPainter::plainCells(int64_t line, int64_t column) const {
  const int tab = GlobalOptions::TabWidth;
  const int64_t index = editor_.document.indexAt(line, column, tab);
  const int64_t indexColumn = editor_.document.columnOf({line, index}, tab);
  const std::wstring text =
      editor_.document.slice(line, index, editor_.view.left + editor_.columns() - column);
  return EditorSyntax::plain(text, indexColumn, column);
}

void EditorPainter::markBlock(int64_t line, CellString& cells) const {
  const TextBlock& block = editor_.block;
  if (!block.active || line < block.start.line || line > block.end.line) return;
  const int tab = GlobalOptions::TabWidth;
  const int64_t left = editor_.view.left;
  int64_t from = 0;
  int64_t to = cells.length();
  if (line == block.start.line) from = editor_.document.columnOf(block.start, tab) - left;
  if (line == block.end.line) to = editor_.document.columnOf(block.end, tab) - left;
  to = std::min<int64_t>(to, cells.length());
  for (int64_t x = std::max<int64_t>(from, 0); x < to; ++x) {
    cells[static_cast<int>(x)].attr = colourOf(Colour::Highlight);
  }
}

void EditorPainter::paintStatus() {
  const Westring text = padRight(editorStatus(editor_), editor_.columns());
  window_.put(0, StatusRow, text, colourOf(Colour::MenuBar));
}
