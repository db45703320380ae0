#pragma once

#include "panels/model/panel_pair.h"

// Runs a command whose macros are replaced, for the panel of `side`: changing the directory (cd,
// vcd) and setting a variable (set NAME=VALUE) are done here, everything else goes to runInShell
// with `echo` and the flags of runCommand. 0, or negative after a failure, which has been told, and
// when the user made an end of it: the rest of a series doesn't run. Application thread.
int runBuiltinOrShell(const Westring& command, int side, const Westring& echo, unsigned flags = 0);

// Whether a command is the built-in cd. "cd" alone belongs to the shell.
bool isChangeDirectory(const Westring& command);
// One behind which no other command stands, so that the shell isn't needed for it.
bool isChangeDirectoryAlone(const Westring& command);
// The directory of exactly the name that stands in a cd, before macros and variables are looked at.
// False when there is none; true, too, where the user has been told why it can't be shown.
bool changeDirectoryAsWritten(Panel& panel, const Westring& command);
