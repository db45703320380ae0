#pragma once

#include <cstdint>
#include <vector>

#include "console/cell_string.h"
#include "viewer/line_cells.h"
#include "viewer/view_colours.h"
#include "viewer/view_page.h"
#include "viewer/viewed_file.h"

// A stretch of the file that a search has found: bytes from, but not, to.
struct Hit {
  static constexpr int64_t None = -1;
  int64_t from = None;
  int64_t to = None;

  bool exists() const { return from != None; }
};

// The rows of a page as cells. Application thread.
class PagePainter {
 public:
  PagePainter(ViewedFile& file, ViewPage& page, ViewColours& colours)
      : file_(file), page_(page), colours_(colours), cells_(file) {}

  // As many rows as the screen has, each as wide; those behind the end are blank.
  std::vector<CellString> rows(const Hit& hit);

 private:
  CellString textRow(const ViewRow& row);
  CellString hexRow(int64_t position);
  CellString errorRow(int error) const;
  void mark(CellString& cells, int64_t from, int64_t to) const;
  void markInText(CellString& cells, const ViewRow& row, const Hit& hit);
  void markInHex(CellString& cells, int64_t position, const Hit& hit) const;

  ViewedFile& file_;
  ViewPage& page_;
  ViewColours& colours_;
  LineCells cells_;
};
