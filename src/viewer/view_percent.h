#pragma once

#include <cstdint>

#include "foundation/westring.h"

// How far `bottom`, the end of what shows, lies into a file of `size` bytes: "%3d.%02d%%", exact
// for every size. 100.00 when the file has no bytes or its end shows.
enum class EndShows { No, Yes };
Westring viewPercent(int64_t bottom, int64_t size, EndShows end);
