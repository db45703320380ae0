#pragma once

#include <memory>
#include <string>

#include "console/terminal_session.h"
#include "terminal/child_input.h"
#include "terminal/control_sequence.h"
#include "terminal/graphic_rendition.h"
#include "terminal/terminal_log.h"
#include "terminal/terminal_screen.h"

// What stands between a command's pseudo-terminal and the console: its output becomes cells, keys
// become bytes for it. It understands the control sequences that ordinary programs send to a
// terminal of type "ansi"; what it doesn't understand goes to a log. No modes, no private
// sequences, no scroll region, no alternate screen.
//
// `write` belongs to the application thread, the rest to the toolkit thread; both halves share
// nothing.
class CAnsiTerminalEmulator final : public TerminalSession {
 public:
  // A sequence that is longer when its output stops is dropped.
  static constexpr size_t LongestPending = 4096;  // bytes

  // Both are borrowed.
  CAnsiTerminalEmulator(CConsole& screen, ChildInput& input,
                        const char* logPath = TerminalLog::Path);

  // Goes on where the console's cursor stands. A sequence that is cut at the end waits for the next
  // call; a character that is cut shows as its bytes.
  void write(std::string_view bytes) override;

  [[nodiscard]] bool sendKey(Key::Code code) override;
  [[nodiscard]] bool sendText(const Westring& text) override;
  void breakPressed() override { input_.breakPressed(); }
  void closePressed() override { input_.closePressed(); }

 private:
  void interpret(std::string_view text);
  void control(char byte);
  size_t print(std::string_view text);  // returns how many bytes it took, from 1
  void place(wchar_t character);
  wchar_t codePageCharacter(unsigned char byte);
  void hold(std::string_view sequence);

  void perform(const ControlSequence& sequence);
  bool moveCursor(const ControlSequence& sequence);
  bool editLine(const ControlSequence& sequence);
  bool editScreen(const ControlSequence& sequence);
  void eraseLine(int which);
  void eraseDisplay(int which);
  void repeat(int count);
  void setRendition(const ControlSequence& sequence);

  CConsole& console_;
  ChildInput& input_;
  TerminalLog log_;
  TerminalScreen screen_;
  Rendition rendition_;
  std::string pending_;   // from an ESC on
  wchar_t lastChar_ = 0;  // the last one placed, 0 for none
  bool beep_ = false;     // asked for by what is being written
  Westring highHalf_;     // code page 437 from 128 on, once it was needed
};
