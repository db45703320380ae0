#pragma once

#include "ui/dialog_element.h"

// "[X]" with a label; edits the caller's bool.
class CheckBox : public DialogElement {
 public:
  CheckBox(Dialog& dialog, int x, int y, Group group, bool* value, const char* label, Label side);

  bool handleMessage(const Message& message) override;
  void activate() override;  // takes the focus and toggles
  ElementType type() const override { return ElementType::CheckBox; }
  void draw() override;

 protected:
  void drawBox(wchar_t mark);

 private:
  bool handleKey(Key::Code key);
  bool hits(const Message& message) const;
  int labelX() const;

  bool* value_;
  Westring label_;
  Label side_;
};

// Where the base of a CheckBox3S finds the value that it edits.
struct CheckBoxScratch {
  bool scratch = false;
};

// Three states, 0, 1 and 2, in the caller's byte: every setting of the box goes on to the next.
class CheckBox3S : private CheckBoxScratch, public CheckBox {
 public:
  CheckBox3S(Dialog& dialog, int x, int y, Group group, unsigned char* value, const char* label,
             Label side);

  bool handleMessage(const Message& message) override;
  ElementType type() const override { return ElementType::CheckBox3S; }
  void draw() override;

 private:
  unsigned char* state_;
};
