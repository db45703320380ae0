#pragma once

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>

// The system's user without any rights; permission checks mean nothing to root.
inline constexpr unsigned OrdinaryUser = 65534;
inline constexpr int ChildFailed = 255;

// The whole process goes on as an ordinary user, whoever ran it. It may still be traced: a
// sanitizer looks for leaks from outside.
inline bool becomeUser() {
  return geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(OrdinaryUser) == 0 &&
                            setuid(OrdinaryUser) == 0 && prctl(PR_SET_DUMPABLE, 1) == 0);
}

// What root made becomes the ordinary user's own.
inline bool giveToUser(const std::string& path) {
  return geteuid() != 0 || chown(path.c_str(), OrdinaryUser, OrdinaryUser) == 0;
}

// As long as it lives, all threads of this process have the rights of the ordinary user, whoever
// ran it.
class EffectiveUser {
 public:
  EffectiveUser() : wasRoot_(geteuid() == 0) {
    if (wasRoot_ && (setegid(OrdinaryUser) != 0 || seteuid(OrdinaryUser) != 0)) abort();
  }
  ~EffectiveUser() {
    if (wasRoot_ && (seteuid(0) != 0 || setegid(0) != 0)) abort();
  }
  EffectiveUser(const EffectiveUser&) = delete;
  EffectiveUser& operator=(const EffectiveUser&) = delete;

 private:
  bool wasRoot_;
};

// Runs `check` in a child process; a function without a result gives 1 when an expectation in it
// failed (its text shows as usual) and 0 otherwise. The exit status, or 128 + the signal that ended
// it.
template <class Check>
int runInChild(Check check) {
  fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) return ChildFailed;
  if (child == 0) {
    int status = ChildFailed;
    if constexpr (std::is_void_v<decltype(check())>) {
      check();
      status = testing::Test::HasFailure() ? 1 : 0;
    } else {
      status = check();
    }
    fflush(nullptr);
    _exit(status);
  }
  int result = 0;
  if (waitpid(child, &result, 0) != child) return ChildFailed;
  return WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
}

// The same as an ordinary user, whoever runs the tests.
template <class Check>
int runAsUser(Check check) {
  return runInChild([&check] {
    if (!becomeUser()) return ChildFailed;
    if constexpr (std::is_void_v<decltype(check())>) {
      check();
      return testing::Test::HasFailure() ? 1 : 0;
    } else {
      return static_cast<int>(check());
    }
  });
}
