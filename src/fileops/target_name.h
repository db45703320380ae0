#pragma once

#include "foundation/westring.h"

// The whole target path of an entry: the destination itself, the entry's name below it, or the name
// that the mask in the destination's last component makes of it. `source` is a path or a name,
// `destination` an absolute path that may end in a slash.
Westring targetName(const Westring& source, const Westring& destination);

// True when the last component is a mask. One that spells the entry's own name is none, nor is an
// existing directory that is written with a slash.
bool isNameMask(const Westring& destination, const Westring& source);
