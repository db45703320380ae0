#include "terminal/terminal_screen.h"

#include <algorithm>

namespace {
constexpr int TabMask = 7;
}

void TerminalScreen::begin() {
  const GridSize size = console_.getSize();
  width_ = size.columns;
  height_ = size.rows;
  row_.resize(static_cast<size_t>(width_));
  rowY_ = NoRow;
  touchedFrom_ = touchedEnd_ = 0;
  const CursorPos cursor = console_.getCursorPos();
  moveTo(cursor.x, cursor.y);
}

void TerminalScreen::end() {
  commit();
  console_.setCursorPos(x_, y_);
}

Cell* TerminalScreen::touch(int from, int end) {
  if (rowY_ != y_) {
    commit();
    console_.getCells(0, y_, width_, 1, row_.data());
    rowY_ = y_;
  }
  const bool first = touchedFrom_ == touchedEnd_;
  touchedFrom_ = first ? from : std::min(touchedFrom_, from);
  touchedEnd_ = first ? end : std::max(touchedEnd_, end);
  return row_.data();
}

void TerminalScreen::commit() {
  if (touchedFrom_ == touchedEnd_) return;
  console_.putCells(touchedFrom_, rowY_, touchedEnd_ - touchedFrom_, 1, row_.data() + touchedFrom_);
  touchedFrom_ = touchedEnd_ = 0;
}

void TerminalScreen::leaveRow() {
  commit();
  rowY_ = NoRow;
}

void TerminalScreen::put(wchar_t character, unsigned char attr) {
  touch(x_, x_ + 1)[x_] = Cell{character, attr};
  if (++x_ == width_) newline();
}

void TerminalScreen::put(std::string_view ascii, unsigned char attr) {
  while (!ascii.empty()) {
    const int count = static_cast<int>(std::min(ascii.size(), static_cast<size_t>(width_ - x_)));
    Cell* cells = touch(x_, x_ + count) + x_;
    for (int i = 0; i < count; ++i) cells[i] = Cell{ascii[static_cast<size_t>(i)], attr};
    x_ += count;
    if (x_ == width_) newline();
    ascii.remove_prefix(static_cast<size_t>(count));
  }
}

void TerminalScreen::newline() {
  x_ = 0;
  if (y_ + 1 < height_) {
    ++y_;
  } else {
    scrollUp(0, 1, console_.defaultAttr());
  }
}

void TerminalScreen::tab() {
  x_ = (x_ | TabMask) + 1;
  if (x_ >= width_) newline();
}

void TerminalScreen::moveTo(int x, int y) {
  x_ = std::clamp(x, 0, width_ - 1);
  y_ = std::clamp(y, 0, height_ - 1);
}

void TerminalScreen::insertCells(int n, unsigned char attr) {
  const int count = std::min(n, width_ - x_);
  Cell* row = touch(x_, width_);
  std::copy_backward(row + x_, row + width_ - count, row + width_);
  std::fill_n(row + x_, count, Cell{L' ', attr});
}

void TerminalScreen::deleteCells(int n, unsigned char attr) {
  const int count = std::min(n, width_ - x_);
  Cell* row = touch(x_, width_);
  std::copy(row + x_ + count, row + width_, row + x_);
  std::fill_n(row + width_ - count, count, Cell{L' ', attr});
}

void TerminalScreen::blankColumns(int from, int end, unsigned char attr) {
  end = std::min(end, width_);
  if (from < end) std::fill(touch(from, end) + from, row_.data() + end, Cell{L' ', attr});
}

void TerminalScreen::blankRows(int from, int end, unsigned char attr) {
  leaveRow();
  console_.fillBlank(0, from, width_, end - from, attr);
}

void TerminalScreen::scrollUp(int top, int n, unsigned char attr) {
  leaveRow();
  console_.scrollUp(0, top, width_, height_ - top, n, attr);
}

void TerminalScreen::scrollDown(int top, int n, unsigned char attr) {
  leaveRow();
  console_.scrollDown(0, top, width_, height_ - top, n, attr);
}
