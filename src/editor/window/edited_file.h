#pragma once

#include "foundation/westring.h"

// What an edit knows of its file besides the text, which has the encoding. Loading fills it, Save
// As and the encoding commands change it once they have succeeded.
struct EditedFile {
  Westring name;            // as given, and as the status line shows it
  bool hasMark = false;     // a byte order mark stands at the start
  bool isNew = false;       // created by this edit
  bool isReadOnly = false;  // could only be opened for reading
};
