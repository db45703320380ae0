#pragma once

#include "foundation/westring.h"

// Where the editor keeps texts that are not saved yet: a directory for nobody but the user, among
// the user's files.
Westring editDirectory();  // with a slash at its end; "" when nothing tells where it could lie
int makeEditDirectory();   // unless it is there; 0 or errno

// What the user has been told of that directory in this run. Application thread.
class EditDirectoryFaults {
 public:
  // Whether an error of a file there is for the user to know. Not without a home, which is as it
  // must be; of a directory that can't be one only once, or it would be told in each edit.
  bool isToBeTold(int error);

 private:
  Westring told_;  // the directory
};

EditDirectoryFaults& editDirectoryFaults();
