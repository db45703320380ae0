#pragma once

#include "filecommands/history_windows.h"

// The window of the directories that panels have left. The chosen one, or "" when the window was
// left or there are none. Application thread.
Westring directoryHistoryWindow();

// The windows, as dialogs of lower layers call them.
class HistoryWindowsOfTools : public HistoryWindows {
 public:
  Westring chooseDirectory() override { return directoryHistoryWindow(); }
};
