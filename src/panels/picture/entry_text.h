#pragma once

#include "foundation/entry.h"
#include "foundation/westring.h"

// The texts of one entry's columns. Pure.

// `name` cut to `width` with a mark in its last cell, or before the extension when that stays
// visible.
Westring cutName(const Westring& name, int width);
Westring sizeText(const entry& item, int width);  // right-aligned to `width`
Westring dateText(uint16_t date);                 // by the locale's order and separator
Westring timeText(uint16_t time);                 // 12 or 24 hours by TimeMode, 6 cells
