#pragma once

#include "panels/model/panel.h"

// Deletes what is tagged, or the entry under the cursor, and reads both panels again. Application
// thread.
void deleteCommand(Panel& panel);
