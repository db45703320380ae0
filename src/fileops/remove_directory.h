#pragma once

#include "fileops/operation.h"
#include "foundation/place.h"

// Removes a directory. One that isn't empty is asked about, and goes with everything in it that
// fits the pattern; a link is never taken for a directory. Keeps its line in the description file
// of its parent in step. Done, LeftInPlace, Failed or Cancelled; told here.
Outcome removeDirectory(RunningOperation& operation, const Westring& path,
                        const wchar_t* pattern = L"*");

enum class WhenFull { Leave, Ask };

// The step for one directory by place. `Leave` lets one that isn't empty stay without a word.
Outcome removeEmptyDirectory(RunningOperation& operation, const Place& directory, WhenFull whenFull,
                             const wchar_t* pattern = L"*");

// The question and, after a yes, the deletion of the tree.
Outcome deleteTreeAfterQuestion(RunningOperation& operation, const Place& directory,
                                const wchar_t* pattern);
