#include "console/painter.h"

#include <algorithm>

namespace {
struct Rgb {
  unsigned short red, green, blue;
};

constexpr unsigned short Half = 0x7FFF, Full = 0xFFFF, Dark = 0x4000;
constexpr double ColourUnit = 65535.0;
constexpr Rgb Palette[16] = {
    {0, 0, 0},          {0, 0, Half},    {0, Half, 0},    {0, Half, Half},
    {Half, 0, 0},       {Half, 0, Half}, {Half, Half, 0}, {Half, Half, Half},
    {Dark, Dark, Dark}, {0, 0, Full},    {0, Full, 0},    {0, Full, Full},
    {Full, 0, 0},       {Full, 0, Full}, {Full, Full, 0}, {Full, Full, Full}};
constexpr int Black = 0;
constexpr int White = 15;
constexpr int FirstLightBackground = 2;  // from here on the cursor is black

constexpr int SmallestFont = 4;           // points
constexpr long MaxPixmapSide = 32767;     // pixels, a limit of the X protocol
constexpr long MaxPixmapArea = 1L << 26;  // pixels: 256 MiB at the server

int foreground(const Cell& cell) {
  return cell.attr & 15;
}
int background(const Cell& cell) {
  return (cell.attr >> 4) & 15;
}

ObjectPtr<PangoContext> contextOf(GtkWidget* area) {
  return ObjectPtr<PangoContext>(gtk_widget_create_pango_context(area));
}
}  // namespace

Painter::Painter(GtkWidget* area) : area_(area), font_(contextOf(area).get()) {}

Painter::~Painter() = default;

void Painter::setFont(const char* family, int points, GridSize grid) {
  context_.reset();
  pixmap_.reset();
  grid_ = grid;
  for (int size = points;; --size) {
    font_.load(family, size);
    const long width = static_cast<long>(cellWidth()) * grid.columns;
    const long height = static_cast<long>(cellHeight()) * grid.rows;
    const bool fits =
        width <= MaxPixmapSide && height <= MaxPixmapSide && width * height <= MaxPixmapArea;
    if (fits || size <= SmallestFont) return;
  }
}

PixelRect Painter::pixelsOf(int x, int y, int w, int h) const {
  return {x * cellWidth(), y * cellHeight(), w * cellWidth(), h * cellHeight()};
}

PixelSize Painter::pixelsOf(GridSize grid) const {
  return {grid.columns * cellWidth(), grid.rows * cellHeight()};
}

bool Painter::ensurePixmap() {
  if (pixmap_) return true;
  GdkWindow* window = gtk_widget_get_window(area_);
  if (!window) return false;
  const auto [width, height] = pixelsOf(grid_);
  gdk_error_trap_push();
  ObjectPtr<GdkPixmap> fresh(gdk_pixmap_new(window, width, height, -1));
  ObjectPtr<GdkGC> gc(gdk_gc_new(fresh.get()));
  GdkColor black{0, 0, 0, 0};
  gdk_gc_set_rgb_fg_color(gc.get(), &black);
  gdk_draw_rectangle(fresh.get(), gc.get(), TRUE, 0, 0, width, height);
  gdk_flush();
  if (gdk_error_trap_pop() != 0) return false;
  pixmap_ = std::move(fresh);
  context_.reset(gdk_cairo_create(pixmap_.get()));
  gtk_widget_queue_draw(area_);
  return true;
}

void Painter::paint(const Frame& frame, CursorInk ink) {
  if (!ensurePixmap()) return;
  font_.trim();
  for (const Frame::Part& part : frame.parts) {
    // A frame may be older than the grid's present size.
    if (part.y >= grid_.rows || part.x + part.count > grid_.columns) continue;
    const std::span<const Cell> cells(&frame.cells[part.first], static_cast<size_t>(part.count));
    paintPart(part.x, part.y, cells);
    const CursorState& cursor = frame.cursor;
    if (cursor.y == part.y && cursor.x >= part.x && cursor.x < part.x + part.count) {
      const bool shown = ink == CursorInk::Shown && cursor.size > 0;
      if (shown) paintCursor(cursor, cells[static_cast<size_t>(cursor.x - part.x)]);
      cursorDrawn_.store(shown, std::memory_order_relaxed);
    }
    queueDraw(part.x, part.y, part.count, 1);
  }
}

void Painter::paintPart(int x, int y, std::span<const Cell> cells) {
  bool overhanging = false, alone = false;
  rowGlyphs_.clear();
  for (const Cell& cell : cells) {
    const CellGlyph* glyph = &font_.glyph(cell.ch);
    overhanging |= glyph->fit == CellGlyph::Fit::Overhanging;
    alone |= glyph->fit == CellGlyph::Fit::Alone;
    rowGlyphs_.push_back(glyph);
  }
  paintBackground(x, y, cells);
  paintInside(x, y, cells);
  if (overhanging) {
    paintOverhanging(x, y, cells, 0);
    paintOverhanging(x, y, cells, 1);
  }
  if (alone) paintAlone(x, y, cells);
}

void Painter::setColour(int index) {
  const Rgb& colour = Palette[index];
  cairo_set_source_rgb(context_.get(), colour.red / ColourUnit, colour.green / ColourUnit,
                       colour.blue / ColourUnit);
}

