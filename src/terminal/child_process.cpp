#include "terminal/child_process.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/directory_names.h"
#include "terminal/session_leader.h"

namespace {

constexpr int BySignal = 128;

// No handler of this process may run in the child before it has reset them.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

// An array of C strings, ended by null, as execve takes it.
class Strings {
 public:
  explicit Strings(std::vector<std::string> texts) : texts_(std::move(texts)) {
    for (std::string& text : texts_) pointers_.push_back(text.data());
    pointers_.push_back(nullptr);
  }
  Strings(const Strings&) = delete;
  Strings& operator=(const Strings&) = delete;
  char* const* data() const { return pointers_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;
};

int openProcess(pid_t process) {
  return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

struct ProcessState {
  char state = 0;
  pid_t parent = 0;
  pid_t group = 0;
};

ProcessState stateOf(pid_t process) {
  char path[32], text[512];
  snprintf(path, sizeof path, "/proc/%d/stat", process);
  const Descriptor file(System::open(path, O_RDONLY | O_CLOEXEC));
  const ssize_t length = file.valid() ? System::read(file.get(), text, sizeof text - 1) : 0;
  text[length > 0 ? length : 0] = 0;
  // The name stands in parentheses and may hold any character.
  const char* behindName = strrchr(text, ')');
  ProcessState result;
  if (behindName != nullptr) {
    sscanf(behindName, ") %c %d %d", &result.state, &result.parent, &result.group);
  }
  return result;
}

// What the kernel shows of the processes; each is asked for its session.
std::vector<pid_t> membersOf(pid_t session) {
  std::vector<pid_t> members;
  OpenDirectory processes;
  DirectoryNames names;
  if (processes.open(AT_FDCWD, "/proc", FollowLinks::Yes) != 0) return members;
  names.read(processes.fd());
  for (size_t i = 0; i < names.count(); ++i) {
    const pid_t process = static_cast<pid_t>(strtol(names.name(i), nullptr, 10));
    if (process > 0 && getsid(process) == session) members.push_back(process);
  }
  return members;
}

}  // namespace

ChildProcess::~ChildProcess() {
  if (reaped_) return;
  kill();
  while (waitpid(leader_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

int ChildProcess::start(const ShellCommand& command, int slave) {
  const Strings arguments({command.shell, "-c", command.text});
  const Strings environment(command.environment);
  const ProgramStart start{command.shell.empty() ? nullptr : command.shell.c_str(),
                           arguments.data(), environment.data()};
  {
    const SignalsBlocked blocked;
    leader_ = fork();
    if (leader_ == 0) leadSession(slave, start);
  }
  if (leader_ < 0) return errno;
  reaped_ = false;
  end_ = Descriptor(openProcess(leader_));
  return 0;
}

bool ChildProcess::reap() {
  if (reaped_) return true;
  int status = 0;
  const pid_t ended = waitpid(leader_, &status, WNOHANG);
  if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
  reaped_ = true;
  end_.reset();
  if (ended > 0) status_ = WIFSIGNALED(status) ? BySignal + WTERMSIG(status) : WEXITSTATUS(status);
  return true;
}

// All but the leader. It isn't reaped yet, so its number, which is the session's, is nobody else's.
void ChildProcess::signalSession(int signal) const {
  if (reaped_) return;
  for (const pid_t member : membersOf(leader_)) {
    if (member != leader_) ::kill(member, signal);
  }
}

bool ChildProcess::sleeps() const {
  if (reaped_) return false;
  const std::vector<pid_t> members = membersOf(leader_);
  return std::none_of(members.begin(), members.end(), [](pid_t member) {
    const char state = stateOf(member).state;
    return state == 'R' || state == 'D';
  });
}

void ChildProcess::continueStopped() {
  if (reaped_) return;
  std::vector<ProcessState> states;
  pid_t group = 0;
  for (const pid_t member : membersOf(leader_)) {
    states.push_back(stateOf(member));
    if (states.back().parent == leader_) group = member;
  }
  const bool stopped = std::any_of(states.begin(), states.end(), [group](const ProcessState& one) {
    return one.group == group && one.state == 'T';
  });
  if (group > 0 && stopped) ::kill(-group, SIGCONT);
}

// The leader waits for the end of the command, also of one that takes its time.
void ChildProcess::askToEnd(int signal) {
  signalSession(signal);
  signalSession(SIGCONT);  // or a stopped one would never see it
}

void ChildProcess::kill() {
  signalSession(SIGKILL);
  if (!reaped_) ::kill(leader_, SIGKILL);
}
