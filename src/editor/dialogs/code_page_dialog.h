#pragma once

#include <optional>

#include "foundation/westring.h"

namespace TDEditor {

// " Code Page Translation ": asks for the list of code pages to step through, numbers with commas.
// False on Esc and at the end of the program, with the list as it was. Application thread.
bool askCodePageList(Estring& list);

// The next code page of the option's list; a number that is no code page is told about, and is the
// default one. Application thread.
int stepCodePage();
// Asks for the list and begins it anew: its first page, or nothing when the dialog was left.
std::optional<int> askCodePage();

}  // namespace TDEditor
