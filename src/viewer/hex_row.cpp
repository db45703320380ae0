#include "viewer/hex_row.h"

#include <algorithm>
#include <cstdio>

#include "editor/text/text_encoding.h"
#include "foundation/utf8.h"

namespace {

constexpr int TextColumn = 64;
constexpr int NumberCells = 3;
constexpr int GroupBytes = 4;
constexpr wchar_t GroupMark[] = L"\u2502 ";
constexpr int AllNumbers = HexRow::RowBytes * NumberCells + (HexRow::RowBytes / GroupBytes - 1) * 2;

// The offset and the blank behind it, which goes where the numbers would reach the characters.
std::string offsetText(int64_t offset) {
  char digits[24];
  const int length = snprintf(digits, sizeof digits, "%08llX", static_cast<long long>(offset));
  std::string result(digits, static_cast<size_t>(length));
  if (length + 1 + AllNumbers <= TextColumn) result += ' ';
  return result;
}

}  // namespace

int HexRow::textColumn(int64_t offset) {
  return std::max(TextColumn, static_cast<int>(offsetText(offset).size()) + AllNumbers);
}

std::wstring HexRow::text(int64_t offset, std::string_view bytes, int page) {
  const std::string head = offsetText(offset);
  std::wstring result(head.begin(), head.end());
  for (size_t i = 0; i < RowBytes; ++i) {
    char number[8] = "   ";
    if (i < bytes.size()) {
      snprintf(number, sizeof number, "%02X ", static_cast<unsigned char>(bytes[i]));
    }
    result.append(number, number + NumberCells);
    if (i % GroupBytes == GroupBytes - 1 && i + 1 < RowBytes) result += GroupMark;
  }
  result.resize(static_cast<size_t>(textColumn(offset)), L' ');
  for (const char byte : bytes.substr(0, RowBytes)) {
    std::wstring character;
    decodeText({&byte, 1}, {TextFormat::CodePage, page}, character);
    result += byte == 0 ? L'.' : displayCharacter(character[0]);
  }
  return result;
}
