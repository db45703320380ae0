#pragma once

#include "foundation/system.h"
#include "foundation/westring.h"

// An open menu file and where it lies.
struct MenuFile {
  Descriptor file;  // not valid: there is none
  Westring path;
};

// Whether nobody but this user and root can write a menu, or the directory it lies in. A group of
// the user's own number is the user alone.
bool isTrustedMenu(const struct stat& info, uid_t user, gid_t group);
// The menu `name` of a directory, or of the nearest above it that has one. What somebody else could
// have put there or could change is passed over: its commands would run as the user.
MenuFile findLocalMenu(const Westring& directory, const Westring& name);
// The user's own.
MenuFile openMainMenu();
