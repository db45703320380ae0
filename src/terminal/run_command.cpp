#include "terminal/run_command.h"

#include <cerrno>
#include <memory>

#include "console/console.h"
#include "console/input.h"
#include "foundation/break_state.h"
#include "foundation/place.h"
#include "terminal/ansi_emulator.h"
#include "terminal/child_environment.h"
#include "terminal/session_pump.h"
#include "terminal/utf8_tail.h"

namespace {

// The keyboard and the screen of a command, for as long as it lives. Characters that come in pieces
// are put together.
class AttachedScreen : public SessionScreen {
 public:
  explicit AttachedScreen(ChildInput& input) {
    auto terminal = std::make_unique<CAnsiTerminalEmulator>(*console, input);
    terminal_ = terminal.get();
    console->attachTerminal(std::move(terminal));
  }
  ~AttachedScreen() override { console->detachTerminal(); }
  AttachedScreen(const AttachedScreen&) = delete;
  AttachedScreen& operator=(const AttachedScreen&) = delete;

  void write(std::string_view bytes) override {
    std::string joined;
    if (!heldBack_.empty()) {
      joined = heldBack_.append(bytes);
      bytes = joined;
    }
    const size_t whole = bytes.size() - unfinishedUtf8(bytes);
    terminal_->write(bytes.substr(0, whole));
    heldBack_ = bytes.substr(whole);
  }
  void showHeldBack() override {
    if (heldBack_.empty()) return;
    terminal_->write(heldBack_);
    heldBack_.clear();
  }
  GridSize size() const override { return console->getSize(); }

 private:
  CAnsiTerminalEmulator* terminal_;
  std::string heldBack_;  // the beginning of a character
};

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

ShellCommand shellCommandOf(const Westring& text, const Westring& directory) {
  ShellCommand command;
  command.environment = childEnvironment(directory);
  command.shell = valueIn(command.environment, "SHELL");
  command.text = bytePath(text);
  return command;
}

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
    AttachedScreen screen(input);
    end = pumpSession(child, terminal, input, screen);
  }
  if (status != nullptr) *status = child.status();
  if (input.closeAsked()) passCloseOn();
  return end == SessionEnd::Own ? 0 : -EINTR;
}
