#pragma once

#include "fileops/operation.h"
#include "foundation/place.h"

// What trying to remove a directory came to.
struct Removal {
  Outcome outcome = Outcome::LeftInPlace;
  bool full = false;  // nothing was told: it stays because something is in it
};

enum class LookInside {
  No,
  Yes  // a full directory is full, also where the system has another reason to refuse it; one where
       // something is mounted is busy, full or not
};

// Removes one directory by place, if it is empty. Every other failure is told here: Done,
// LeftInPlace, Failed or Cancelled.
Removal tryRemovingDirectory(RunningOperation& operation, const Place& directory,
                             LookInside lookInside);

// The same, and one that isn't empty is left without a word.
Outcome removeEmptyDirectory(RunningOperation& operation, const Place& directory);
