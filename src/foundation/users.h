#pragma once

#include <cstdint>

#include "foundation/westring.h"

// The names and numbers of users and groups, by the data base of the system. Any thread.

int64_t groupId(const Westring& name);  // -1 when unknown
int64_t userId(const Westring& name);
Westring groupName(uint32_t id);  // decimal when unknown; remembered for the run
Westring userName(uint32_t id);
Westring homeOfUser();  // the home directory in the user data base; "" when it tells none
