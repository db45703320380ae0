#include "panel_fill.h"

#include <clocale>
#include <cwchar>

#include "console/console.h"
#include "foundation/locale_settings.h"
#include "options/options.h"
#include "panels/model/entry_order.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/panel_window.h"

void fillPanel(Panel& panel, int count) {
  panel.path = L"/measured";
  panel.lastPath = panel.path;
  panel.entries.clear();
  for (int i = 0; i < count; ++i) {
    wchar_t name[32];
    swprintf(name, 32, L"file-%010d.text", i);
    EntryPtr item(newEntry(name));
    item->sortGroup = SortGroup::File;
    item->size = static_cast<uint64_t>(i) * 4321;
    item->date = 0x5a21;
    item->time = 0x6123;
    item->mode = 0100644;
    panel.entries.add(std::move(item));
  }
  sortEntries(panel);
  panel.needsRead = false;
  panel.top = panel.cursor = 0;
}

bool openPanels(int argc, char** argv, int count) {
  setlocale(LC_ALL, "");
  if (!initToolkit(&argc, &argv)) return false;
  readLocaleSettings(0);
  static CConsole screen;
  fetchScreenSize();
  for (int side = 0; side < 2; ++side) {
    Panel& panel = panelPair().side[side];
    updatePageSize(panel);
    fillPanel(panel, count);
    openPanelWindow(side);
  }
  markActivePanel();
  drawCursor(0, CursorBar::On);
  console->completePainting();
  return true;
}
