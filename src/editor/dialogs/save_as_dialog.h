#pragma once

#include "editor/dialogs/format_dialog.h"

namespace TDEditor {

// Asks for a name beside the format.
class CSaveAsDlg : public CFormatSelectDlg {
 public:
  CSaveAsDlg(const Westring& name, const TextForm& form);

  // As CFormatSelectDlg::ask. May be called again, and goes on with what was typed.
  bool ask(Westring& name, TextForm& form);

 private:
  Westring name_;
};

}  // namespace TDEditor
