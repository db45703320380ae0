#include "ui/help_window.h"

Connection<HelpWindow>& helpWindow() {
  static Connection<HelpWindow> connection;
  return connection;
}

HelpOfCommand::HelpOfCommand(HelpTopic topic) : before_(helpWindow()->ofCommand_) {
  helpWindow()->ofCommand_ = topic;
}

HelpOfCommand::~HelpOfCommand() {
  helpWindow()->ofCommand_ = before_;
}
