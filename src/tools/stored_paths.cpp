#include "tools/stored_paths.h"

#include <algorithm>

#include "console/key_codes.h"
#include "filecommands/entry_path.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_pair.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {

using GlobalOptions::directoryShortcuts;
using GlobalOptions::ShortcutCount;

constexpr int Centred = -1, InTheMiddle = -2;
constexpr int WindowRows = 12;
constexpr int FrameCells = 2;
constexpr int LeastPath = 16, AroundPath = 6;  // "0 - " and the frame
constexpr int WidestWindow = 78;
constexpr wchar_t EmptySlot[] = L"Empty";

int windowWidth() {
  int longest = LeastPath;
  for (const Westring& path : directoryShortcuts) longest = std::max(longest, path.length());
  return std::min(longest + AroundPath, WidestWindow);
}

void fillRows(FnStringStore& rows, int pathWidth) {
  for (int slot = 0; slot < ShortcutCount; ++slot) {
    const Westring& path = directoryShortcuts[slot];
    Estring number;
    number.format("%d - ", slot);
    const Westring shown = path.empty() ? Westring(EmptySlot) : shortenPath(path, pathWidth);
    rows.add(new Westring(Westring(number) + shown));
  }
}

// Shows the slots once; the key that ended the window.
Key::Code chooseSlot(int& selected) {
  const int width = windowWidth();
  FnStringStore rows;
  fillRows(rows, width - AroundPath);
  Dialog dialog(Centred, InTheMiddle, width, WindowRows, colourOf(Colour::Messages));
  dialog.addList(0, 0, Group::New, width - FrameCells, ShortcutCount, &rows, &selected, Key::Enter);
  dialog.putFrameTitle(" Stored Paths ");
  for (int slot = 0; slot < ShortcutCount; ++slot)
    dialog.addExitKey(static_cast<wchar_t>(L'0' + slot));
  dialog.addExitKey(Key::Insert);
  dialog.addExitKey(Key::Delete);
  return dialog.run();
}

}  // namespace

Panel& panelThatGoes(Panel& panel) {
  return panel.isTree() ? panelPair().other(panel) : panel;
}

bool storedPaths(Panel& panel) {
  int selected = 0;
  for (;;) {
    const Key::Code key = chooseSlot(selected);
    const int digit = key.value() - '0';
    const bool isDigit = digit >= 0 && digit < ShortcutCount;
    if (isDigit) selected = digit;
    Westring& path = directoryShortcuts[selected];
    if (key == Key::Insert) {
      path = currentDirectoryOf(panel);
    } else if (key == Key::Delete) {
      path = L"";
    } else if (!isDigit && key != Key::Enter) {
      return false;
    } else if (!path.empty()) {
      const Arrival arrival = goToPath(panelThatGoes(panel), path);
      if (arrival.isUnexplained()) {
        alert("Invalid directory", path, AlertButtons::Ok, AlertColour::Error);
      }
      return arrival.reached;
    }
  }
}
