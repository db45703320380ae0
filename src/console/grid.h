#pragma once

#include <mutex>
#include <vector>

#include "console/cell.h"
#include "console/console.h"

struct CursorState {
  int x = 0;
  int y = 0;
  int size = 0;  // percent of the cell height; 0 hides it
};

// A copy of cells to paint: parts of rows, one behind the other in `cells`, and the cursor of the
// same moment.
struct Frame {
  struct Part {
    int x;
    int y;
    int count;
    size_t first;  // index in `cells`
  };
  std::vector<Part> parts;
  std::vector<Cell> cells;
  CursorState cursor;

  void clear() {
    parts.clear();
    cells.clear();
  }
};

// What changed since the last paint: a bounding box, and inside it for each row the columns
// touched. -1 in all four fields means nothing yet; right and bottom are exclusive.
class DirtyBox {
 public:
  struct Span {
    int left;
    int right;
  };

  void resize(int rows);                 // forgets everything
  void add(int x, int y, int w, int h);  // inside the grid
  void clear();
  bool empty() const { return dirtyTop < 0; }
  Span row(int y) const { return spans_[static_cast<size_t>(y)]; }

  int dirtyLeft = -1;
  int dirtyTop = -1;
  int dirtyRight = -1;
  int dirtyBottom = -1;

 private:
  std::vector<Span> spans_;
};

// Whether a cursor that stays where it is must be painted all the same, because it was hidden.
enum class CursorPaint { WhenMoved, Always };

// The cells of the screen in plain memory, the cursor, and what of both isn't painted yet.
// Everything clips to the grid. Any thread: one short lock inside, taken after the toolkit lock,
// never before it. The writers tell whether there is something to paint.
class Grid {
 public:
  Grid() { resize(80, 25); }
  void resize(int columns, int rows);  // blanks in attribute 7; nothing is dirty
  GridSize size() const;

  std::vector<Cell> getCells(int x, int y, int w, int h) const;
  void getCells(int x, int y, int w, int h, Cell* cells) const;
  bool putCells(int x, int y, int w, int h, const Cell* cells);
  bool fillAttr(int x, int y, int n, unsigned char attr);
  bool fillBlank(int x, int y, int w, int h, unsigned char attr);
  bool fillCell(int x, int y, int n, Cell cell);
  bool writeCells(int x, int y, const Cell* cells);  // up to a cell whose ch is 0
  bool writeWide(int x, int y, const wchar_t* text, unsigned char attr);

  // Moves the rows of a rectangle by n (above 0 downwards); what opens up becomes blank.
  bool scroll(int x, int y, int w, int h, int n, unsigned char attr);
  // The same without calling anything dirty, for a caller that moves the pixels itself.
  void scrollClean(int x, int y, int w, int h, int n, unsigned char attr);
  // Makes a rectangle lie inside the grid; false when nothing is left of it.
  bool clip(int& x, int& y, int& w, int& h) const;

  CursorState cursor() const;
  bool setCursorSize(int percent);  // false when unchanged
  bool setCursorPos(int x, int y, CursorPaint paint);

  bool dirty() const;
  void touchAll();
  // Moves what is dirty into `frame`; false when nothing was.
  bool takeDirty(Frame& frame);
  // Adds a rectangle to `frame`, clipped, whether it is dirty or not.
  void copyTo(Frame& frame, int x, int y, int w, int h) const;

 private:
  bool clipLocked(int& x, int& y, int& w, int& h) const;
  void scrollLocked(int x, int y, int w, int h, int n, unsigned char attr);
  void copyPart(Frame& frame, int x, int y, int count) const;
  bool store(int x, int y, Cell cell);  // true when it changed
  void touchCursor();
  size_t indexOf(int y) const {
    return static_cast<size_t>(order_[static_cast<size_t>(y)]) * static_cast<size_t>(columns_);
  }
  Cell* rowAt(int y) { return &cells_[indexOf(y)]; }
  const Cell* rowAt(int y) const { return &cells_[indexOf(y)]; }

  template <class Source>
  bool writeRow(int x, int y, Source next);

  mutable std::mutex lock_;
  int columns_ = 0;
  int rows_ = 0;
  std::vector<Cell> cells_;
  std::vector<int> order_;  // which row of `cells_` is row y: whole rows scroll by their numbers
  CursorState cursor_;
  DirtyBox dirty_;
};
