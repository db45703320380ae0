#pragma once

#include "panels/model/panel.h"

// Runs a command in the panel's directory with the whole screen for its output: the panels step
// aside until the next round of the main loop, which reads them anew. `echo` stands above the
// output as if it had been typed there; "" when there is nothing to show. Flags are those of
// runCommand. 0, or negative when it didn't run or the user made an end of it; `status` as
// runCommand gives it. Application thread.
int runInShell(const Westring& command, Panel& panel, const Westring& echo, unsigned flags,
               int* status = nullptr);

// The whole screen for the output of a command, as long as this lives: the panels have stepped
// aside and the rows of prompt and key bar are empty, but for `echo`. What was printed last stays
// above these rows. The panels are not brought back. Application thread.
class OutputScreen {
 public:
  explicit OutputScreen(const Westring& echo);
  ~OutputScreen();
  OutputScreen(const OutputScreen&) = delete;
  OutputScreen& operator=(const OutputScreen&) = delete;
};

// Makes the directory that the panel shows the working directory. False when that can't be: it is
// told, and a panel whose directory is gone goes to the nearest above it.
bool enterPanelDirectory(Panel& panel);
