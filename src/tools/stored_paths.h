#pragma once

#include "panels/model/panel.h"

// The window of the ten stored directories: goes to one, stores the panel's directory, empties a
// slot. True when the directory of the panel has changed; beside a tree it is the other panel's.
// Application thread.
bool storedPaths(Panel& panel);

// The panel that goes where a stored path says: a tree stays.
Panel& panelThatGoes(Panel& panel);
