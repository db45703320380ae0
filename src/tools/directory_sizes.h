#pragma once

#include "panels/model/panel.h"

// Counts the bytes below the tagged directories, or below the one under the cursor, and shows them
// as their sizes. Nothing in a panel that lists no directory, and on "..".
void countDirectorySizes(Panel& panel);
