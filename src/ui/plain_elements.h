#pragma once

#include "ui/dialog_element.h"

// The simplest elements, and the text that all of them show.

// A control's text from bytes in the console's code page; empty for null.
Westring dialogLabel(const char* bytes);

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

// Invisible: lets a key end the dialog with its own code.
class ExitKey : public DialogElement {
 public:
  ExitKey(Dialog& dialog, Key::Code key);

  void activate() override;
  ElementType type() const override { return ElementType::ExitKey; }
  void draw() override {}
};
