#pragma once

#include "panels/model/panel.h"

// Asks for permissions, owner and group, gives them to what is tagged or to the entry under the
// cursor, and reads both panels again. Application thread.
void attributeCommand(Panel& panel);
