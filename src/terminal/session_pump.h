#pragma once

#include <csignal>
#include <string_view>

#include "terminal/child_input.h"
#include "terminal/child_process.h"
#include "terminal/pseudo_terminal.h"

// Where the output of a command goes. Application thread.
class SessionScreen {
 public:
  virtual ~SessionScreen() = default;
  virtual void write(std::string_view bytes) = 0;
  // Nothing came for a while: what waits for the rest of a character shows as it is.
  virtual void showHeldBack() = 0;
  virtual GridSize size() const = 0;
  // Looks whether the user wants to get away from a command that has no keyboard. Asked in every
  // round, several times a second.
  virtual bool endAsked() { return false; }
  virtual int endSignal() const { return SIGHUP; }  // that the session gets then
};

// Carries output to the screen and waiting keys to the command until it has ended, and reaps it.
// Then what stands in the terminal at that moment is shown; what was left in the background may
// write on and isn't waited for. When the end is asked for, by the input, the screen, or since the
// program itself has to end, the command's session gets the signal for that, and is killed 2
// seconds later. Application thread.
enum class [[nodiscard]] SessionEnd{Own, HungUp};
SessionEnd pumpSession(ChildProcess& child, PseudoTerminal& terminal, ChildInput& input,
                       SessionScreen& screen);
