#include "commander/option_dialogs.h"

#include "commander/screen_size.h"
#include "config/dialogs/colours_dialog.h"
#include "config/dialogs/configuration_dialog.h"
#include "foundation/locale_settings.h"
#include "options/options.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_title.h"
#include "panels/reader/directory_reader.h"

namespace {

// Takes the clock off the screen for a scope: it would be drawn over what stands there.
class ClockOff {
 public:
  ClockOff() {
    GlobalOptions::Clock = false;
    removeClock();
  }
  ~ClockOff() {
    GlobalOptions::Clock = shown_;
    drawClock();
  }
  ClockOff(const ClockOff&) = delete;
  ClockOff& operator=(const ClockOff&) = delete;

 private:
  const bool shown_ = GlobalOptions::Clock;
};

}  // namespace

void chooseConfiguration() {
  const ScreenOptions before;
  const ClockOff off;
  if (configurationDialog() == ConfigurationAnswer::PutBack) return;
  readLocaleSettings(GlobalOptions::CodePage);
  panelRefresh();
  followScreenOptions(before);
}

void chooseColours() {
  if (coloursDialog() == 0) reopenPanels();
}
