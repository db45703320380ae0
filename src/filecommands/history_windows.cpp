#include "filecommands/history_windows.h"

Connection<HistoryWindows>& historyWindows() {
  static Connection<HistoryWindows> windows;
  return windows;
}
