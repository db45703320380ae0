#include "editor/window/editor_syntax.h"

#include <algorithm>
#include <climits>

#include "foundation/path_info.h"
#include "options/options.h"
#include "ui/alert.h"

namespace {

std::wstring colouredPart(const Document& document, int64_t line) {
  return document.slice(line, 0, EditorSyntax::MostCharacters);
}

// The first of the lines that are looked through.
int64_t firstLineBack(const Document& document, int64_t top) {
  const int64_t least = std::max<int64_t>(top - EditorSyntax::MostLinesBack, 0);
  int64_t bytes = 0;
  int64_t line = top;
  while (line > least) {
    bytes += document.lineBytes(line - 1) + 1;
    if (bytes > EditorSyntax::MostBytesBack) break;
    --line;
  }
  return line;
}

}  // namespace

void EditorSyntax::load(const Westring& path, const Document& document) {
  const SyntaxLoad loaded = syntax_.load(path, colouredPart(document, 0));
  if (loaded.status == 0) return;
  alert(errorText(loaded.status), loaded.file, AlertButtons::Ok, AlertColour::Error);
}

void EditorSyntax::rescan(const Document& document, int64_t top) {
  syntax_.reset();
  if (active()) {
    for (int64_t line = firstLineBack(document, top); line < top; ++line) pass(document, line);
  }
  top_ = syntax_.state();
}

void EditorSyntax::advance(const Document& document, int64_t formerTop) {
  restart();
  pass(document, formerTop);
  top_ = syntax_.state();
}

void EditorSyntax::restart() {
  syntax_.setState(top_);
}

void EditorSyntax::pass(const Document& document, int64_t line) {
  if (active()) syntax_.skip(colouredPart(document, line));
}

void EditorSyntax::colour(const Document& document, int64_t line, CellString& out, int64_t cells) {
  cells = std::min<int64_t>(cells, INT_MAX);
  // Without colours nothing behind the cells matters.
  const int64_t characters = active() ? MostCharacters : std::min(cells, MostCharacters);
  syntax_.colour(document.slice(line, 0, characters), out, static_cast<int>(cells));
}

CellString EditorSyntax::plain(std::wstring_view text, int64_t textColumn, int64_t column) {
  // Tabs count from the start of the cells, which therefore begins at a tab stop.
  const int64_t start = textColumn - textColumn % GlobalOptions::TabWidth;
  std::wstring fromTabStop(static_cast<size_t>(textColumn - start), L' ');
  fromTabStop += text;
  CellString cells;
  CSyntax().colour(fromTabStop, cells);
  return mid(cells, static_cast<int>(column - start), -1);
}
