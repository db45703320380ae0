#pragma once

#include "foundation/connection.h"
#include "foundation/westring.h"

// The windows of the histories, as dialogs below them call them. Application thread.
class HistoryWindows {
 public:
  virtual ~HistoryWindows() = default;
  // Lets the user choose from the directory history: a path, or "".
  virtual Westring chooseDirectory() { return Westring(); }
};

Connection<HistoryWindows>& historyWindows();
