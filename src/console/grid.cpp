#include "console/grid.h"

#include <algorithm>
#include <numeric>

namespace {
constexpr unsigned char BlankAttr = 7;

// Cuts [start, start+count) to [0, limit). False when nothing is left.
bool clipRange(int& start, int& count, int limit) {
  const long long from = std::max(0, start);
  const long long to = std::min<long long>(limit, static_cast<long long>(start) + count);
  if (from >= to) return false;
  start = static_cast<int>(from);
  count = static_cast<int>(to - from);
  return true;
}

wchar_t mapLowControl(wchar_t character) {
  return character >= 1 && character <= 31 ? mapControl(character) : character;
}
}  // namespace

void DirtyBox::resize(int rows) {
  spans_.assign(static_cast<size_t>(rows), Span{-1, -1});
  dirtyLeft = dirtyTop = dirtyRight = dirtyBottom = -1;
}

void DirtyBox::add(int x, int y, int w, int h) {
  for (int row = y; row < y + h; ++row) {
    Span& span = spans_[static_cast<size_t>(row)];
    span =
        span.left < 0 ? Span{x, x + w} : Span{std::min(span.left, x), std::max(span.right, x + w)};
  }
  dirtyLeft = empty() ? x : std::min(dirtyLeft, x);
  dirtyRight = std::max(dirtyRight, x + w);
  dirtyBottom = std::max(dirtyBottom, y + h);
  dirtyTop = dirtyTop < 0 ? y : std::min(dirtyTop, y);
}

void DirtyBox::clear() {
  for (int row = std::max(dirtyTop, 0); row < dirtyBottom; ++row) {
    spans_[static_cast<size_t>(row)] = Span{-1, -1};
  }
  dirtyLeft = dirtyTop = dirtyRight = dirtyBottom = -1;
}

void Grid::resize(int columns, int rows) {
  std::lock_guard guard(lock_);
  columns_ = columns;
  rows_ = rows;
  cells_.assign(static_cast<size_t>(columns) * static_cast<size_t>(rows), Cell{L' ', BlankAttr});
  order_.resize(static_cast<size_t>(rows));
  std::iota(order_.begin(), order_.end(), 0);
  dirty_.resize(rows);
}

GridSize Grid::size() const {
  std::lock_guard guard(lock_);
  return {columns_, rows_};
}

bool Grid::clip(int& x, int& y, int& w, int& h) const {
  std::lock_guard guard(lock_);
  return clipLocked(x, y, w, h);
}

bool Grid::clipLocked(int& x, int& y, int& w, int& h) const {
  return clipRange(x, w, columns_) && clipRange(y, h, rows_);
}

std::vector<Cell> Grid::getCells(int x, int y, int w, int h) const {
  if (w <= 0 || h <= 0) return {};
  std::vector<Cell> result(static_cast<size_t>(w) * static_cast<size_t>(h));
  getCells(x, y, w, h, result.data());
  return result;
}

void Grid::getCells(int x, int y, int w, int h, Cell* cells) const {
  std::lock_guard guard(lock_);
  int left = x, top = y, width = w, height = h;
  const bool anyInside = clipLocked(left, top, width, height);
  if (!anyInside || width != w || height != h) std::fill_n(cells, static_cast<long>(w) * h, Cell{});
  if (!anyInside) return;
  for (int row = top; row < top + height; ++row) {
    std::copy_n(rowAt(row) + left, width, cells + static_cast<long>(row - y) * w + (left - x));
  }
}

bool Grid::putCells(int x, int y, int w, int h, const Cell* cells) {
  std::lock_guard guard(lock_);
  int left = x, top = y, width = w, height = h;
  if (!clipLocked(left, top, width, height)) return false;
  for (int row = top; row < top + height; ++row) {
    const Cell* source = cells + static_cast<long>(row - y) * w + (left - x);
    std::copy_n(source, width, rowAt(row) + left);
  }
  dirty_.add(left, top, width, height);
  return true;
}

bool Grid::fillAttr(int x, int y, int n, unsigned char attr) {
  std::lock_guard guard(lock_);
  int h = 1;
  if (!clipLocked(x, y, n, h)) return false;
  bool changed = false;
  Cell* row = rowAt(y);
  for (int i = x; i < x + n; ++i) {
    if (row[i].attr == attr) continue;
    row[i].attr = attr;
    changed = true;
  }
  if (changed) dirty_.add(x, y, n, 1);
  return changed;
}

bool Grid::fillBlank(int x, int y, int w, int h, unsigned char attr) {
  std::lock_guard guard(lock_);
  if (!clipLocked(x, y, w, h)) return false;
  for (int row = y; row < y + h; ++row) std::fill_n(rowAt(row) + x, w, Cell{L' ', attr});
  dirty_.add(x, y, w, h);
  return true;
}

bool Grid::store(int x, int y, Cell cell) {
  Cell& place = rowAt(y)[x];
  if (place == cell) return false;
  place = cell;
  return true;
}

