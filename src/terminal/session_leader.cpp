#include "terminal/session_leader.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <initializer_list>

namespace {

constexpr int NotStarted = 127;
constexpr int BySignal = 128;
constexpr int FirstOther = 3;  // behind the standard streams
constexpr rlim_t MostDescriptors = 65536;

void put(const char* text) {
  size_t length = strlen(text);
  while (length > 0) {
    const ssize_t written = write(STDERR_FILENO, text, length);
    if (written <= 0) return;
    text += written;
    length -= static_cast<size_t>(written);
  }
}

void closeOthers() {
  if (close_range(FirstOther, ~0U, 0) == 0) return;
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlim_t end = limit.rlim_cur < MostDescriptors ? limit.rlim_cur : MostDescriptors;
  for (int fd = FirstOther; fd < static_cast<int>(end); ++fd) close(fd);
}

bool takeTerminal(int slave) {
  if (setsid() < 0 || ioctl(slave, TIOCSCTTY, 0) != 0) return false;
  for (int stream = 0; stream < FirstOther; ++stream) {
    if (dup2(slave, stream) < 0) return false;
  }
  closeOthers();
  return true;
}

// The leader outlives what is meant for the command: keys that interrupt or stop, and a change of
// the foreground group from outside it. It doesn't outlive the terminal: when td is gone, its end
// hangs up the command.
void ignoreTerminalSignals() {
  for (int signal : {SIGINT, SIGQUIT, SIGTSTP, SIGTTIN, SIGTTOU, SIGPIPE}) {
    std::signal(signal, SIG_IGN);
  }
}

void giveTerminalTo(pid_t group) {
  static_cast<void>(tcsetpgrp(STDIN_FILENO, group));
}

[[noreturn]] void becomeProgram(const ProgramStart& start) {
  setpgid(0, 0);
  giveTerminalTo(getpid());
  resetSignals();
  if (start.program == nullptr) {
    put("SHELL is not set\n");
    _exit(NotStarted);
  }
  execve(start.program, start.arguments, start.environment);
  const char* reason = strerrordesc_np(errno);
  put(start.program);
  put(": ");
  put(reason != nullptr ? reason : "unknown error");
  put("\n");
  _exit(NotStarted);
}

// Until it has ended; its status as an exit code.
int attend(pid_t child) {
  for (;;) {
    int status = 0;
    if (waitpid(child, &status, WUNTRACED) < 0) {
      if (errno == EINTR) continue;
      return NotStarted;
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return BySignal + WTERMSIG(status);
    giveTerminalTo(child);
    kill(-child, SIGCONT);
  }
}

}  // namespace

void resetSignals() {
  struct sigaction byDefault {};
  byDefault.sa_handler = SIG_DFL;
  sigemptyset(&byDefault.sa_mask);
  for (int signal = 1; signal < NSIG; ++signal) sigaction(signal, &byDefault, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

void leadSession(int slave, const ProgramStart& start) {
  if (!takeTerminal(slave)) _exit(NotStarted);
  resetSignals();
  ignoreTerminalSignals();
  const pid_t child = _Fork();
  if (child == 0) becomeProgram(start);
  if (child < 0) {
    put("cannot start a process\n");
    _exit(NotStarted);
  }
  const int status = attend(child);
  giveTerminalTo(getpgrp());
  _exit(status);
}
