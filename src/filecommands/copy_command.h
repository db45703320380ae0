#pragma once

#include "panels/model/panel.h"

namespace CopyFlag {
inline constexpr int Move = 1;
inline constexpr int BareName = 2;  // the destination starts with the bare name
}  // namespace CopyFlag

// Copies or moves what is tagged, or the entry under the cursor, and reads both panels again.
// `explicitDestination` null asks for one. The panel may be a temporary one of a search.
// Application thread.
void copyCommand(Panel& source, int flags, const Westring* explicitDestination = nullptr);
