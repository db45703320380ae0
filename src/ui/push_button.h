#pragma once

#include "ui/dialog_element.h"

// "[ label ]"; ends the dialog with its exit code, which is its hot key too. The first button of a
// dialog becomes the default that Enter presses from elsewhere.
class PushButton : public DialogElement {
 public:
  static constexpr int MaxLabelBytes = 43;
  static constexpr int BracketCells = 4;  // what the brackets add to the label

  PushButton(Dialog& dialog, int x, int y, Group group, Key::Code exitCode, const char* label);

  bool handleMessage(const Message& message) override;
  void activate() override;
  ElementType type() const override { return ElementType::PushButton; }
  void draw() override;

  Key::Code exitCode() const { return exitCode_; }
  static int widthOf(const char* label);  // cells, brackets included

 private:
  Westring label_;
  Key::Code exitCode_;
};
