#pragma once

#include <cstddef>
#include <string_view>

#include "editor/text/text_encoding.h"

// Where a line ends: at most one CR, one LF and one NUL, in any order. In bytes.
struct LineEnd {
  size_t at = 0;      // of its first byte; the size of the text when there is none
  size_t length = 0;  // of all of it
};

// The first line end at or behind `from`, which is the start of a unit, as the start of `bytes` is.
LineEnd findLineEnd(std::string_view bytes, size_t from, TextFormat format);

// What a line end says about the style of its file: Unknown without an LF. In any format.
LineEndStyle styleOf(std::string_view lineEnd);

// The bytes of a new line end.
std::string lineEndBytes(LineEndStyle style, TextFormat format);
