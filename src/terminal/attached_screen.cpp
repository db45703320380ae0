#include "terminal/attached_screen.h"

#include <memory>

#include "console/console.h"
#include "terminal/ansi_emulator.h"
#include "terminal/utf8_tail.h"

AttachedScreen::AttachedScreen(ChildInput& input, int endSignal) : endSignal_(endSignal) {
  auto terminal = std::make_unique<CAnsiTerminalEmulator>(*console, input);
  terminal_ = terminal.get();
  console->attachTerminal(std::move(terminal));
}

AttachedScreen::~AttachedScreen() {
  console->detachTerminal();
}

void AttachedScreen::write(std::string_view bytes) {
  std::string joined;
  if (!heldBack_.empty()) {
    joined = heldBack_.append(bytes);
    bytes = joined;
  }
  const size_t whole = bytes.size() - unfinishedUtf8(bytes);
  terminal_->write(bytes.substr(0, whole));
  heldBack_ = bytes.substr(whole);
}

void AttachedScreen::showHeldBack() {
  if (heldBack_.empty()) return;
  terminal_->write(heldBack_);
  heldBack_.clear();
}

GridSize AttachedScreen::size() const {
  return console->getSize();
}
