#pragma once

#include <cstdint>
#include <vector>

#include "viewer/line_cells.h"
#include "viewer/viewed_file.h"

// One row of the screen: the line that it belongs to, and how many cells of it stand in the rows
// above. In hex mode the line is a row of bytes from anywhere.
struct ViewRow {
  ViewedLine line;
  int64_t cell = 0;
};

// Which part of a file is on the screen, and the moves from there. What is at the top is all that
// is kept: the rest is found from there when it is asked for, and again after `changed`.
// Application thread.
class ViewPage {
 public:
  ViewPage(ViewedFile& file, int columns, int rows)
      : file_(file), cells_(file), columns_(columns), rows_(rows) {}

  int columns() const { return columns_; }
  int rows() const { return rows_; }
  int64_t top() const { return top_.line.start; }
  int64_t topLine();  // the start of the line at the top, also in hex mode
  bool hex() const { return hex_; }
  bool wraps() const;
  int leftColumn() const { return leftColumn_; }  // first one that shows, of lines not wrapped

  void toggleHex();
  void toggleWrap();
  // The file, its encoding or the tabs have changed: the top becomes a place that exists.
  void changed();

  void goTo(int64_t position);  // to its row; in hex mode to the byte itself
  void up(int64_t rows = 1);
  void down();  // not when the end shows already
  void pageUp() { up(rows_ - 1); }
  void pageDown();  // the last row becomes the first
  void home();
  void end();  // nothing when it shows already
  // By columns of lines that aren't wrapped, by bytes in hex mode.
  void left(int count);
  void right(int count);
  // The bytes [from, to) come into view, in the fifth row where there are rows above.
  void show(int64_t from, int64_t to);
  // Of lines that aren't wrapped the columns with those bytes, by steps.
  void showColumns(int64_t from, int64_t to);

  // The rows that show, from the top on: fewer than the screen has at the end of the file.
  const std::vector<ViewRow>& layout();
  int64_t bottomEnd();  // the byte behind the last line that shows
  bool endShows();      // nothing of the file lies below

 private:
  static constexpr int RowsAboveHit = 4;
  static constexpr int ColumnStep = 4;

  ViewedLine hexLine(int64_t start) const;
  ViewedLine lineAt(int64_t start) { return hex_ ? hexLine(start) : file_.lineAt(start); }
  ViewRow rowOf(int64_t position);
  int64_t firstByte();
  int64_t lastCell(const ViewedLine& line);
  void moveTo(const ViewRow& row);
  bool stepUp();
  void layOut();

  ViewedFile& file_;
  LineCells cells_;
  const int columns_;
  const int rows_;
  ViewRow top_;
  int leftColumn_ = 0;
  bool hex_ = false;
  bool laidOut_ = false;  // what follows is true
  std::vector<ViewRow> layout_;
  bool endShows_ = false;
};
