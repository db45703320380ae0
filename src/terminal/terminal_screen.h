#pragma once

#include <string_view>
#include <vector>

#include "console/console.h"

// The cursor of a running command and the row that it stands on. The row is a copy, given back to
// the console when it is left, so that a long line costs the console one call. Everything that
// works on the console directly gives the copy back first. Columns and rows count from 0 and are
// cut to the grid. Application thread.
class TerminalScreen {
 public:
  explicit TerminalScreen(CConsole& screen) : console_(screen) {}

  void begin();  // goes on where the console's cursor stands, in the console's present size
  void end();    // gives everything back to the console and moves its cursor

  int x() const { return x_; }
  int y() const { return y_; }
  int width() const { return width_; }
  int height() const { return height_; }

  // Characters as they are, at the cursor. Behind the last column the next row begins at once.
  void put(wchar_t character, unsigned char attr);
  void put(std::string_view ascii, unsigned char attr);
  // Ends the row; on the last one the screen scrolls.
  void newline();
  void tab();  // to the next multiple of 8, or to the next row
  void moveTo(int x, int y);

  // In the cursor's row, from the cursor on; n from 1.
  void insertCells(int n, unsigned char attr);
  void deleteCells(int n, unsigned char attr);
  // Blanks: columns of the cursor's row, and whole rows; the ends are exclusive.
  void blankColumns(int from, int end, unsigned char attr);
  void blankRows(int from, int end, unsigned char attr);
  // The rows from `top` to the last one.
  void scrollUp(int top, int n, unsigned char attr);
  void scrollDown(int top, int n, unsigned char attr);

 private:
  Cell* touch(int from, int end);  // the cursor's row, of which these columns are about to change
  void commit();
  void leaveRow();  // the console's rows are about to change

  CConsole& console_;
  int x_ = 0;
  int y_ = 0;
  int width_ = 1;
  int height_ = 1;
  std::vector<Cell> row_;
  int rowY_ = NoRow;  // which row `row_` is
  int touchedFrom_ = 0;
  int touchedEnd_ = 0;

  static constexpr int NoRow = -1;
};
