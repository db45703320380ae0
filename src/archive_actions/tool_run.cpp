#include "archive_actions/tool_run.h"

#include <cerrno>
#include <csignal>
#include <memory>
#include <optional>
#include <string>

#include "console/console.h"
#include "console/input.h"
#include "foundation/break_state.h"
#include "foundation/clock.h"
#include "foundation/path_info.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "panels/commands/panel_switch.h"
#include "shell/run_in_shell.h"
#include "terminal/attached_screen.h"
#include "terminal/child_environment.h"
#include "terminal/run_command.h"
#include "ui/win.h"

namespace {

constexpr int64_t MsNs = 1'000'000;
constexpr int64_t BoxNs = 1000 * MsNs;     // of running, before the box opens
constexpr int64_t WaitingNs = 300 * MsNs;  // of sleeping, before the terminal is shown
constexpr size_t MostOutput = 256 * 1024;  // that is kept for the terminal
constexpr int UpperThird = -3;
constexpr int BoxWidth = 40, BoxHeight = 5, BoxText = 36;
constexpr int HeadingRow = 0, NameRow = 1, BytesRow = 2;

// What a command prints while nobody sees it, and the look at whether it waits.
class HiddenScreen : public SessionScreen {
 public:
  HiddenScreen(const ToolBox& box, const ChildProcess& child, ChildInput& input)
      : box_(box), child_(child), input_(input), started_(now()), lastOutput_(started_) {}
  ~HiddenScreen() override {
    if (!terminal_) return;
    terminal_.reset();
    screen_.reset();
    panelsVisible(Visible::Yes);
  }

  void write(std::string_view bytes) override {
    lastOutput_ = now();
    asleepSince_ = 0;
    if (terminal_) return terminal_->write(bytes);
    output_.append(bytes);
    if (output_.size() > MostOutput) output_.erase(0, output_.size() - MostOutput);
  }
  void showHeldBack() override {
    if (terminal_) terminal_->showHeldBack();
  }
  GridSize size() const override { return console->getSize(); }
  bool endAsked() override {
    if (terminal_) return false;
    if (waitsForUser()) {
      showTerminal();
      return false;
    }
    if (now() - started_ >= BoxNs) drawBox();
    return escapePressed() || breakRequested();
  }
  int endSignal() const override { return SIGINT; }

 private:
  static int64_t now() { return systemClock().nanoseconds(); }

  bool waitsForUser() {
    if (output_.empty()) return false;
    if (!child_.sleeps()) {
      asleepSince_ = 0;
      return false;
    }
    if (asleepSince_ == 0) asleepSince_ = now();
    return now() - asleepSince_ >= WaitingNs && now() - lastOutput_ >= WaitingNs;
  }

  void showTerminal() {
    window_.reset();
    screen_.emplace(Westring());
    terminal_ = std::make_unique<AttachedScreen>(input_);
    terminal_->write(output_);
    output_.clear();
  }

  void drawBox() {
    BatchScope batch;
    if (!window_) {
      const unsigned char attr = colourOf(Colour::Messages);
      window_ = std::make_unique<Win>(-1, UpperThird, BoxWidth, BoxHeight, attr, attr);
      window_->putCentred(HeadingRow, box_.heading);
      window_->putCentred(NameRow, shortenPath(box_.name, BoxText).data());
    }
    if (box_.bytesSoFar) {
      window_->put(0, BytesRow, Westring(L' ', window_->innerWidth()));
      window_->putCentred(BytesRow,
                          groupDigits(static_cast<unsigned long long>(box_.bytesSoFar())).data());
    }
  }

  const ToolBox& box_;
  const ChildProcess& child_;
  ChildInput& input_;
  const BreakScope armed_;
  const int64_t started_;
  int64_t lastOutput_;
  int64_t asleepSince_ = 0;
  std::string output_;
  std::unique_ptr<Win> window_;
  std::optional<OutputScreen> screen_;
  std::unique_ptr<AttachedScreen> terminal_;
};

ToolEnd endOf(int result, int& code) {
  if (result == 0) return ToolEnd::Ran;
  if (result == -EINTR) return ToolEnd::Broken;
  code = -result;
  return ToolEnd::NotStarted;
}

}  // namespace

ToolEnd runToolShown(const Westring& command, Panel& panel, int& code) {
  const unsigned flags = RunFlag::StayInDirectory | RunFlag::Interrupt;
  const int result = runInShell(command, panel, Westring(), flags, &code);
  return endOf(result, code);
}

ToolEnd runToolHidden(const Westring& command, const ToolBox& box, int& code) {
  PseudoTerminal terminal;
  if (const int error = terminal.open(console->getSize()); error != 0) return endOf(-error, code);
  ChildProcess child;
  const ShellCommand line = shellCommandOf(command, currentDir());
  if (const int error = child.start(line, terminal.slave()); error != 0) return endOf(-error, code);
  ChildInput input(terminal.master());
  HiddenScreen screen(box, child, input);
  const SessionEnd end = pumpSession(child, terminal, input, screen);
  code = child.status();
  return end == SessionEnd::Own ? ToolEnd::Ran : ToolEnd::Broken;
}
