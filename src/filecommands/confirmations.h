#pragma once

#include "fileops/operation.h"
#include "foundation/westring.h"
#include "options/options.h"

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

// The confirmations before a deletion. Each is true for Enter on OK; Esc, Cancel and F10 are no.

// Whether "No Undelete" is offered, and what it was set to last. The choice has no effect.
enum class UndeleteBox { Hidden, Shown };
UndeleteBox undeleteBoxFor(const Westring& panelPath);
bool& noUndelete();

bool askDelete(const Westring& name, UndeleteBox box);
bool askDeleteTagged(int count, UndeleteBox box);
bool askDeleteTaggedAgain(int count, const Westring& directory);

// Whether a directory that isn't empty may go with everything in it: a box with buttons, or, unless
// that confirmation is turned off, a field in which the word YES has to be typed. Application
// thread.
TreeAnswer askTreeQuestion(const Westring& path);
