#pragma once

#include "panels/model/panel.h"

// Asks for a case, gives it to the names of what is tagged or of the entry under the cursor, and
// reads both panels again. Application thread.
void caseCommand(Panel& panel);
