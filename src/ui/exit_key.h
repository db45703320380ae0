#pragma once

#include "ui/dialog.h"

// Invisible: lets a key end the dialog with its own code.
class ExitKey : public DialogElement {
 public:
  ExitKey(Dialog& dialog, int key);

  void activate() override;
  ElementType type() const override { return ElementType::ExitKey; }
  void draw() override {}
};
