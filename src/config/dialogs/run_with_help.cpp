#include "config/dialogs/run_with_help.h"

Key::Code runWithHelp(Dialog& dialog, HelpTopic topic) {
  for (;;) {
    const Key::Code key = dialog.run();
    if (key != Key::F1) return key;
    helpWindow()->show(topic);
  }
}
