#pragma once

#include <csignal>
#include <string>

#include "terminal/child_input.h"
#include "terminal/session_pump.h"

class CAnsiTerminalEmulator;

// The keyboard and the screen of a command, for as long as this lives. Characters that come in
// pieces are put together. Application thread.
class AttachedScreen : public SessionScreen {
 public:
  explicit AttachedScreen(ChildInput& input, int endSignal = SIGHUP);
  ~AttachedScreen() override;
  AttachedScreen(const AttachedScreen&) = delete;
  AttachedScreen& operator=(const AttachedScreen&) = delete;

  void write(std::string_view bytes) override;
  void showHeldBack() override;
  GridSize size() const override;
  int endSignal() const override { return endSignal_; }

 private:
  CAnsiTerminalEmulator* terminal_;
  const int endSignal_;
  std::string heldBack_;  // the beginning of a character
};
