#pragma once

#include "panels/model/panel.h"

// Asks for a path, starting with the entry under the cursor, deletes what stands there, and reads
// both panels again. Application thread.
void deleteByNameCommand(Panel& panel);
