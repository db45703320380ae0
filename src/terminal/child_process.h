#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "foundation/system.h"

// A command for a shell. The environment is a list of "NAME=value".
struct ShellCommand {
  std::string shell;  // its path; "" when none is set
  std::string text;
  std::vector<std::string> environment;
};

// A command that runs on a pseudo-terminal, behind its session's leader. Application thread.
class ChildProcess {
 public:
  ChildProcess() = default;
  // One that still runs is killed.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // In the present working directory, with the slave as its terminal and nothing else open. 0 or
  // errno. That the shell can't be started is no error here: the child says so and gives 127.
  int start(const ShellCommand& command, int slave);

  // Readable once the child has ended; -1 where the system has no such descriptors, then `reap` is
  // called from time to time.
  int endDescriptor() const { return end_.get(); }
  // Takes the status of a child that has ended; true then and from then on. Doesn't wait.
  bool reap();
  // The exit code, or 128 + the signal that ended it; after reap.
  int status() const { return status_; }

  // Whether the command and all that it started sleep: for input, or for something else that isn't
  // the processor or the disk.
  bool sleeps() const;

  // Continues what the stop key has stopped of the command's own process group. The leader does
  // that when the whole group stops; a shell that waits for a new process to take off sees its stop
  // no more than the leader does.
  void continueStopped();
  void askToEnd(int signal);  // to every process of the session, also a stopped one
  void kill();                // and this none of them survives

 private:
  void signalSession(int signal) const;

  pid_t leader_ = -1;
  Descriptor end_;
  bool reaped_ = true;
  int status_ = 0;
};
