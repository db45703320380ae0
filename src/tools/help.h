#pragma once

#include "ui/help_window.h"

// Reads the help file into memory: the one that goes with the configuration's name, else td.tdh.
// What can't be read leaves the help without topics. Once, when the configuration is known.
void loadHelp();

// Shows the topics of the file that was loaded; "Help not loaded" without one.
class HelpOfFile : public HelpWindow {
  void show(HelpTopic topic) override;
};
