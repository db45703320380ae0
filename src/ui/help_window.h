#pragma once

#include "foundation/connection.h"

// The topics of the help file by number.
enum class HelpTopic : int {
  None = -1,
  Index = 0,
  Panels = 1,
  Viewer = 2,
  Editor = 3,
  Configuration = 4,
  CommandHistory = 5,
  Confirmations = 6,
  FileFind = 7,
  DirectoryCompare = 9,
  UserMenuFile = 10,
  ConfigurationFile = 11,
  PanelMenu = 100,
  FilesMenu = 101,
  CommandsMenu = 102,
  OptionsMenu = 103,
};

// What F1 shows, wherever it is pressed. Application thread.
class HelpWindow {
 public:
  virtual ~HelpWindow() = default;
  // Over whatever stands on the screen, which stands there again afterwards.
  virtual void show(HelpTopic) {}
};

Connection<HelpWindow>& helpWindow();
