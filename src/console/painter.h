#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <span>
#include <vector>

#include "console/cell_font.h"
#include "console/grid.h"
#include "console/pixels.h"

enum class CursorInk { Hidden, Shown };

// Renders cells into the back store, a pixmap at the X server; the widget copies from it on expose.
// The pixels of a cell follow from the cell alone, whatever is around it and whatever was there
// before. All under the toolkit lock.
class Painter {
 public:
  explicit Painter(GtkWidget* area);
  ~Painter();
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  // Takes the largest size up to `points` at which the whole grid fits into a pixmap, and drops the
  // back store; the next paint makes one of the new size.
  void setFont(const char* family, int points, GridSize grid);
  int cellWidth() const { return font_.cellWidth(); }    // pixels
  int cellHeight() const { return font_.cellHeight(); }  // pixels
  // The pixels of the cells from column x and row y on, w by h of them.
  PixelRect pixelsOf(int x, int y, int w, int h) const;
  PixelSize pixelsOf(GridSize grid) const;

  // Null until the first paint.
  GdkPixmap* pixmap() const { return pixmap_.get(); }
  // False when the X server has no memory for it.
  bool ensurePixmap();
  void paint(const Frame& frame, CursorInk cursor);
  // Whether the cursor's cell was last painted with the cursor on it. Any thread.
  bool cursorDrawn() const { return cursorDrawn_.load(std::memory_order_relaxed); }
  // Moves the pixels of w by h cells from row `fromY` to row `toY`.
  void moveRows(int x, int fromY, int toY, int w, int h);

 private:
  struct ContextFree {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
  };

  void paintPart(int x, int y, std::span<const Cell> cells);
  void paintBackground(int x, int y, std::span<const Cell> cells);
  void paintInside(int x, int y, std::span<const Cell> cells);
  void paintOverhanging(int x, int y, std::span<const Cell> cells, size_t firstOfTurn);
  void paintAlone(int x, int y, std::span<const Cell> cells);
  void paintCursor(const CursorState& cursor, const Cell& cell);
  void addGlyph(const CellGlyph& glyph, int colour, int column, int row);
  void flushGlyphs();
  void setColour(int index);
  void addCellRectangle(int x, int y, int w);
  void queueDraw(int x, int y, int w, int h);

  GtkWidget* area_;
  CellFont font_;
  GridSize grid_;
  ObjectPtr<GdkPixmap> pixmap_;
  std::unique_ptr<cairo_t, ContextFree> context_;
  std::atomic<bool> cursorDrawn_{false};
  std::vector<const CellGlyph*> rowGlyphs_;
  // Glyphs of one colour and font on their way to the server.
  std::vector<cairo_glyph_t> glyphs_;
  cairo_scaled_font_t* glyphFont_ = nullptr;
  int glyphColour_ = 0;
};
