#pragma once

#include "foundation/westring.h"

// 0x10 and 0x11: what the screen shows as right and left pointing triangles.
inline constexpr wchar_t CutMark = 0x10;
inline constexpr wchar_t CutMarkLeft = 0x11;

// A text longer than `width` cut at its end, with CutMark in the last cell.
Westring cutText(const Westring& text, int width);

// A path longer than `width` cut in the middle: the text through the first slash behind the root,
// "...", and as many last characters as fit; or cut at the end with CutMark when no slash serves.
Westring shortenPath(const Westring& path, int width);

// Digits grouped by the locale's separator, in units of 1024 (K, M, G, T) once they pass `width`
// cells.
Westring formatSize(unsigned long long value, int width);
// Plain digits while below 10 to the power of `width`, then K, M, G, T.
Westring formatPlainSize(unsigned long long value, int width);
Westring groupDigits(unsigned long long value);  // no limit of width
