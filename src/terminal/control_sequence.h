#pragma once

#include <array>
#include <optional>
#include <string_view>

// A control sequence: ESC, "[", numbers with ';' between them, a final byte.
struct ControlSequence {
  static constexpr int MostArguments = 32;       // further ones are read over
  static constexpr int HighestArgument = 65535;  // a greater number counts as this

  std::array<int, MostArguments> arguments;  // the first `count` are set
  int count = 0;
  char final = 0;
  size_t length = 0;  // bytes behind the "[", the final byte included

  // The argument `index`, or `otherwise` when there are fewer.
  int argument(int index, int otherwise) const {
    return index < count ? arguments[static_cast<size_t>(index)] : otherwise;
  }
  // The first one as a number of things: absent and 0 are 1.
  int atLeastOne() const { return count > 0 && arguments[0] > 0 ? arguments[0] : 1; }
};

// Reads the bytes behind "ESC [". Numbers are read only when the first byte is a digit; a ';' ends
// one and opens the next, which begins at 0. Whatever byte follows is the final one. Nothing when
// `bytes` end before it.
std::optional<ControlSequence> readControlSequence(std::string_view bytes);
