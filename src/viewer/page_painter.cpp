#include "viewer/page_painter.h"

#include <algorithm>

#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "viewer/hex_row.h"

namespace {

constexpr wchar_t GoesOn = 187;  // the line does, beyond the last column
constexpr int Foreground = 0x0F, Background = 0xF0;

unsigned char goesOnColour() {
  return static_cast<unsigned char>((colourOf(Colour::FileViewer) & Background) |
                                    (colourOf(Colour::Tagged) & Foreground));
}

// In a text two control characters are blanks.
wchar_t shownInText(wchar_t character) {
  constexpr wchar_t Bell = 7, Back = 8;
  return character == Bell || character == Back ? L' ' : character;
}

CellString cellsOf(std::wstring_view text) {
  const unsigned char attr = colourOf(Colour::FileViewer);
  CellString cells = CellString::withRoom(static_cast<int>(text.size()), attr);
  for (const wchar_t character : text) cells.append(mapControl(displayCharacter(character)), attr);
  return cells;
}

CellString textCells(std::wstring text) {
  std::ranges::transform(text, text.begin(), shownInText);
  return cellsOf(text);
}

}  // namespace

std::vector<CellString> PagePainter::rows(const Hit& hit) {
  std::vector<CellString> result;
  for (const ViewRow& row : page_.layout()) {
    CellString cells = page_.hex() ? hexRow(row.line.start) : textRow(row);
    cells = padded(cells, page_.columns());
    if (hit.exists() && page_.hex()) markInHex(cells, row.line.start, hit);
    if (hit.exists() && !page_.hex()) markInText(cells, row, hit);
    result.push_back(std::move(cells));
  }
  const CellString blank = padded(cellsOf({}), page_.columns());
  result.resize(static_cast<size_t>(page_.rows()), blank);
  return result;
}

CellString PagePainter::textRow(const ViewRow& row) {
  if (row.line.error) return errorRow(row.line.error);
  const int columns = page_.columns();
  const int64_t first = page_.wraps() ? row.cell : page_.leftColumn();
  const std::wstring text = cells_.text(row.line, first, columns + (page_.wraps() ? 0 : 1));
  CellString cells = left(textCells(text), columns);
  colours_.paint(row.line, first, cells);
  if (static_cast<int>(text.size()) > columns) cells[columns - 1] = Cell{GoesOn, goesOnColour()};
  return cells;
}

CellString PagePainter::hexRow(int64_t position) {
  int error = 0;
  const std::string bytes = file_.bytesAt(position, HexRow::RowBytes, error);
  if (error) return errorRow(error);
  return cellsOf(HexRow::text(position, bytes, file_.encoding().page));
}

CellString PagePainter::errorRow(int error) const {
  return CellString(errorText(error).data(), colourOf(Colour::Errors));
}

void PagePainter::mark(CellString& cells, int64_t from, int64_t to) const {
  const int64_t end = std::min<int64_t>(to, cells.length());
  for (int64_t x = std::max<int64_t>(from, 0); x < end; ++x) {
    cells[static_cast<int>(x)].attr = colourOf(Colour::Highlight);
  }
}

void PagePainter::markInText(CellString& cells, const ViewRow& row, const Hit& hit) {
  if (hit.to <= row.line.start || hit.from >= row.line.next) return;
  const int64_t first = page_.wraps() ? row.cell : page_.leftColumn();
  const int64_t from = cells_.cellOf(row.line, std::max(hit.from, row.line.start));
  const int64_t to = cells_.cellOf(row.line, hit.to);
  mark(cells, from - first, std::max(to, from + 1) - first);
}

void PagePainter::markInHex(CellString& cells, int64_t position, const Hit& hit) const {
  const int64_t from = std::max(hit.from, position);
  const int64_t to = std::min(hit.to, position + HexRow::RowBytes);
  const int64_t first = HexRow::textColumn(position) - position;
  if (from < to) mark(cells, from + first, to + first);
}
