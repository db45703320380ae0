#pragma once

#include <string_view>

#include "console/key_codes.h"
#include "foundation/westring.h"

// What a running command is to the console: while one is attached it has the keyboard, and it gets
// what writeTty writes. The functions for keys run on the toolkit thread with the toolkit lock
// held: they may neither wait nor take that lock.
class TerminalSession {
 public:
  virtual ~TerminalSession() = default;

  // Output of the command; NULs count for nothing. Application thread.
  virtual void write(std::string_view bytes) = 0;

  // A key or a typed character. False when the command takes no more: the console beeps.
  [[nodiscard]] virtual bool sendKey(Key::Code code) = 0;
  // Text from the clipboard, or Esc and a character; all of it or, with false, nothing.
  [[nodiscard]] virtual bool sendText(const Westring& text) = 0;
  virtual void breakPressed() = 0;
  virtual void closePressed() = 0;  // the close button of the window
};
