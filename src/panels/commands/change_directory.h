#pragma once

#include "panels/model/panel.h"

enum class KeepTags { No, Yes };
inline constexpr int KeepPosition = -1;

// Makes the directory that a typed or stored path means (typed_path.h) the panel's; opens and
// closes archives on the way. False leaves the panel alone. Reads nothing.
bool changeDirectory(Panel& panel, const Westring& path);
// The same for a path made by the program of real names: not canonicalised.
bool changeDirectoryExact(Panel& panel, const Westring& path);
// The directory of an absolute path, or the nearest above it that there is. Reads nothing.
void changeToNearest(Panel& panel, const Westring& path);

// Opens a file of the panel as an archive; enterPath with the same name then shows its root. False
// when it is none.
bool attachArchive(Panel& panel, const wchar_t* name);

// Moves up one level, reads, and restores the position.
void moveUpOneLevel(Panel& panel);

// Enters a directory of the panel by its entry name: ".." goes up, "" reads in place. Feeds the
// directory history, clears the quick search, sets the working directory.
void enterPath(Panel& panel, const wchar_t* name, KeepTags keepTags = KeepTags::No,
               int top = KeepPosition, int cursor = 0);

// Reads in place a path that changeDirectory or the caller has set, from the top.
void enterNewPath(Panel& panel);
// A complete move to a typed or stored place: changeDirectory, position and stack reset, read.
// False leaves the panel alone.
bool goToPath(Panel& panel, const Westring& path);

// 0 or errno; then the working directory is still that of before, where no command must run.
[[nodiscard]] int setWorkingDirectory(const Panel& panel);
