#pragma once

#include "archive/archive_chain.h"
#include "panels/model/panel.h"

// Whether a panel has reached the place that it was to go to; if not, whether the user knows why.
struct Arrival {
  bool reached = false;
  Refusal refusal = Refusal::Unexplained;  // of an archive on the way

  explicit operator bool() const { return reached; }
  bool isUnexplained() const { return !reached && refusal == Refusal::Unexplained; }
};

enum class KeepTags { No, Yes };
inline constexpr int KeepPosition = -1;

// Makes the directory that a typed or stored path means (typed_path.h) the panel's; opens and
// closes archives on the way. One that can't be reached leaves the panel alone. Reads nothing.
Arrival changeDirectory(Panel& panel, const Westring& path);
// The same for a path made by the program of real names: not canonicalised.
Arrival changeDirectoryExact(Panel& panel, const Westring& path);
// The directory of an absolute path, or the nearest above it that there is. Reads nothing.
void changeToNearest(Panel& panel, const Westring& path);

// Opens a file of the panel as an archive; enterPath with the same name then shows its root.
Arrival attachArchive(Panel& panel, const wchar_t* name);

// Moves up one level, reads, and restores the position.
void moveUpOneLevel(Panel& panel);

// Enters a directory of the panel by its entry name: ".." goes up, "" reads in place. Feeds the
// directory history, clears the quick search, sets the working directory.
void enterPath(Panel& panel, const wchar_t* name, KeepTags keepTags = KeepTags::No,
               int top = KeepPosition, int cursor = 0);

// Reads in place a path that changeDirectory or the caller has set, from the top.
void enterNewPath(Panel& panel);
// A complete move to a typed or stored place: changeDirectory, position and stack reset, read.
// A place that can't be reached leaves the panel alone.
Arrival goToPath(Panel& panel, const Westring& path);

// 0 or errno; then the working directory is still that of before, where no command must run.
[[nodiscard]] int setWorkingDirectory(const Panel& panel);
