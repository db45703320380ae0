#pragma once

#include "foundation/westring.h"

// A control's text from bytes in the console's code page; empty for null.
Westring dialogLabel(const char* bytes);
// Size of the text cursor in a focused control, percent of the cell.
inline constexpr int DialogCursorSize = 15;
