#pragma once

#include "fileops/operation.h"

// Removes a directory. One that isn't empty is asked about, and goes with everything in it that
// fits the pattern; a link is never taken for a directory. Keeps its line in the description file
// of its parent in step. Done, LeftInPlace, Failed or Cancelled; told here.
Outcome removeDirectory(RunningOperation& operation, const Westring& path,
                        const wchar_t* pattern = L"*");
