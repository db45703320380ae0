#pragma once

#include <type_traits>

// One character cell. An array of cells used as a string ends at a cell whose `ch` is 0.
struct Cell {
  wchar_t ch = L' ';
  unsigned char attr = 7;

  friend bool operator==(const Cell&, const Cell&) = default;
};

// What the screen shows for a control character: 1..31 the graphics of the classic PC set, 127..159
// U+2302, anything else itself.
wchar_t mapControl(wchar_t character);