void Painter::addCellRectangle(int x, int y, int w) {
  const PixelRect part = pixelsOf(x, y, w, 1);
  cairo_rectangle(context_.get(), part.x, part.y, part.width, part.height);
}

void Painter::paintBackground(int x, int y, std::span<const Cell> cells) {
  for (size_t i = 0; i < cells.size();) {
    size_t end = i + 1;
    while (end < cells.size() && background(cells[end]) == background(cells[i])) ++end;
    setColour(background(cells[i]));
    addCellRectangle(x + static_cast<int>(i), y, static_cast<int>(end - i));
    cairo_fill(context_.get());
    i = end;
  }
}

void Painter::addGlyph(const CellGlyph& glyph, int colour, int column, int row) {
  if (!glyphs_.empty() && (glyphFont_ != glyph.scaledFont || glyphColour_ != colour)) {
    flushGlyphs();
  }
  glyphFont_ = glyph.scaledFont;
  glyphColour_ = colour;
  glyphs_.push_back({glyph.index, column * cellWidth() + glyph.x,
                     row * cellHeight() + font_.baseline() + glyph.y});
}

void Painter::flushGlyphs() {
  if (glyphs_.empty()) return;
  setColour(glyphColour_);
  cairo_set_scaled_font(context_.get(), glyphFont_);
  cairo_show_glyphs(context_.get(), glyphs_.data(), static_cast<int>(glyphs_.size()));
  glyphs_.clear();
}

void Painter::paintInside(int x, int y, std::span<const Cell> cells) {
  for (size_t i = 0; i < cells.size(); ++i) {
    if (rowGlyphs_[i]->fit != CellGlyph::Fit::Inside) continue;
    addGlyph(*rowGlyphs_[i], foreground(cells[i]), x + static_cast<int>(i), y);
  }
  flushGlyphs();
}

// Every second cell at a time: what reaches over the edge falls into a cell that isn't of this turn
// and is cut off by the clip.
void Painter::paintOverhanging(int x, int y, std::span<const Cell> cells, size_t firstOfTurn) {
  cairo_save(context_.get());
  bool any = false;
  for (size_t i = firstOfTurn; i < cells.size(); i += 2) {
    if (rowGlyphs_[i]->fit != CellGlyph::Fit::Overhanging) continue;
    addCellRectangle(x + static_cast<int>(i), y, 1);
    any = true;
  }
  if (any) {
    cairo_clip(context_.get());
    for (size_t i = firstOfTurn; i < cells.size(); i += 2) {
      if (rowGlyphs_[i]->fit != CellGlyph::Fit::Overhanging) continue;
      addGlyph(*rowGlyphs_[i], foreground(cells[i]), x + static_cast<int>(i), y);
    }
    flushGlyphs();
  }
  cairo_restore(context_.get());
}

void Painter::paintAlone(int x, int y, std::span<const Cell> cells) {
  cairo_t* context = context_.get();
  for (size_t i = 0; i < cells.size(); ++i) {
    const CellGlyph& glyph = *rowGlyphs_[i];
    if (glyph.fit != CellGlyph::Fit::Alone) continue;
    const int column = x + static_cast<int>(i);
    cairo_save(context);
    addCellRectangle(column, y, 1);
    cairo_clip(context);
    setColour(foreground(cells[i]));
    cairo_translate(context, column * cellWidth(), y * cellHeight() + font_.baseline());
    cairo_scale(context, glyph.squeeze, 1);
    pango_cairo_show_glyph_string(context, glyph.font.get(), glyph.glyphs.get());
    cairo_restore(context);
  }
}

void Painter::paintCursor(const CursorState& cursor, const Cell& cell) {
  const int height = std::min(cursor.size * cellHeight() / 100, cellHeight());
  if (height <= 0) return;
  setColour(background(cell) < FirstLightBackground ? White : Black);
  const PixelRect whole = pixelsOf(cursor.x, cursor.y, 1, 1);
  cairo_rectangle(context_.get(), whole.x, whole.y + whole.height - height, whole.width, height);
  cairo_fill(context_.get());
}

void Painter::moveRows(int x, int fromY, int toY, int w, int h) {
  if (!pixmap_ || h <= 0) return;
  ObjectPtr<GdkGC> gc(gdk_gc_new(pixmap_.get()));
  // What is copied lies wholly in the pixmap: no exposures to be told of.
  gdk_gc_set_exposures(gc.get(), FALSE);
  cairo_surface_flush(cairo_get_target(context_.get()));
  const PixelRect from = pixelsOf(x, fromY, w, h);
  const PixelRect to = pixelsOf(x, toY, w, h);
  gdk_draw_drawable(pixmap_.get(), gc.get(), pixmap_.get(), from.x, from.y, to.x, to.y, to.width,
                    to.height);
  cairo_surface_mark_dirty(cairo_get_target(context_.get()));
  queueDraw(x, toY, w, h);
}

void Painter::queueDraw(int x, int y, int w, int h) {
  const PixelRect part = pixelsOf(x, y, w, h);
  gtk_widget_queue_draw_area(area_, part.x, part.y, part.width, part.height);
}
