#include "console/cell_font.h"

#include <algorithm>
#include <cmath>

#include "console/cell.h"
#include "foundation/utf8.h"

namespace {
constexpr unsigned ReferenceGlyph = 65;  // its logical extents are the cell
constexpr size_t ManyGlyphs = 20000;
constexpr wchar_t NoCharacter = 0x2302;

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
}  // namespace

CellFont::CellFont(PangoContext* context)
    : context_(static_cast<PangoContext*>(g_object_ref(context))),
      layout_(pango_layout_new(context)),
      description_(pango_font_description_new()) {
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  pango_layout_set_auto_dir(layout_.get(), FALSE);
}

void CellFont::load(const char* family, int points) {
  glyphs_.clear();
  pango_font_description_set_family(description_.get(), family);
  pango_font_description_set_size(description_.get(), points * PANGO_SCALE);
  pango_context_set_font_description(context_.get(), description_.get());
  pango_layout_set_font_description(layout_.get(), description_.get());
  pango_layout_context_changed(layout_.get());

  ObjectPtr<PangoFont> font(pango_context_load_font(context_.get(), description_.get()));
  PangoRectangle logical{0, 0, 0, 0};
  pango_font_get_glyph_extents(font.get(), ReferenceGlyph, nullptr, &logical);
  cellWidth_ = std::max(logical.width / PANGO_SCALE, 1);
  cellHeight_ = std::max(logical.height / PANGO_SCALE, 1);
  baseline_ = PANGO_PIXELS(-logical.y);
  referenceAdvance_ = logical.width;
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
  if (result.scaledFont) fitGlyph(result, run->glyphs);
  return result;
}

void CellFont::fitGlyph(CellGlyph& glyph, const PangoGlyphString* glyphs) {
  auto* own = pango_glyph_string_copy(const_cast<PangoGlyphString*>(glyphs));
  glyph.glyphs.reset(own);
  PangoRectangle ink, logical;
  pango_glyph_string_extents(own, glyph.font.get(), &ink, &logical);
  if (ink.width <= 0 || ink.height <= 0) return;

  const int room = std::max(cellWidth_ * PANGO_SCALE, referenceAdvance_);
  if (logical.width > room) {
    glyph.squeeze = cellWidth_ * double{PANGO_SCALE} / logical.width;
  } else if (logical.width == 0 || ink.x + ink.width <= 0 || ink.x >= cellWidth_ * PANGO_SCALE) {
    // A combining mark hangs over what came before it; here it has a cell of its own.
    glyph.x = (cellWidth_ - PANGO_PIXELS(ink.width)) / 2 - floorPixels(ink.x);
  }

  const PangoGlyphInfo& info = own->glyphs[0];
  const bool single = own->num_glyphs == 1 && (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0 &&
                      info.glyph != PANGO_GLYPH_EMPTY;
  if (!single || glyph.squeeze != 1) {
    glyph.fit = CellGlyph::Fit::Alone;
    return;
  }
  glyph.index = info.glyph;
  const int margin = inkMargin(glyph.scaledFont);
  const double left = floorPixels(ink.x) + glyph.x - margin;
  const double right = ceilPixels(ink.x + ink.width) + glyph.x + margin;
  const bool inside = left >= 0 && right <= cellWidth_ && baseline_ + floorPixels(ink.y) >= 0 &&
                      baseline_ + ceilPixels(ink.y + ink.height) <= cellHeight_;
  // A glyph wider than two cells would reach over its neighbour to the next one of its turn.
  const bool reachesFar = left < -cellWidth_ || right > 2 * cellWidth_;
  glyph.fit = inside       ? CellGlyph::Fit::Inside
              : reachesFar ? CellGlyph::Fit::Alone
                           : CellGlyph::Fit::Overhanging;
  if (glyph.fit == CellGlyph::Fit::Alone) return;
  glyph.x += info.geometry.x_offset / double{PANGO_SCALE};
  glyph.y = info.geometry.y_offset / double{PANGO_SCALE};
}
