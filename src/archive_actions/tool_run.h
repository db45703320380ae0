#pragma once

#include <cstdint>
#include <functional>

#include "foundation/westring.h"
#include "panels/model/panel.h"

enum class [[nodiscard]] ToolEnd{
    Ran,         // to its own end, with the code
    Broken,      // the user made an end of it
    NotStarted,  // the code is the errno
};

// Runs a command in the working directory with the screen for its output, and the keyboard: the
// panels come back with the next round of the main loop. `code`: what the shell gave. Application
// thread.
ToolEnd runToolShown(const Westring& command, Panel& panel, int& code);

// What a box tells of a command that takes its time.
struct ToolBox {
  const wchar_t* heading;  // "Extracting"
  Westring name;
  std::function<int64_t()> bytesSoFar;  // asked now and then; may be empty
};

// The same behind the panels. Esc and Break end it: SIGINT, and after 2 seconds SIGKILL, for all
// that it started. The box opens after a second. A command that wrote something and then waits has
// asked: its terminal is shown, with what it has written so far, and it gets the keyboard.
ToolEnd runToolHidden(const Westring& command, const ToolBox& box, int& code);
