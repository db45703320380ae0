#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "language/environment.h"
#include "support/temp_dir.h"

// A shell that runs nothing: it writes down what it is given. It is the session's SHELL for as long
// as this lives.
class LoggedShell {
 public:
  LoggedShell() {
    dir_.write("shell", "#!/bin/sh\nprintf '%s\\n' \"$2\" >> '" + dir_.path("log") + "'\n");
    dir_.chmod("shell", 0755);
    sessionEnvironment().set("SHELL", dir_.path("shell").c_str());
  }
  ~LoggedShell() { sessionEnvironment().set("SHELL", nullptr); }
  LoggedShell(const LoggedShell&) = delete;
  LoggedShell& operator=(const LoggedShell&) = delete;

  // Whether a command has come since. The only look while one may be running.
  bool hasRun() const { return dir_.exists("log") && !dir_.read("log").empty(); }
  // The commands since the last time, in their order.
  std::vector<std::string> take() {
    std::vector<std::string> commands;
    if (!dir_.exists("log")) return commands;
    std::istringstream log(dir_.read("log"));
    unlink(dir_.path("log").c_str());
    for (std::string line; std::getline(log, line);) commands.push_back(line);
    return commands;
  }

 private:
  TempDir dir_;
};
