#pragma once

#include "panels/model/panel.h"

// Enter on a file of a panel: the command that it is associated with, itself when it can be run, or
// its inside when it is an archive; nothing when it is none of these. Application thread.
void openFile(Panel& panel, const entry& file);

// Whether Enter runs it: it has an execute bit and, on a file system that gives one to every file,
// also the form of a program.
bool isRunnable(const Panel& panel, const entry& file);
