#pragma once

#include "commander/main_loop.h"

// The keys of the command line: true when the key was one of them.
bool takeLineKey(MainLoop& loop, int key);
