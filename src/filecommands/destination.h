#pragma once

#include "foundation/westring.h"

// What a typed destination is read against.
struct DestinationContext {
  Westring base;       // the directory that relative text starts at
  Westring other;      // the other panel's directory; "" when there is none
  Westring proposed;   // what the field started with
  Westring entryName;  // the name under the cursor
};

struct Destination {
  Westring path;             // absolute, without a slash at its end
  bool asDirectory = false;  // the text ended in a slash or was ".."
};

// Reads the text of the destination field. Real names that the program put there are taken as they
// are, and so is what exists as it is written, or whose directory does; everything else by the
// rules for typed text, and variables are replaced at the last. 0 or errno.
int resolveDestination(const Westring& text, const DestinationContext& context,
                       Destination& result);
