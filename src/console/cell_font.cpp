#include "console/cell_font.h"

#include <algorithm>
#include <cmath>

#include "console/cell.h"
#include "foundation/utf8.h"

namespace {
constexpr unsigned ReferenceGlyph = 65;  // its logical extents are the cell
constexpr size_t ManyGlyphs = 20000;
constexpr wchar_t NoCharacter = 0x2302;
constexpr wchar_t FirstFrame = 0x2500, LastFrame = 0x259F;  // lines, corners and blocks
constexpr wchar_t FullBlock = 0x2588;
// Pixels that a stretched block reaches over each edge of its cell, the least that helps.
constexpr double FrameOverlaps[] = {0, 0.5, 1, 1.5, 2};

// What is drawn for a cell's value: controls as their graphics, what is no character as U+2302.
gunichar shownCharacter(wchar_t value) {
  if (value == 0) return NoCharacter;
  return static_cast<gunichar>(mapControl(displayCharacter(value)));
}

int floorPixels(int units) {
  return static_cast<int>(std::floor(units / double{PANGO_SCALE}));
}
int ceilPixels(int units) {
  return static_cast<int>(std::ceil(units / double{PANGO_SCALE}));
}

// Subpixel rendering smears the ink by a pixel to both sides.
int inkMargin(cairo_scaled_font_t* font) {
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_scaled_font_get_font_options(font, options);
  const cairo_antialias_t antialias = cairo_font_options_get_antialias(options);
  cairo_font_options_destroy(options);
  return antialias == CAIRO_ANTIALIAS_NONE || antialias == CAIRO_ANTIALIAS_GRAY ? 0 : 1;
}

struct Outline {
  double left = 0, top = 0, right = 0, bottom = 0;  // pixels from the origin on the baseline
};

Outline outlineOf(cairo_scaled_font_t* font, unsigned long glyph) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  cairo_t* context = cairo_create(surface);
  cairo_set_scaled_font(context, font);
  const cairo_glyph_t placed{glyph, 0, 0};
  cairo_glyph_path(context, &placed, 1);
  Outline result;
  cairo_path_extents(context, &result.left, &result.top, &result.right, &result.bottom);
  cairo_destroy(context);
  cairo_surface_destroy(surface);
  return result;
}

// Whether the glyph leaves no pixel of a cell open, when it stands at x, y in it.
bool covers(cairo_scaled_font_t* font, unsigned long glyph, double x, double y, int width,
            int height) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, width, height);
  cairo_t* context = cairo_create(surface);
  cairo_set_scaled_font(context, font);
  const cairo_glyph_t placed{glyph, x, y};
  cairo_show_glyphs(context, &placed, 1);
  cairo_destroy(context);
  cairo_surface_flush(surface);
  const unsigned char* row = cairo_image_surface_get_data(surface);
  bool full = row != nullptr;
  for (int line = 0; line < height && full; ++line) {
    full = std::all_of(row, row + width, [](unsigned char alpha) { return alpha == 255; });
    row += cairo_image_surface_get_stride(surface);
  }
  cairo_surface_destroy(surface);
  return full;
}

std::unique_ptr<cairo_scaled_font_t, ScaledFontFree> stretched(cairo_scaled_font_t* font, double x,
                                                               double y) {
  cairo_matrix_t size, device;
  cairo_scaled_font_get_font_matrix(font, &size);
  cairo_scaled_font_get_ctm(font, &device);
  cairo_matrix_scale(&size, x, y);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_scaled_font_get_font_options(font, options);
  std::unique_ptr<cairo_scaled_font_t, ScaledFontFree> result(
      cairo_scaled_font_create(cairo_scaled_font_get_font_face(font), &size, &device, options));
  cairo_font_options_destroy(options);
  if (cairo_scaled_font_status(result.get()) != CAIRO_STATUS_SUCCESS) result.reset();
  return result;
}
}  // namespace

CellFont::CellFont(PangoContext* context)
    : context_(static_cast<PangoContext*>(g_object_ref(context))),
      layout_(pango_layout_new(context)),
      description_(pango_font_description_new()) {
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  pango_layout_set_auto_dir(layout_.get(), FALSE);
}

void CellFont::load(const char* family, int points) {
  pango_font_description_set_family(description_.get(), family);
  pango_font_description_set_size(description_.get(), points * PANGO_SCALE);
  pango_context_set_font_description(context_.get(), description_.get());
  pango_layout_set_font_description(layout_.get(), description_.get());
  pango_layout_context_changed(layout_.get());

  font_.reset(pango_context_load_font(context_.get(), description_.get()));
  PangoRectangle logical{0, 0, 0, 0};
  pango_font_get_glyph_extents(font_.get(), ReferenceGlyph, nullptr, &logical);
  cellWidth_ = std::max(logical.width / PANGO_SCALE, 1);
  cellHeight_ = std::max(logical.height / PANGO_SCALE, 1);
  baseline_ = PANGO_PIXELS(-logical.y);
  // A layout rounds the font's advance its own way, at some sizes to a pixel more than the cell
  // has.
  int width = 0;
  pango_layout_set_text(layout_.get(), "0", 1);
  pango_layout_get_size(layout_.get(), &width, nullptr);
  referenceAdvance_ = std::max(logical.width, width);
  measureFrames();
}

