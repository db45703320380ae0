#include <cstdint>
#include <cstdlib>
#include <string>

#include "foundation/utf8.h"
#include "syntax/definitions_reader.h"
#include "syntax/syntax.h"

namespace {

constexpr wchar_t Separator =
    L'\f';  // between the definitions and the text; neither has one inside

// Each character of a line gives at least one cell, and colouring leaves the state that skipping
// does.
void check(CSyntax& coloured, CSyntax& skipped, std::wstring_view line) {
  CellString cells;
  coloured.colour(line, cells);
  if (static_cast<size_t>(cells.length()) < line.size()) abort();
  skipped.skip(line);
  if (!(coloured.state() == skipped.state())) abort();
  if (coloured.state().depth() > CContextStack::Deepest) abort();
}

}  // namespace

// Any definitions on any lines.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const size_t end = std::min(bytes.find(static_cast<char>(Separator)), size);
  CSyntax coloured;
  coloured.use(readSyntax(std::string_view(bytes).substr(0, end), L"name.c", 7));
  CSyntax skipped = coloured;
  const std::wstring text = decodeFileName(bytes.substr(std::min(end + 1, size)).c_str()).data();
  for (size_t at = 0; at < text.size();) {
    const size_t lineEnd = std::min(text.find(L'\n', at), text.size());
    check(coloured, skipped, std::wstring_view(text).substr(at, lineEnd - at));
    at = lineEnd + 1;
  }
  return 0;
}
