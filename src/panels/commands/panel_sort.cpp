#include "panels/commands/panel_sort.h"

#include "options/options.h"
#include "panels/model/entry_order.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"

void setSort(Panel& panel, int code) {
  const entry* current = panel.currentEntry();
  const Westring name = current ? current->name() : L"";
  panel.sort = code;
  PanelPair& pair = panelPair();
  if (pair.holds(panel)) {
    (pair.sideOf(panel) == 0 ? GlobalOptions::LeftSort : GlobalOptions::RightSort) = code;
  }
  if (panel.isTreeStyle()) return;
  if (isUnsorted(code)) {
    readDirectory(panel);
  } else {
    sortEntries(panel);
    if (!name.empty()) selectName(panel, name.data());
  }
  drawPanel(panel);
}
