#pragma once

#include "foundation/string_collections.h"
#include "language/macro_expansion.h"

// Replaces the macros of a command and runs it for the panel of `side`, once, or once for each
// tagged file when the command asks for that; `echo` is shown with the first run only. `file` is
// what the command is for; "" stands for the entry under the cursor, and then the temporary files
// of the command before are removed first. A command that comes out empty isn't run. 0, or negative
// when it was cancelled or couldn't be run. Application thread.
int processCommand(const Westring& text, int side, const Westring& echo,
                   MacroMode mode = MacroMode::Command, const Westring& file = Westring());

// A series of commands, each as processCommand runs one, with nothing above their output. The first
// negative result ends it. Where it changes the directory, the panel goes there when all others
// have run. Application thread.
int processSeries(const FnStringStore& commands, int side);
