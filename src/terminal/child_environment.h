#pragma once

#include <string>
#include <vector>

#include "foundation/westring.h"
#include "terminal/child_process.h"

// What a command finds in its environment, as "NAME=value": the session environment with its
// parents, for our terminal and for `directory` (what is shown for the working directory; left out
// when it isn't that directory).
std::vector<std::string> childEnvironment(const Westring& directory);
// The value of a name in such a list, or "".
std::string valueIn(const std::vector<std::string>& environment, const std::string& name);
// A command for the shell that this environment names.
ShellCommand shellCommandOf(const Westring& text, const Westring& directory);
