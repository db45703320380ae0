#pragma once

#include "foundation/westring.h"

// The confirmations before a deletion. Each is true for Enter on OK; Esc, Cancel and F10 are no.

// Whether "No Undelete" is offered, and what it was set to last. The choice has no effect.
enum class UndeleteBox { Hidden, Shown };
UndeleteBox undeleteBoxFor(const Westring& panelPath);
bool& noUndelete();

bool askDelete(const Westring& name, UndeleteBox box);
bool askDeleteTagged(int count, UndeleteBox box);
bool askDeleteTaggedAgain(int count, const Westring& directory);
