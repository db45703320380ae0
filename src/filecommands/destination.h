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
// are, everything else by the rules for typed text; variables are only replaced when the path as
// written doesn't exist. 0 or errno.
int resolveDestination(const Westring& text, const DestinationContext& context,
                       Destination& result);
