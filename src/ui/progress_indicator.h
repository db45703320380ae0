#pragma once

#include "ui/dialog_element.h"

// A bar of `width` cells over the caller's fraction, 0 to 1. Drawn at construction and by redraw.
class ProgressIndicator : public DialogElement {
 public:
  ProgressIndicator(Dialog& dialog, int x, int y, int width, const float* fraction);

  ElementType type() const override { return ElementType::ProgressIndicator; }
  void draw() override;

 private:
  int width_;
  const float* fraction_;
};

// How many of `width` cells are done; 0 to width for every fraction.
int progressCells(int width, float fraction);
