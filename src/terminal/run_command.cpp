#include "terminal/run_command.h"

#include <cerrno>
#include <csignal>

#include "console/console.h"
#include "console/input.h"
#include "foundation/break_state.h"
#include "terminal/attached_screen.h"
#include "terminal/child_environment.h"
#include "terminal/session_pump.h"

namespace {

// What a command prints that nobody is to see. It has no keyboard, so Esc and Break end it.
class NoScreen : public SessionScreen {
 public:
  void write(std::string_view) override {}
  void showHeldBack() override {}
  GridSize size() const override { return console->getSize(); }
  bool endAsked() override { return escapePressed() || breakRequested(); }

 private:
  BreakScope breakScope_;
};

// The close button was meant for the program as well.
void passCloseOn() {
  TEvent event;
  event.key = Key::F10;
  console->events().put(event);
}

}  // namespace

int runCommand(const Westring& text, const Westring& directory, unsigned flags, int* status) {
  const CursorPos cursor = console->getCursorPos();
  if ((flags & RunFlag::Hidden) == 0) console->setCursorPos(0, cursor.y);
  PseudoTerminal terminal;
  if (const int error = terminal.open(console->getSize()); error != 0) return -error;
  ChildProcess child;
  const ShellCommand command = shellCommandOf(text, directory);
  if (const int error = child.start(command, terminal.slave()); error != 0) return -error;
  ChildInput input(terminal.master());
  SessionEnd end = SessionEnd::Own;
  if ((flags & RunFlag::Hidden) != 0) {
    NoScreen screen;
    end = pumpSession(child, terminal, input, screen);
  } else {
    AttachedScreen screen(input, (flags & RunFlag::Interrupt) != 0 ? SIGINT : SIGHUP);
    end = pumpSession(child, terminal, input, screen);
  }
  if (status != nullptr) *status = child.status();
  if (input.closeAsked()) passCloseOn();
  return end == SessionEnd::Own ? 0 : -EINTR;
}
