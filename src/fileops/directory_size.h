#pragma once

#include <cstdint>
#include <optional>

#include "fileops/operation.h"
#include "foundation/place.h"

// The bytes of all plain files in a directory and below it, links not followed. Nothing when the
// user pressed Esc. What can't be read counts as empty.
std::optional<int64_t> directorySize(RunningOperation& operation, const Place& directory);
