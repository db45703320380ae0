#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "syntax/syntax.h"

// Lines of UTF-8 as the engine colours them, for tests that read what it did.

// The attribute of all text that no rule touches, in these tests.
inline constexpr unsigned char PlainText = 0x1B;

// An engine with the rules of one section that fits any name; classes may stand before the rules.
CSyntax engineWith(const std::string& rules, const std::string& classes = "");

// What a line shows, and for each of its cells the digit of its foreground, '.' where the attribute
// is PlainText.
struct ColouredLine {
  std::string shown;
  std::string colours;
  friend bool operator==(const ColouredLine&, const ColouredLine&) = default;
};
std::ostream& operator<<(std::ostream& out, const ColouredLine& line);
ColouredLine colourLine(CSyntax& engine, std::wstring_view line);
// The second part alone.
std::string coloursOf(CSyntax& engine, std::wstring_view line);