// Rounding leaves some sizes with blocks that end a fraction of a pixel before the cell does, which
// would show as gaps in every frame.
void CellFont::measureFrames() {
  frameFont_.reset();
  glyphs_.clear();
  const CellGlyph block = resolve(FullBlock);
  glyphs_.clear();
  if (!drawsFrame(block, FullBlock) || !block.glyphs || block.glyphs->num_glyphs != 1) return;
  const unsigned long index = block.glyphs->glyphs[0].glyph;
  if (covers(block.scaledFont, index, 0, baseline_, cellWidth_, cellHeight_)) return;
  const Outline outline = outlineOf(block.scaledFont, index);
  const double width = outline.right - outline.left, height = outline.bottom - outline.top;
  if (width <= 0 || height <= 0) return;
  for (const double overlap : FrameOverlaps) {
    const double scaleX = (cellWidth_ + 2 * overlap) / width;
    const double scaleY = (cellHeight_ + 2 * overlap) / height;
    frameFont_ = stretched(block.scaledFont, scaleX, scaleY);
    frameX_ = -overlap - outline.left * scaleX;
    frameY_ = -overlap - baseline_ - outline.top * scaleY;
    if (!frameFont_ ||
        covers(frameFont_.get(), index, frameX_, frameY_ + baseline_, cellWidth_, cellHeight_)) {
      return;
    }
  }
}

// A frame character out of the screen's own font; a fallback font's has other measures.
bool CellFont::drawsFrame(const CellGlyph& glyph, wchar_t character) const {
  if (character < FirstFrame || character > LastFrame || !glyph.scaledFont) return false;
  cairo_scaled_font_t* own = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font_.get()));
  return own &&
         cairo_scaled_font_get_font_face(own) == cairo_scaled_font_get_font_face(glyph.scaledFont);
}

void CellFont::trim() {
  if (glyphs_.size() > ManyGlyphs) glyphs_.clear();
}

const CellGlyph& CellFont::glyph(wchar_t character) {
  const auto known = glyphs_.find(character);
  if (known != glyphs_.end()) return known->second;
  return glyphs_.emplace(character, resolve(character)).first->second;
}

CellGlyph CellFont::resolve(wchar_t character) {
  char utf8[8];
  const int length = g_unichar_to_utf8(shownCharacter(character), utf8);
  pango_layout_set_text(layout_.get(), utf8, length);
  CellGlyph result;
  const PangoLayoutLine* line = pango_layout_get_line_readonly(layout_.get(), 0);
  if (!line || !line->runs) return result;
  const auto* run = static_cast<const PangoGlyphItem*>(line->runs->data);
  result.font.reset(static_cast<PangoFont*>(g_object_ref(run->item->analysis.font)));
  result.scaledFont = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(result.font.get()));
  if (result.scaledFont) fitGlyph(result, character, run->glyphs);
  return result;
}

void CellFont::fitGlyph(CellGlyph& glyph, wchar_t character, const PangoGlyphString* glyphs) {
  auto* own = pango_glyph_string_copy(const_cast<PangoGlyphString*>(glyphs));
  glyph.glyphs.reset(own);
  keepMarksInside(own, glyph.font.get());
  PangoRectangle ink, logical;
  pango_glyph_string_extents(own, glyph.font.get(), &ink, &logical);
  if (ink.width <= 0 || ink.height <= 0) return;

  const int room = std::max(cellWidth_ * PANGO_SCALE, referenceAdvance_);
  if (logical.width > room) glyph.squeeze = cellWidth_ * double{PANGO_SCALE} / logical.width;
  const PangoGlyphInfo& info = own->glyphs[0];
  const bool single = own->num_glyphs == 1 && (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0 &&
                      info.glyph != PANGO_GLYPH_EMPTY;
  if (!single || glyph.squeeze != 1) {
    glyph.fit = CellGlyph::Fit::Alone;
    return;
  }
  glyph.index = info.glyph;
  if (frameFont_ && drawsFrame(glyph, character)) {
    glyph.scaledFont = frameFont_.get();
    glyph.x = frameX_;
    glyph.y = frameY_;
    glyph.fit = CellGlyph::Fit::Overhanging;
    return;
  }
  fitSingle(glyph, ink);
}

// A mark without width is meant to hang over what came before it; here it has a cell of its own and
// stands in the middle of it.
void CellFont::keepMarksInside(PangoGlyphString* glyphs, PangoFont* font) const {
  int pen = 0;
  for (int i = 0; i < glyphs->num_glyphs; ++i) {
    PangoGlyphInfo& info = glyphs->glyphs[i];
    PangoRectangle ink;
    pango_font_get_glyph_extents(font, info.glyph, &ink, nullptr);
    const int left = pen + info.geometry.x_offset + ink.x;
    const bool outside = left < 0 || left + ink.width > cellWidth_ * PANGO_SCALE;
    if (info.geometry.width == 0 && ink.width > 0 && outside) {
      const int middle = (cellWidth_ * PANGO_SCALE - ink.width) / 2;
      info.geometry.x_offset += PANGO_UNITS_ROUND(middle - left);
    }
    pen += info.geometry.width;
  }
}

void CellFont::fitSingle(CellGlyph& glyph, const PangoRectangle& ink) {
  const PangoGlyphGeometry& geometry = glyph.glyphs->glyphs[0].geometry;
  glyph.x = geometry.x_offset / double{PANGO_SCALE};
  glyph.y = geometry.y_offset / double{PANGO_SCALE};
  const int margin = inkMargin(glyph.scaledFont);
  const int left = floorPixels(ink.x) - margin;
  const int right = ceilPixels(ink.x + ink.width) + margin;
  const int top = baseline_ + floorPixels(ink.y);
  const int bottom = baseline_ + ceilPixels(ink.y + ink.height);
  if (left >= 0 && right <= cellWidth_ && top >= 0 && bottom <= cellHeight_) {
    glyph.fit = CellGlyph::Fit::Inside;
  } else if (left < -cellWidth_ || right > 2 * cellWidth_) {
    // Would reach over its neighbour to the next cell of its turn.
    glyph.fit = CellGlyph::Fit::Alone;
  } else {
    glyph.fit = CellGlyph::Fit::Overhanging;
  }
}
