#pragma once

#include <cstdint>
#include <optional>

// Where to go in a file. Nothing when the dialog was left by Esc or by the end of the program.
// Application thread.
namespace TDEditor {

// " Goto Line ", with the range below the field: 1 to `lineCount`, and asks again outside of it.
// `line` is what the field starts with. Lines count from 1.
std::optional<int64_t> askLine(int64_t line, int64_t lineCount);
// The same without a range, for a file whose lines nobody has counted; at least 1.
std::optional<int64_t> askLine();

// " Goto Offset ", hexadecimal. What can't be held is the largest number.
std::optional<int64_t> askOffset();
// The number that such a text begins with.
int64_t parseOffset(const wchar_t* text);

}  // namespace TDEditor
