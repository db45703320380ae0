#pragma once

#include <cstdint>
#include <limits>

#include "console/cell_string.h"
#include "editor/window/editor_syntax.h"

class CTextEditor;
class Win;

// Brings the cells of an edit up to date. It is told what has changed and paints no other rows; the
// status line it paints every time.
class EditorPainter {
 public:
  EditorPainter(const CTextEditor& editor, Win& window);

  void redraw();                                  // every row, the colours from the lines above
  void redrawFrom(int64_t line);                  // a text that changed there
  void redrawLines(int64_t first, int64_t last);  // whose text is the same
  void scrolled(int64_t down);                    // the top line is that much further down
  void paint();

  EditorSyntax& syntax() { return syntax_; }

 private:
  void findTopState();
  void paintRows();
  void paintRow(int64_t line);
  CellString visibleCells(int64_t line);
  CellString plainCells(int64_t line, int64_t column) const;
  void markBlock(int64_t line, CellString& cells) const;
  void paintStatus();

  static constexpr int64_t None = std::numeric_limits<int64_t>::max();

  const CTextEditor& editor_;
  Win& window_;
  EditorSyntax syntax_;
  bool topStateLost_ = true;  // must be found anew
  bool topAdvanced_ = false;  // by one line
  int64_t firstDirty_ = 0;    // line; None: no row is
  int64_t lastDirty_ = None;
};