// Writes the cells that `next` delivers from column x on, up to the row's end; what lies left of
// the grid is passed over. Dirty becomes what changed, from the first changed cell to the last.
template <class Source>
bool Grid::writeRow(int x, int y, Source next) {
  std::lock_guard guard(lock_);
  if (y < 0 || y >= rows_) return false;
  int firstChanged = -1, lastChanged = -1;
  Cell cell;
  for (; x < columns_ && next(cell); ++x) {
    if (x < 0 || !store(x, y, cell)) continue;
    if (firstChanged < 0) firstChanged = x;
    lastChanged = x;
  }
  if (firstChanged < 0) return false;
  dirty_.add(firstChanged, y, lastChanged - firstChanged + 1, 1);
  return true;
}

bool Grid::fillCell(int x, int y, int n, Cell cell) {
  cell.ch = mapLowControl(cell.ch);
  int left = n;
  return writeRow(x, y, [&](Cell& out) {
    out = cell;
    return left-- > 0;
  });
}

bool Grid::writeCells(int x, int y, const Cell* cells) {
  return writeRow(x, y, [&](Cell& out) {
    if (cells->ch == 0) return false;
    out = Cell{mapControl(cells->ch), cells->attr};
    ++cells;
    return true;
  });
}

bool Grid::writeWide(int x, int y, const wchar_t* text, unsigned char attr) {
  return writeRow(x, y, [&](Cell& out) {
    if (*text == 0) return false;
    out = Cell{mapControl(*text++), attr};
    return true;
  });
}

void Grid::scrollLocked(int x, int y, int w, int h, int n, unsigned char attr) {
  const int distance = std::clamp(n, -h, h);
  const int kept = h - std::abs(distance);
  if (w == columns_) {
    const auto first = order_.begin() + y, last = first + h;
    std::rotate(first, distance > 0 ? first + kept : first - distance, last);
  } else if (distance > 0) {
    for (int row = y + kept - 1; row >= y; --row) {
      std::copy_n(rowAt(row) + x, w, rowAt(row + distance) + x);
    }
  } else {
    for (int row = y; row < y + kept; ++row) {
      std::copy_n(rowAt(row - distance) + x, w, rowAt(row) + x);
    }
  }
  const int opened = distance > 0 ? y : y + kept;
  for (int row = opened; row < opened + std::abs(distance); ++row) {
    std::fill_n(rowAt(row) + x, w, Cell{L' ', attr});
  }
}

bool Grid::scroll(int x, int y, int w, int h, int n, unsigned char attr) {
  std::lock_guard guard(lock_);
  if (n == 0 || !clipLocked(x, y, w, h)) return false;
  scrollLocked(x, y, w, h, n, attr);
  dirty_.add(x, y, w, h);
  return true;
}

void Grid::scrollClean(int x, int y, int w, int h, int n, unsigned char attr) {
  std::lock_guard guard(lock_);
  if (n != 0 && clipLocked(x, y, w, h)) scrollLocked(x, y, w, h, n, attr);
}

CursorState Grid::cursor() const {
  std::lock_guard guard(lock_);
  return cursor_;
}

void Grid::touchCursor() {
  if (cursor_.x < 0 || cursor_.x >= columns_ || cursor_.y < 0 || cursor_.y >= rows_) return;
  dirty_.add(cursor_.x, cursor_.y, 1, 1);
}

bool Grid::setCursorSize(int percent) {
  std::lock_guard guard(lock_);
  if (percent == cursor_.size) return false;
  cursor_.size = percent;
  touchCursor();
  return true;
}

bool Grid::setCursorPos(int x, int y, CursorPaint paint) {
  std::lock_guard guard(lock_);
  const bool moved = x != cursor_.x || y != cursor_.y;
  const bool paints = cursor_.size > 0 && (moved || paint == CursorPaint::Always);
  if (paints) touchCursor();
  cursor_.x = x;
  cursor_.y = y;
  if (paints) touchCursor();
  return paints;
}

bool Grid::dirty() const {
  std::lock_guard guard(lock_);
  return !dirty_.empty();
}

void Grid::touchAll() {
  std::lock_guard guard(lock_);
  dirty_.add(0, 0, columns_, rows_);
}

void Grid::copyPart(Frame& frame, int x, int y, int count) const {
  frame.parts.push_back({x, y, count, frame.cells.size()});
  frame.cells.insert(frame.cells.end(), rowAt(y) + x, rowAt(y) + x + count);
}

bool Grid::takeDirty(Frame& frame) {
  std::lock_guard guard(lock_);
  frame.clear();
  frame.cursor = cursor_;
  if (dirty_.empty()) return false;
  for (int row = dirty_.dirtyTop; row < dirty_.dirtyBottom; ++row) {
    const DirtyBox::Span span = dirty_.row(row);
    if (span.left >= 0) copyPart(frame, span.left, row, span.right - span.left);
  }
  dirty_.clear();
  return true;
}

void Grid::copyTo(Frame& frame, int x, int y, int w, int h) const {
  std::lock_guard guard(lock_);
  frame.cursor = cursor_;
  if (!clipLocked(x, y, w, h)) return;
  for (int row = y; row < y + h; ++row) copyPart(frame, x, row, w);
}
