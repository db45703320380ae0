#pragma once

#include "panels/model/panel.h"

// Asks for a date, gives it to what is tagged or to the entry under the cursor, and reads both
// panels again. Application thread.
void dateCommand(Panel& panel);
