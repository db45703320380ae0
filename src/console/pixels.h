#pragma once

// Sizes and places in pixels. Numbers without one of these types count cells.
struct PixelSize {
  int width = 0;
  int height = 0;
};

struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};
