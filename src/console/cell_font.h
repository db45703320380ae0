#pragma once

#include <pango/pangocairo.h>

#include <memory>
#include <unordered_map>

// Deleters for the toolkit's plain C objects.
struct ScaledFontFree {
  void operator()(cairo_scaled_font_t* font) const { cairo_scaled_font_destroy(font); }
};
struct ObjectUnref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using ObjectPtr = std::unique_ptr<T, ObjectUnref>;

struct GlyphStringFree {
  void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
};
struct FontDescriptionFree {
  void operator()(PangoFontDescription* description) const {
    pango_font_description_free(description);
  }
};

// How one character is drawn into its cell. The position is the cell's alone: no neighbour shapes
// it.
struct CellGlyph {
  enum class Fit {
    Blank,        // no ink
    Inside,       // one glyph whose ink stays in the cell
    Overhanging,  // one glyph whose ink reaches beyond the cell's edges and is cut there
    Alone         // needs squeezing or several glyphs
  };

  Fit fit = Fit::Blank;
  ObjectPtr<PangoFont> font;
  cairo_scaled_font_t* scaledFont = nullptr;                  // lives as long as `font`
  unsigned long index = 0;                                    // Inside and Overhanging
  double x = 0;                                               // from the cell's left edge, pixels
  double y = 0;                                               // from the baseline, pixels
  double squeeze = 1;                                         // Alone: horizontal scale
  std::unique_ptr<PangoGlyphString, GlyphStringFree> glyphs;  // Alone
};

// The screen's font: the size of a cell and the glyph of each character, found once and kept. Under
// the toolkit lock.
class CellFont {
 public:
  // Takes its own reference to the context.
  explicit CellFont(PangoContext* context);

  void load(const char* family, int points);
  int cellWidth() const { return cellWidth_; }    // pixels, at least 1
  int cellHeight() const { return cellHeight_; }  // pixels, at least 1
  int baseline() const { return baseline_; }      // pixels from the cell's top

  // Valid until the next call of load or trim.
  const CellGlyph& glyph(wchar_t character);
  // Forgets the glyphs when there are very many.
  void trim();

 private:
  CellGlyph resolve(wchar_t character);
  void fitGlyph(CellGlyph& glyph, wchar_t character, const PangoGlyphString* glyphs);
  void fitSingle(CellGlyph& glyph, const PangoRectangle& ink);
  void keepMarksInside(PangoGlyphString* glyphs, PangoFont* font) const;
  void measureFrames();
  bool drawsFrame(const CellGlyph& glyph, wchar_t character) const;

  ObjectPtr<PangoContext> context_;
  ObjectPtr<PangoLayout> layout_;
  std::unique_ptr<PangoFontDescription, FontDescriptionFree> description_;
  ObjectPtr<PangoFont> font_;
  int cellWidth_ = 1;
  int cellHeight_ = 1;
  int baseline_ = 0;
  int referenceAdvance_ = 0;  // of the font's own glyphs, Pango units; nothing wider fits a cell
  // The font stretched so that frames and blocks fill the cell; null when they do without it.
  std::unique_ptr<cairo_scaled_font_t, ScaledFontFree> frameFont_;
  double frameX_ = 0;  // where its glyphs stand, as in CellGlyph
  double frameY_ = 0;
  std::unordered_map<wchar_t, CellGlyph> glyphs_;
};
