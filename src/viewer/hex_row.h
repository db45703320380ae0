#pragma once

#include <string>
#include <string_view>

// A row of the viewer in hex mode, for up to RowBytes bytes from `offset` on: the offset, the bytes
// as numbers, the bytes as characters of the code page `page`.
namespace HexRow {

inline constexpr int RowBytes = 16;

// Where the characters stand: 64, or further right where the offset is longer.
int textColumn(int64_t offset);
// One character a cell. What isn't there because the file has ended is blank.
std::wstring text(int64_t offset, std::string_view bytes, int page);

}  // namespace HexRow
