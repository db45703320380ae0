#include "terminal/control_sequence.h"

#include <algorithm>

namespace {
bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}
}  // namespace

std::optional<ControlSequence> readControlSequence(std::string_view bytes) {
  ControlSequence result;
  size_t at = 0;
  if (!bytes.empty() && isDigit(bytes[0])) {
    for (bool more = true; more;) {
      int number = 0;
      for (; at < bytes.size() && isDigit(bytes[at]); ++at) {
        number = std::min(number * 10 + (bytes[at] - '0'), ControlSequence::HighestArgument);
      }
      if (result.count < ControlSequence::MostArguments) {
        result.arguments[static_cast<size_t>(result.count++)] = number;
      }
      more = at < bytes.size() && bytes[at] == ';';
      if (more) ++at;
    }
  }
  if (at == bytes.size()) return std::nullopt;
  result.final = bytes[at];
  result.length = at + 1;
  return result;
}
