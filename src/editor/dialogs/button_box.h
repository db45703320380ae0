#pragma once

#include <vector>

#include "ui/dialog.h"

namespace TDEditor {

// A button of a box: what it answers and the letter that presses it, 0 for none.
struct BoxButton {
  Key::Code exitCode;
  const char* text;
  char hot = 0;
};

// A message box with buttons of its own, laid out as alert lays out its boxes: the lines of the
// text, a line for the caption, the buttons; without a text the buttons alone.
struct BoxTexts {
  const char* title = "";  // in the frame, with blanks around it
  Westring text = {};
  Westring caption = {};  // a path, shortened; or empty
};

class CButtonBox : public Dialog {
 public:
  CButtonBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons);

 private:
  CButtonBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons,
             const std::vector<Westring>& lines, const Westring& caption);
};

// The exit code of the button pressed; Enter presses the first, Esc gives Key::Esc, the end of the
// program Dialog::ProgramEnds. Application thread.
Key::Code askBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons);

}  // namespace TDEditor
