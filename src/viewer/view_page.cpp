#include "viewer/view_page.h"

#include <algorithm>

#include "options/options.h"
#include "viewer/hex_row.h"

namespace {

constexpr int64_t Whole = INT64_MAX;

}  // namespace

bool ViewPage::wraps() const {
  return !hex_ && GlobalOptions::ViewerWrap;
}

int64_t ViewPage::topLine() {
  return hex_ ? file_.startOf(top()) : top();
}

// Of the first character that begins in the first row: what stays there when rows change.
int64_t ViewPage::firstByte() {
  if (hex_) return top();
  const int64_t position = cells_.positionOf(top_.line, top_.cell);
  const bool isTab = cells_.cellOf(top_.line, position) < top_.cell;  // from the row above
  return isTab ? file_.lines().characterStart(position + 1) : position;
}

void ViewPage::toggleHex() {
  const int64_t position = firstByte();
  hex_ = !hex_;
  goTo(position);
}

void ViewPage::toggleWrap() {
  const int64_t position = firstByte();
  GlobalOptions::ViewerWrap = !GlobalOptions::ViewerWrap;
  goTo(position);
}

void ViewPage::changed() {
  if (top() >= file_.size() && file_.size() > 0) {
    moveTo({lineAt(file_.size()), 0});
    return up(rows_);
  }
  if (hex_) return moveTo({hexLine(top()), 0});
  ViewRow row{file_.lineAt(file_.startOf(top())), 0};
  if (wraps() && row.line.start == top()) row.cell = std::min(top_.cell, lastCell(row.line));
  moveTo(row);
}

void ViewPage::goTo(int64_t position) {
  moveTo(rowOf(position));
}

void ViewPage::up(int64_t rows) {
  while (rows-- > 0 && stepUp()) {
  }
}

void ViewPage::down() {
  if (endShows()) return;
  const std::vector<ViewRow>& shown = layout();
  moveTo(shown.size() > 1 ? ViewRow(shown[1]) : ViewRow{lineAt(shown.front().line.next), 0});
}

void ViewPage::pageDown() {
  if (!endShows()) moveTo(ViewRow(layout().back()));
}

void ViewPage::home() {
  moveTo({lineAt(hex_ ? 0 : file_.textStart()), 0});
}

void ViewPage::end() {
  if (endShows()) return;
  moveTo({lineAt(file_.size()), 0});
  up(rows_);
}

void ViewPage::left(int count) {
  if (hex_) return goTo(std::max<int64_t>(top() - count, 0));
  if (!wraps()) leftColumn_ = std::max(leftColumn_ - count, 0);
}

void ViewPage::right(int count) {
  constexpr int FarRight = 1 << 30;
  if (hex_) return goTo(top() + count);
  if (!wraps()) leftColumn_ = std::min(leftColumn_, FarRight) + count;
}

void ViewPage::show(int64_t from, int64_t to) {
  goTo(hex_ ? from - from % HexRow::RowBytes : from);
  up(RowsAboveHit);
  showColumns(from, to);
}

const std::vector<ViewRow>& ViewPage::layout() {
  if (!laidOut_) layOut();
  return layout_;
}

int64_t ViewPage::bottomEnd() {
  return layout().empty() ? top() : layout().back().line.next;
}

bool ViewPage::endShows() {
  layout();
  return endShows_;
}

ViewedLine ViewPage::hexLine(int64_t start) const {
  const int64_t end = std::max(std::min(start + HexRow::RowBytes, file_.size()), start);
  return {start, end, end, 0};
}

// The row that shows the byte.
ViewRow ViewPage::rowOf(int64_t position) {
  if (hex_) {
    const int64_t last = std::max<int64_t>(file_.size() - 1, 0);
    return {hexLine(std::clamp<int64_t>(position, 0, last)), 0};
  }
  const ViewedLine line = file_.lineAt(file_.startOf(position));
  if (!wraps()) return {line, 0};
  const int64_t cell = std::min(cells_.cellOf(line, position), lastCell(line));
  return {line, cell - cell % columns_};
}

// Where the last row of a wrapped line begins.
int64_t ViewPage::lastCell(const ViewedLine& line) {
  const int64_t length = cells_.length(line, Whole);
  return length == 0 ? 0 : (length - 1) / columns_ * columns_;
}

void ViewPage::moveTo(const ViewRow& row) {
  top_ = row;
  laidOut_ = false;
}

// False at the beginning of the file.
bool ViewPage::stepUp() {
  if (top_.cell > 0) {
    moveTo({top_.line, top_.cell - columns_});
    return true;
  }
  if (top() <= (hex_ ? 0 : file_.textStart())) return false;
  if (hex_) {
    moveTo({hexLine(std::max<int64_t>(top() - HexRow::RowBytes, 0)), 0});
    return true;
  }
  const ViewedLine line = file_.lineAt(file_.previousLine(top()));
  moveTo({line, wraps() ? lastCell(line) : 0});
  return true;
}

void ViewPage::layOut() {
  layout_.clear();
  ViewRow row = top_;
  while (static_cast<int>(layout_.size()) < rows_ && row.line.start < file_.size()) {
    const int64_t missing = rows_ - static_cast<int64_t>(layout_.size());
    // One cell more tells whether the line goes on below.
    const int64_t most = row.cell + missing * columns_ + 1;
    const int64_t length = wraps() ? cells_.length(row.line, most) : 0;
    do {
      layout_.push_back(row);
      row.cell += columns_;
    } while (row.cell < length && static_cast<int>(layout_.size()) < rows_);
    if (row.cell < length) break;
    row = {lineAt(row.line.next), 0};
  }
  endShows_ = row.cell == 0 && row.line.start >= file_.size();
  laidOut_ = true;
}

void ViewPage::showColumns(int64_t from, int64_t to) {
  if (hex_ || wraps()) return;
  const ViewedLine line = rowOf(from).line;
  const int64_t first = cells_.cellOf(line, from);
  const int64_t end = cells_.cellOf(line, to);
  // The last column may say that the line goes on.
  while (end > leftColumn_ + columns_ - 1) leftColumn_ += ColumnStep;
  while (first < leftColumn_) leftColumn_ = std::max(leftColumn_ - ColumnStep, 0);
}
