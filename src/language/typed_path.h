#pragma once

#include <vector>

#include "foundation/westring.h"

// What a path from outside a listing (an argument, a shortcut, a stored or a typed one) may mean,
// in the order of trust: as it is written, by the rules of typed text, and both once more with its
// variables replaced. Absolute paths without a slash at their end; relative text starts at `base`.
// The first that exists is meant. Empty when the text can't be a path at all.
std::vector<Westring> pathMeanings(const Westring& text, const Westring& base);

// The first of them alone, for what may be a file or still to be made: true, and the absolute path,
// when something of exactly that name is there, a dangling link as well.
bool existsAsWritten(const Westring& text, const Westring& base, Westring& path);
