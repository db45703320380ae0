#pragma once

#include "commander/main_loop.h"

enum class Separate { No, Yes };  // Yes: run beside the program, with the Background prefix

// The Enter command: runs the line, or opens the entry under the cursor when the line is empty.
void executeLine(MainLoop& loop, Separate separate);

// Hands a command to the shell in the panel's directory. False when that can't be entered: it is
// told, nothing runs, and a panel whose directory is gone goes to the nearest above it.
bool runInPanel(const Westring& command, const Westring& file, int side);

// The built-in cd of a command that matches "cd[\. ]*".
bool isChangeDirectory(const Westring& command);
void runChangeDirectory(Panel& panel, const Westring& command);
