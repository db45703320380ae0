#pragma once

#include <string>

#include "fileops/operation.h"

// Boxes that ask nothing.

// Once at the end of a command: which files changed while they were copied, if any.
void tellChanged(RunningOperation& operation);
// A file in the making that couldn't be removed again; `path` is where it lies.
void tellLeftover(RunningOperation& operation, const std::string& path);
