#pragma once

#include <string>

#include "fileops/operation.h"

// Boxes that ask nothing.

// Once at the end of a command: which files changed while they were copied, if any.
void tellChanged(RunningOperation& operation);
// A file in the making that couldn't be removed again; `path` is where it lies.
void tellLeftover(RunningOperation& operation, const std::string& path);
// The same for what the description files of the command left, once for each.
void tellDescriptionLeftovers(RunningOperation& operation);
// Flushes one description file, and tells what that left. 0 or errno.
int flushOrTell(RunningOperation& operation, DescriptionFile& descriptions);
// A file that made room for a directory, stands aside and couldn't go, or come back.
void tellStandsAside(RunningOperation& operation, const std::string& path);
