#pragma once

#include "foundation/system.h"
#include "foundation/westring.h"

// An open menu file and where it lies.
struct MenuFile {
  Descriptor file;  // not valid: there is none
  Westring path;
};

// The menu `name` of a directory, or of the nearest above it that has one. What somebody else could
// have put there or could change is passed over: its commands would run as the user.
MenuFile findLocalMenu(const Westring& directory, const Westring& name);
// The user's own.
MenuFile openMainMenu();
