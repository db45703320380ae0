#pragma once

#include "foundation/westring.h"

namespace TDEditor {

// " Code Page Translation ": asks for the list of code pages to step through, numbers with commas.
// False on Esc and at the end of the program, with the list as it was. Application thread.
bool askCodePageList(Estring& list);

}  // namespace TDEditor
