#include "terminal/run_command.h"

#include <cerrno>
#include <memory>

#include "console/console.h"
#include "console/input.h"
#include "console/terminal_session.h"
#include "foundation/break_state.h"
#include "foundation/place.h"
#include "terminal/child_environment.h"
#include "terminal/session_pump.h"

namespace {

// The keyboard and the screen of a command, for as long as it lives.
class AttachedScreen : public SessionScreen {
 public:
  explicit AttachedScreen(ChildInput& input);
  ~AttachedScreen() override { console->detachTerminal(); }
  AttachedScreen(const AttachedScreen&) = delete;
  AttachedScreen& operator=(const AttachedScreen&) = delete;

  void write(std::string_view bytes) override { session_->write(bytes); }
  void showHeldBack() override {}
  GridSize size() const override { return console->getSize(); }

 private:
  class Plain;
  TerminalSession* session_ = nullptr;
};

// Characters and line ends.
class AttachedScreen::Plain : public TerminalSession {
 public:
  explicit Plain(ChildInput& input) : input_(input) {}

  void write(std::string_view bytes) override {
    for (const wchar_t* p = fromUtf8(std::string(bytes).c_str()).data(); *p != 0; ++p) put(*p);
  }
  bool sendKey(Key::Code code) override {
    const char byte = static_cast<char>(code);
    return input_.put({&byte, 1}) == ChildInput::Put::Taken;
  }
  bool sendText(const Westring& text) override {
    return input_.put(toUtf8(text).data()) == ChildInput::Put::Taken;
  }
  void breakPressed() override { input_.breakPressed(); }
  void closePressed() override { input_.closePressed(); }

 private:
  static void put(wchar_t ch) {
    const GridSize size = console->getSize();
    CursorPos at = console->getCursorPos();
    if (ch == L'\r') {
      at.x = 0;
    } else if (ch == L'\n' || at.x >= size.columns) {
      at.x = 0;
      if (at.y + 1 < size.rows) {
        ++at.y;
      } else {
        console->scrollUp(0, 0, size.columns, size.rows, 1, console->defaultAttr());
      }
    } else {
      const wchar_t text[] = {ch, 0};
      console->writeWide(at.x++, at.y, text, console->defaultAttr());
    }
    console->setCursorPos(at.x, at.y);
  }

  ChildInput& input_;
};

AttachedScreen::AttachedScreen(ChildInput& input) {
  auto session = std::make_unique<Plain>(input);
  session_ = session.get();
  console->attachTerminal(std::move(session));
}

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
  event.code = Key::F10;
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
