#pragma once

#include "commander/main_loop.h"

// Runs the command of a key code, or puts its character on the line.
void dispatchKey(MainLoop& loop, Key::Code key);
