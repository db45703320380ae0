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

  // What a window without a topic of its own shows: that of the command which has opened it.
  void showForCommand() { show(ofCommand_); }

 private:
  friend class HelpOfCommand;
  HelpTopic ofCommand_ = HelpTopic::None;
};

Connection<HelpWindow>& helpWindow();

// The topic of a command for as long as it runs.
class HelpOfCommand {
 public:
  explicit HelpOfCommand(HelpTopic topic);
  ~HelpOfCommand();
  HelpOfCommand(const HelpOfCommand&) = delete;
  HelpOfCommand& operator=(const HelpOfCommand&) = delete;

 private:
  HelpTopic before_;
};
