#include "panels/picture/panel_window.h"

#include "options/colours.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"

void openPanelWindow(int side) {
  constexpr int rowsBelowList = 3;  // separator, status line, bottom border
  PanelPair& pair = panelPair();
  Panel& panel = pair.side[side];
  panel.showing = true;
  const int attr = colourOf(Colour::Panel);
  const int width = pair.panelWidth();
  BatchScope batch;
  panel.window.reset();
  panel.window = std::make_unique<Win>(side * width, 0, (side + 1) * width - 1,
                                       pair.panelRows + rowsBelowList, attr, attr, Shadow::None);
  updatePageSize(panel);
  if (panel.needsRead && panel.isFiles()) {
    drawTitle(panel);
  } else {
    drawPanel(panel);
  }
}

void closePanelWindow(int side) {
  Panel& panel = panelPair().side[side];
  panel.showing = false;
  panel.window.reset();
}
