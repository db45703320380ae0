#pragma once

#include "editor/text/created_file.h"
#include "editor/text/text_saver.h"
#include "editor/window/journal_keeper.h"
#include "foundation/westring.h"

// What an edit knows of its file besides the text, which has the encoding. Loading fills it, Save
// As and the encoding commands change it once they have succeeded.
struct EditedFile {
  Westring name;            // as given, and as the status line shows it
  bool hasMark = false;     // a byte order mark stands at the start
  bool isNew = false;       // created by this edit
  bool isReadOnly = false;  // could only be opened for reading
  TextSaver saver;          // the file on the disk
  JournalKeeper journal;    // what has changed since it was read or saved
  CreatedFile created;      // the empty file that this edit has made, as long as nobody used it
};
