#include "editor/window/editor_syntax.h"

#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"

void EditorSyntax::rescan(const Document&, int64_t) {}

void EditorSyntax::advance(const Document&, int64_t) {}

void EditorSyntax::restart() {}

void EditorSyntax::pass(const Document&, int64_t) {}

void EditorSyntax::colour(const Document& document, int64_t line, CellString& out) {
  out = plain(document.slice(line, 0, MostCharacters), 0, 0);
}

CellString EditorSyntax::plain(std::wstring_view text, int64_t textColumn, int64_t column) {
  const unsigned char attr = colourOf(Colour::FileViewer);
  const int tab = GlobalOptions::TabWidth;
  CellString cells(attr);
  for (const wchar_t character : text) {
    const int64_t end = textColumn + (character == L'\t' ? tab - textColumn % tab : 1);
    const wchar_t shown = character == L'\t' ? L' ' : mapControl(displayCharacter(character));
    for (int64_t at = std::max(textColumn, column); at < end; ++at) cells.append(shown, attr);
    textColumn = end;
  }
  return cells;
}
