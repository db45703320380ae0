#pragma once

#include "language/macro_expansion.h"

// The macros of a command that works for the panel of `side`. False when it must not run.
bool expandPanelCommand(const Westring& command, int side, Westring& expanded);
