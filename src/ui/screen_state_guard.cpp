#include "ui/screen_state_guard.h"

#include "console/console.h"
#include "foundation/utf8.h"
#include "options/options.h"

ScreenStateGuard::ScreenStateGuard() : clock_(GlobalOptions::Clock), title_(console->title()) {
  GlobalOptions::Clock = false;
}

ScreenStateGuard::~ScreenStateGuard() {
  GlobalOptions::Clock = clock_;
  if (console && console->title() != title_) console->setTitle(fromUtf8(title_.c_str()));
}
