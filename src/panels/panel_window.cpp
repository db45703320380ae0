#include "panels/panel_window.h"

#include "options/colours.h"
#include "panels/directory_reader.h"
#include "panels/panel_draw.h"

bool isDrawable(const Panel& panel) {
  return console && panel.window && !panel.window->hidden();
}

void openPanelWindow(int side) {
  constexpr int rowsBelowList = 3;  // separator, status line, bottom border
  PanelPair& pair = panelPair();
  Panel& panel = pair.side[side];
  panel.showing = true;
  const int attr = colourOf(Colour::Panel);
  const int width = pair.panelWidth();
  {
    // Not held over the read: that may show a message.
    BatchScope batch;
    panel.window.reset();
    panel.window = std::make_unique<Win>(side * width, 0, (side + 1) * width - 1,
                                         pair.panelRows + rowsBelowList, attr, attr, Shadow::None);
    updatePageSize(panel);
    drawTitle(panel, side == pair.activeSide);
  }
  if (panel.needsRead) readDirectory(panel);
  drawPanel(panel);
}

void closePanelWindow(int side) {
  Panel& panel = panelPair().side[side];
  panel.showing = false;
  panel.window.reset();
}

namespace {

void show(int side) {
  Panel& panel = panelPair().side[side];
  if (!panel.showing) {
    panel.window.reset();
    return;
  }
  if (!panel.window) return openPanelWindow(side);
  panel.window->hide(false);
  if (panel.needsRead && panel.isFiles()) readDirectory(panel);
  if (panel.needsDraw) drawPanel(panel);
}

}  // namespace

void panelsVisible(bool visible) {
  if (visible) {
    for (int side = 0; side < 2; ++side) show(side);
    return;
  }
  for (int side = 1; side >= 0; --side) {
    if (panelPair().side[side].window) panelPair().side[side].window->hide(true);
  }
}
