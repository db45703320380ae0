#pragma once

#include "panels/model/panel.h"

// Asks how an object on the desktop should be made of each file. This system has no such objects:
// what was tagged loses its tag, and that is all. Application thread.
void objectCommand(Panel& panel);
