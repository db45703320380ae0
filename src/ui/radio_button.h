#pragma once

#include "ui/dialog_element.h"

// "(o)" of a group that shares the caller's number: the selection follows the focus.
class RadioButton : public DialogElement {
 public:
  RadioButton(Dialog& dialog, int x, int y, Group group, int* value, int myValue,
              const char* label);

  bool handleMessage(const Message& message) override;
  ElementType type() const override { return ElementType::RadioButton; }
  void focusNotify(Focus focus) override;
  void draw() override;

 private:
  int* value_;
  int myValue_;
  Westring label_;
};
