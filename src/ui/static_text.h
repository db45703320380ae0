#pragma once

#include "ui/dialog.h"

// A line of text that takes neither the focus nor the mouse.
class StaticText : public DialogElement {
 public:
  // x < 0: centred. `attr` is used as it is.
  StaticText(Dialog& dialog, int x, int y, const Westring& text, unsigned char attr);

  ElementType type() const override { return ElementType::StaticText; }
  void draw() override;

 private:
  Westring text_;
  unsigned char attr_;
};
