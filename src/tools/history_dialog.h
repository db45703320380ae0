#pragma once

#include "ui/dialog.h"

// A window with a list of texts as wide as the longest of them and as high as there are, within the
// screen. The cursor begins on the last one; Enter and Esc end it.
class HistoryDialog : public Dialog {
 public:
  // There must be at least one text; they must outlive the dialog.
  HistoryDialog(const char* title, FnStringStore& texts, int leastWidth);

  int selected() const { return selected_; }
  void select(int index);  // shown at the next run

 private:
  HistoryDialog(const char* title, FnStringStore& texts, GridSize list);

  int list_;
  int selected_;
};
