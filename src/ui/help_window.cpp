#include "ui/help_window.h"

Connection<HelpWindow>& helpWindow() {
  static Connection<HelpWindow> connection;
  return connection;
}
