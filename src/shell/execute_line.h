#pragma once

#include "foundation/westring.h"

enum class Separate { No, Yes };  // Yes: run beside the program, with the Background prefix
enum class [[nodiscard]] LineOutcome{Taken, Kept};

// Runs what was typed on the line, for the active panel or, beside an INFO panel or a tree, the
// other one, and puts it into the history. Kept when its directory can't be entered: that is told,
// and the line is still wanted. Application thread.
LineOutcome executeLine(const Westring& line, Separate separate);
