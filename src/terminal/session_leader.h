#pragma once

#include <csignal>

// A program to be started, all of it made before the fork. Borrowed memory.
struct ProgramStart {
  const char* program;  // its path; null when none is set
  char* const* arguments;
  char* const* environment;
};

// Signals that have the default action and aren't blocked, as a new program expects them. Safe
// between fork and exec.
void resetSignals();

// The life of the small process between td and a command: the leader of a session of its own, with
// `slave` as its terminal. It starts the program in a process group of its own that has the
// terminal, goes on with it when it was stopped, takes the terminal back when it has ended, and
// ends with its status, 128 + signal for a signal. Since the end of a session's leader hangs up
// whoever has the terminal then, what the program left in the background lives on. A program that
// can't be started says why on its terminal and gives 127. Runs in the child of a fork and calls
// only what is safe there.
[[noreturn]] void leadSession(int slave, const ProgramStart& start);
