#pragma once

#include "config/options.h"

// A confirmation as the user is shown it: a check box, checked while its bit is clear.
struct Confirmation {
  int bit;  // of ConfirmationOff
  const char* text;
};

inline constexpr Confirmation Confirmations[] = {
    {ConfirmationOff::Delete, "Delete File/Empty Directory"},
    {ConfirmationOff::DeleteTagged, "Delete Tagged Files"},
    {ConfirmationOff::DeleteTree, "Delete Non-empty Directory"},
    {ConfirmationOff::Quit, "Quit TD/X"},
    {ConfirmationOff::TypedYes, "\"YES\" prompt for Non-Empty Directory"},
};
