#pragma once

#include "foundation/westring.h"

// What was searched for last and how, shared by the editor and the viewer for the whole run.
// Application thread.
struct SearchValues {
  Westring text;
  Westring replacement;
  bool caseSensitive = false;
  bool reverse = false;
  bool wholeWord = false;
};

SearchValues& searchValues();
