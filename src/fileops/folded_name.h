#pragma once

#include <string>

#include "foundation/westring.h"

// Some file systems have their names folded to lower case when files are copied from them. This
// system tells no names of file systems, so the setting finds none here.

// True when `fileSystem` is one of the names of `filter`, a comma list.
bool isInCaseFilter(const Westring& fileSystem, const Westring& filter);
// A file name, as bytes, in lower case.
std::string foldedName(const char* name);
// True when `name` in the open directory is a directory itself, and no link to one.
bool isDirectoryMember(int directory, const char* name);
