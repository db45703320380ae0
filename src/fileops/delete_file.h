#pragma once

#include "fileops/operation.h"
#include "foundation/place.h"

class DescriptionFile;

enum class DeleteMode {
  One,        // shows the window and removes it afterwards
  OneOfMany,  // shows the window and keeps it for the next file
  Quiet,      // no new window; uses one that is already open
  Forced      // as Quiet, but asks and tells nothing, and touches no standing answer
};

// Removes one name that is no directory; a link itself, never what it leads to. Its line leaves
// `descriptions` (null: nobody keeps any). Every failure is told here: Done, LeftInPlace, Failed or
// Cancelled.
Outcome deleteFile(RunningOperation& operation, const Place& file, DeleteMode mode,
                   DescriptionFile* descriptions);
// The same with the descriptions of its directory.
Outcome deleteFile(RunningOperation& operation, const Westring& path, DeleteMode mode);

// What follows when removing was refused with EACCES.
enum class ReadOnlyAnswer { ShowError, GoOn, AskAgain, Leave, Cancel };
// The standing answer, or the question whether a read-only file goes all the same.
ReadOnlyAnswer askReadOnlyFile(RunningOperation& operation, const Place& file);
// The same for a directory: "None" is no answer here, it asks again.
ReadOnlyAnswer askReadOnlyDirectory(RunningOperation& operation, const Place& directory);
