#include "commander/option_toggles.h"

#include "commander/screen_size.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"

namespace {

void flip(bool& option) {
  option = !option;
}

void redrawPanels() {
  for (Panel& panel : panelPair().side) drawPanel(panel);
}

void reReadPanels() {
  for (Panel& panel : panelPair().side) {
    if (!panel.showing) {
      panel.needsRead = true;
      continue;
    }
    enterPath(panel, L"", KeepTags::Yes);
    drawPanel(panel);
  }
  setWorkingDirectory(panelPair().active());
}

}  // namespace

void toggleHidden() {
  flip(GlobalOptions::Hidden);
  reReadPanels();
}

void togglePathPrompt() {
  flip(GlobalOptions::PathPrompt);
}

void toggleFullScreen() {
  flip(GlobalOptions::FullScreen);
  reopenPanels();
}

void toggleClock() {
  flip(GlobalOptions::Clock);
  redrawPanels();  // the titles make room, or take it back
  GlobalOptions::Clock ? drawClock() : removeClock();
}

void toggleTagDirectories() {
  flip(GlobalOptions::TagDirs);
}

void toggleThousandSeparator() {
  flip(GlobalOptions::ThousandSep);
  redrawPanels();
}

void toggleRetainCount() {
  flip(GlobalOptions::RetainCount);
  reReadPanels();
}
