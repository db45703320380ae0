#pragma once

#include "panels/model/panel.h"

// The whole path of a name in a panel. A name that is a whole path already stays.
Westring entryPath(const Panel& panel, const wchar_t* name);

// An ordinary directory that is on the screen and could be read.
bool isReadableDirectory(const Panel& panel);
// The directory a panel stands for as a destination: its own, or the one its tree's cursor is on;
// "" when it can't be one.
Westring destinationDirectory(const Panel& panel);
// The directory of the panel; in a tree the one of the current line.
Westring currentDirectoryOf(const Panel& panel);
// The panel opposite; for a panel that is none of the two, the inactive one.
Panel& panelOpposite(const Panel& panel);
