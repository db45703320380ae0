#pragma once

#include "foundation/westring.h"

// Asks unless the question is turned off; true when the user leaves.
bool confirmExit();
// Saves, closes archives, windows and temporary directories, and leaves the command row clear.
void leavePanels();
// The small script that changes to `directory`: its first character, ":", and a cd to the rest,
// which is only ever a name to the shell that runs the script.
// Failure is silent.
void writeExitScript(const Westring& script, const Westring& directory);
