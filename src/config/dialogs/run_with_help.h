#pragma once

#include "ui/dialog.h"
#include "ui/help_window.h"

// Runs a dialog with a button of the code F1, which shows the topic and ends nothing.
Key::Code runWithHelp(Dialog& dialog, HelpTopic topic);
