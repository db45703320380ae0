#pragma once

#include <vector>

#include "ui/alert.h"
#include "ui/dialog.h"

// The lines of a message box on a screen of that width: cut at spaces, a word too long for a line
// at the line's end. What is left after 10 lines is dropped.
std::vector<Westring> wrapAlertText(const Westring& text, int screenWidth);

// What a message box shows and how large that makes it.
struct AlertLayout {
  AlertLayout(const Westring& text, const Westring& path, AlertButtons buttons, int screenWidth);

  std::vector<Westring> lines;
  Westring caption;    // the path as it fits
  int width = 0;       // cells for the lines, even
  int height() const;  // rows, frame included
};

// The window behind alert.
class AlertDialog : public Dialog {
 public:
  AlertDialog(const AlertLayout& layout, AlertButtons buttons, AlertColour colour);
};
