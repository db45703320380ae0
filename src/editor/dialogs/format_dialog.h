#pragma once

#include "editor/text/text_encoding.h"
#include "ui/dialog.h"

namespace TDEditor {

// How a file is written: what the dialog shows and what was chosen in it.
struct FormatChoice {
  TextEncoding encoding;  // never Undetermined afterwards; page 0 is shown as the default page
  bool hasMark = false;   // a byte order mark
};

// Asks for format, code page and byte order mark.
class CFormatSelectDlg : public Dialog {
 public:
  // `title` with blanks around it.
  CFormatSelectDlg(const char* title, const FormatChoice& choice)
      : CFormatSelectDlg(title, choice, 0) {
    addEnd();
  }

  // Runs until it is left: true with `choice` as chosen, a code page being one that the system
  // knows; false on Esc and at the end of the program, with everything as it was.
  bool ask(FormatChoice& choice);

  void focusChanged() override;

 protected:
  // With `rowsAbove` rows for what a subclass adds; its constructor calls addEnd last.
  CFormatSelectDlg(const char* title, const FormatChoice& choice, int rowsAbove);
  void addEnd();  // the buttons and the texts

 private:
  TextEncoding chosenEncoding() const;
  bool pageIsThere();

  const int firstRow_;
  const int openedWith_;  // the radio button
  const bool openingMark_;
  int radio_;
  int lastRadio_;
  int page_;
  bool mark_;
  bool bigEndian_;
};

}  // namespace TDEditor
