#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "console/cell_string.h"
#include "editor/document/document.h"
#include "syntax/syntax.h"

// The colours of the text on the screen. It keeps what is open at the start of the top line, and
// finds it anew by looking through the lines above: what opened further up isn't seen.
class EditorSyntax {
 public:
  // A line is coloured so far; what stands behind has the default colour.
  static constexpr int64_t MostCharacters = CSyntax::ColouredCharacters;
  // How far above the view it looks, whichever is less.
  static constexpr int64_t MostLinesBack = 1000, MostBytesBack = int64_t{2} << 20;

  // Chooses the definitions for a file of that name, read anew from the disk. Tells about a file of
  // definitions that can't be read.
  void load(const Westring& path, const Document& document);
  // The same with definitions that were read elsewhere.
  void use(std::shared_ptr<const SyntaxDefinitions> definitions) {
    syntax_.use(std::move(definitions));
  }
  void off() { syntax_.off(); }
  bool active() const { return syntax_.active(); }

  // Finds what is open at the start of `top` by the lines above.
  void rescan(const Document& document, int64_t top);
  // What was the top line isn't any more: the one below it is.
  void advance(const Document& document, int64_t formerTop);
  // Back to the start of the top line; each line from there on is passed or coloured, in order.
  void restart();
  void pass(const Document& document, int64_t line);
  // `out` becomes the cells of the line's first MostCharacters characters: of all of them, or the
  // first `cells` and perhaps a few more.
  void colour(const Document& document, int64_t line, CellString& out, int64_t cells);

  // Cells without colours of a text whose first character stands at column `textColumn`, from
  // `column` on, which is that one or inside that character.
  static CellString plain(std::wstring_view text, int64_t textColumn, int64_t column);

 private:
  CSyntax syntax_;
  CContextStack top_;  // what is open at the start of the top line
};
