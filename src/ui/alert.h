#pragma once

#include "foundation/answer.h"
#include "foundation/westring.h"

// The message box: `text` wrapped at spaces into at most 10 lines, `caption` (a path, or empty)
// shortened below it, one row of buttons. Returns an Answer. Enter is the first button, Esc always
// Answer::Cancel, the end of the program Answer::ProgramEnds. Application thread.
int alert(const Westring& text, const Westring& caption, AlertButtons buttons = AlertButtons::Ok,
          AlertColour colour = AlertColour::Message);
// The same with text in UTF-8.
int alert(const char* text, const Westring& caption, AlertButtons buttons = AlertButtons::Ok,
          AlertColour colour = AlertColour::Message);
