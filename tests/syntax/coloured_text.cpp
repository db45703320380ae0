#include "syntax/coloured_text.h"

#include "foundation/utf8.h"
#include "syntax/definitions_reader.h"

CSyntax engineWith(const std::string& rules, const std::string& classes) {
  const std::string content = "[Colour Classes]\n" + classes + "\n[any:*]\n" + rules;
  CSyntax engine;
  engine.use(readSyntax(content, L"name", PlainText));
  return engine;
}

std::ostream& operator<<(std::ostream& out, const ColouredLine& line) {
  return out << "\n  " << line.shown << "\n  " << line.colours << "\n";
}

ColouredLine colourLine(CSyntax& engine, std::wstring_view line) {
  constexpr int Foreground = 0x0F;
  constexpr char Digits[] = "0123456789ABCDEF";
  CellString cells;
  engine.colour(line, cells);
  ColouredLine result;
  for (int i = 0; i < cells.length(); ++i) {
    const wchar_t text[] = {cells[i].ch, 0};
    result.shown += toDisplayUtf8(text).data();
    result.colours += cells[i].attr == PlainText ? '.' : Digits[cells[i].attr & Foreground];
  }
  return result;
}

std::string coloursOf(CSyntax& engine, std::wstring_view line) {
  return colourLine(engine, line).colours;
}
