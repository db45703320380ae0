#pragma once

#include "foundation/westring.h"

// Where the editor keeps texts that are not saved yet: a directory for nobody but the user, among
// the user's files.
Westring editDirectory();  // with a slash at its end; "" when nothing tells where it could lie
int makeEditDirectory();   // unless it is there; 0 or errno
