#pragma once

#include "panels/model/panel.h"

// Asks for a place and makes symbolic links there to what is tagged or to the entry under the
// cursor; nothing is ever replaced. Reads both panels again. Application thread.
void linkCommand(Panel& panel);
