#include "tools/directory_history_window.h"

#include "console/key_codes.h"
#include "console/text_state.h"
#include "history/history_store.h"
#include "tools/history_dialog.h"

namespace {
constexpr char Title[] = " Directory History ";
constexpr int LeastWidth = 21;
}  // namespace

Westring directoryHistoryWindow() {
  if (directoryHistory().count() == 0) return Westring();
  const TextStateGuard guard;  // a dialog below may be running
  HistoryDialog window(Title, directoryHistory(), LeastWidth);
  return window.run() == Key::Enter ? *directoryHistory().peek(window.selected()) : Westring();
}
