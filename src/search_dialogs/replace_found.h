#pragma once

#include "search/find_run.h"

// Asks for a text that takes the place of the one that was searched, and puts it into all found
// files. Application thread.
void replaceInFound(const FindSettings& searched);
