#pragma once

#include "foundation/westring.h"

// Where the program's files lie. Set once at start-up, application thread.
enum class DataFile {
  Help = 0,
  Manual = 1,
  UserMenu = 2,
  Configuration = 3,
  History = 4,
  Log = 5,
  SyntaxDefinitions = 6
};
enum class DataPlace { PerUser = 0, Shared = 1 };

void setProgramPath(const Westring& absolutePath);
const Westring& programPath();
void setConfigurationFile(const Westring& absolutePath);  // "" for none

// The path of one of the program's files. `place` counts for the syntax definitions only. "" for a
// file of the user when nothing tells where the user's files could lie.
Westring dataFilePath(DataFile kind, DataPlace place = DataPlace::PerUser);

// The directory of the user's files, with a slash at its end; "" when nothing tells where it could
// lie.
Westring userDirectory();
// Makes the directory of the user's files, for nobody else, unless it is there. 0 or errno.
int makeUserDirectory();

// HOME, or the user data base's home directory, or "/" when neither tells.
Westring homeDirectory();
// The directory of our own in it, with a slash at its end; "" where no home is known.
Westring homeDataDirectory();
// TD_SHARE with a slash added, else "/usr/share/tandemdeck/".
Westring sharedDirectory();
