#include "panels/commands/panel_switch.h"

#include <utility>

#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/panel_window.h"
#include "panels/reader/directory_reader.h"

namespace {

void switchOff(int side) {
  closePanelWindow(side);
}

void switchOn(int side) {
  Panel& panel = panelPair().side[side];
  panel.keptOff = false;
  openPanel(side);
}

void readPostponed(Panel& panel) {
  if (panel.needsRead && panel.isFiles()) readDirectory(panel);
}

void show(int side) {
  Panel& panel = panelPair().side[side];
  if (!panel.showing) {
    panel.window.reset();
    return;
  }
  if (!panel.window) return openPanel(side);
  panel.window->unhide();
  readPostponed(panel);
  if (panel.needsDraw) drawPanel(panel);
}

// A panel that went off hands the cursor to the other one.
void activateShowing() {
  PanelPair& pair = panelPair();
  if (!pair.active().showing && pair.inactive().showing) setActiveSide(1 - pair.activeSide);
  markActivePanel();
}

void bringBack(PanelPair& pair) {
  Panel& left = pair.side[0];
  Panel& right = pair.side[1];
  if (left.keptOff && right.keptOff) left.keptOff = right.keptOff = false;
  left.showing = !left.keptOff;
  right.showing = !right.keptOff;
}

}  // namespace

void openPanel(int side) {
  openPanelWindow(side);
  Panel& panel = panelPair().side[side];
  readPostponed(panel);
  if (panel.needsDraw) drawPanel(panel);
}

void panelsVisible(Visible visible) {
  if (visible == Visible::Yes) {
    for (int side = 0; side < 2; ++side) show(side);
    return;
  }
  for (int side = 1; side >= 0; --side) {
    if (panelPair().side[side].window) panelPair().side[side].window->hide();
  }
}

void swapPanels() {
  PanelPair& pair = panelPair();
  // Windows close in the reverse order of their opening; what shows is part of the contents.
  pair.side[1].window.reset();
  pair.side[0].window.reset();
  std::swap(static_cast<PanelContents&>(pair.side[0]), static_cast<PanelContents&>(pair.side[1]));
  GlobalOptions::LeftSort = pair.side[0].sort;
  GlobalOptions::RightSort = pair.side[1].sort;
  setActiveSide(1 - pair.activeSide);
  for (int side = 0; side < 2; ++side) {
    if (pair.side[side].showing) openPanel(side);
  }
  markActivePanel();
}

void panelsOnOff() {
  PanelPair& pair = panelPair();
  if (!pair.side[0].showing && !pair.side[1].showing) return bringBack(pair);
  for (int side = 1; side >= 0; --side) {
    Panel& panel = pair.side[side];
    panel.keptOff = !panel.showing;
    if (panel.showing) switchOff(side);
  }
}

void toggleOnePanel(int side) {
  Panel& panel = panelPair().side[side];
  if (panel.showing) {
    switchOff(side);
    panel.keptOff = true;
  } else {
    switchOn(side);
  }
  activateShowing();
}

void toggleInfo(int side) {
  Panel& panel = panelPair().side[side];
  if (!panel.showing) {
    panel.type = PanelType::Info;
    panel.infoWasOff = true;
    switchOn(side);
  } else if (panel.isFiles()) {
    panel.type = PanelType::Info;
    panel.infoWasOff = false;
    drawPanel(panel);
  } else {
    panel.type = PanelType::Files;
    if (std::exchange(panel.infoWasOff, false)) {
      switchOff(side);
      panel.keptOff = true;
    } else {
      if (panel.needsRead) readDirectory(panel);
      drawPanel(panel);
    }
  }
  activateShowing();
}

void setStyle(int side, PanelStyle style) {
  PanelPair& pair = panelPair();
  Panel& panel = pair.side[side];
  if (panel.style == style && panel.isFiles()) return;
  const bool wasTree = panel.isTreeStyle();
  panel.style = style;
  panel.type = PanelType::Files;
  updatePageSize(panel);
  normalisePosition(panel);
  const bool wasOff = !panel.showing;
  panel.showing = true;
  panel.keptOff = false;
  if (wasTree || panel.isTreeStyle() || panel.needsRead) readDirectory(panel);
  if (panel.isTreeStyle()) {
    directoryTree()->select(panel, pair.other(panel).path);
  }
  if (wasOff) {
    openPanel(side);
  } else {
    drawPanel(panel);
  }
  markActivePanel();
}
