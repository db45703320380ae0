#include "viewer/view_colours.h"

#include <algorithm>

#include "foundation/path_info.h"
#include "options/options.h"
#include "ui/alert.h"

void ViewColours::load(const Westring& path) {
  const ViewedLine first = file_.lineAt(file_.textStart());
  const SyntaxLoad loaded = syntax_.load(path, colouredPart(first));
  states_.reset();
  position_ = paintedStart_ = Nowhere;
  if (loaded.status == 0) return;
  alert(errorText(loaded.status), loaded.file, AlertButtons::Ok, AlertColour::Error);
}

std::wstring ViewColours::colouredPart(const ViewedLine& line) {
  return file_.text(line, static_cast<int64_t>(CSyntax::ColouredCharacters));
}

void ViewColours::paint(const ViewedLine& line, int64_t cell, CellString& cells) {
  if (!active()) return;
  seeChanges();
  const int64_t wanted = cell + cells.length();
  if (line.start != paintedStart_ || wanted > paintedCells_) colourLine(line, wanted);
  const int64_t coloured = std::max<int64_t>(painted_.length() - cell, 0);
  const int count = static_cast<int>(std::min<int64_t>(coloured, cells.length()));
  for (int i = 0; i < count; ++i) cells[i].attr = painted_[static_cast<int>(cell) + i].attr;
}

// The line at least as far as its first `wanted` cells.
void ViewColours::colourLine(const ViewedLine& line, int64_t wanted) {
  bringTo(line.start);
  paintedStart_ = line.start;
  paintedCells_ = static_cast<int>(std::min<int64_t>(wanted, INT_MAX - CellsAhead)) + CellsAhead;
  syntax_.colour(colouredPart(line), painted_, paintedCells_);
  pass(line);
}

// What was found stays true when the file only grows.
void ViewColours::seeChanges() {
  const int tabWidth = GlobalOptions::TabWidth;
  if (tabWidth != tabWidth_) paintedStart_ = Nowhere;
  tabWidth_ = tabWidth;
  if (version_ == file_.version()) return;
  if (rewrites_ != file_.rewrites()) states_.reset();
  position_ = paintedStart_ = Nowhere;
  version_ = file_.version();
  rewrites_ = file_.rewrites();
}

void ViewColours::bringTo(int64_t position) {
  if (position == position_) return;
  const SyntaxStart start = states_.startFor(position);
  syntax_.setState(start.stack);
  isCertain_ = start.states == SyntaxStart::States::Certain;
  int64_t at = std::max(start.position, file_.textStart());
  if (!isCertain_ && file_.startOf(at) < at) at = file_.lineAt(file_.startOf(at)).next;
  while (at < position) {
    const ViewedLine line = file_.lineAt(at);
    if (line.next <= at) break;  // the file has lost its end meanwhile
    syntax_.skip(colouredPart(line));
    pass(line);
    at = line.next;
  }
  position_ = position;
}

// The engine stands behind the line now. The end of the file needn't stay the start of a line.
void ViewColours::pass(const ViewedLine& line) {
  position_ = line.next;
  if (isCertain_ && line.next < file_.size()) states_.remember(line.next, syntax_.state());
}
