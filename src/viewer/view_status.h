#pragma once

#include "foundation/westring.h"

// The viewer's first row: the name shortened into its place, what the text is encoded in, and how
// far the end of what shows lies into the file ("percent", 7 cells). `width` is at least 40.
Westring viewStatus(const Westring& name, const Westring& format, const Westring& percent,
                    int width);
