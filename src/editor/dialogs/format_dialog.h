#pragma once

#include "editor/text/text_encoding.h"
#include "ui/dialog.h"

namespace TDEditor {

// Asks for format, code page and byte order mark. Page 0 is shown as the default page.
class CFormatSelectDlg : public Dialog {
 public:
  // `title` with blanks around it.
  CFormatSelectDlg(const char* title, const TextForm& form) : CFormatSelectDlg(title, form, 0) {
    addEnd();
  }

  // Runs until it is left: true with `form` as chosen, never Undetermined, a code page being one
  // that the system knows; false on Esc and at the end of the program, with everything as it was.
  bool ask(TextForm& form);

  void focusChanged() override;

 protected:
  // With `rowsAbove` rows for what a subclass adds; its constructor calls addEnd last.
  CFormatSelectDlg(const char* title, const TextForm& form, int rowsAbove);
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
