#pragma once

#include "panels/model/panel.h"

// The built-in vcd: runs the helper program that chooses a directory, with `argument`, and leads
// the panel to what it wrote. Where the program isn't, or has chosen nothing, the panel stays. The
// result is that of runInShell.
int changeVisually(const Westring& argument, Panel& panel, const Westring& echo, unsigned flags);

// The directory in a record of two lines: a drive letter, and a cd with the path between double
// quotes. "" when it is none.
Westring directoryOfRecord(const Westring& drive, const Westring& command);
