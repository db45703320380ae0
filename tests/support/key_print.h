#pragma once

#include <ostream>

#include "console/key_codes.h"

// How a failed comparison of key codes shows them.
namespace Key {
inline std::ostream& operator<<(std::ostream& out, Code code) {
  const auto flags = out.flags();
  out << "0x" << std::hex << code.value();
  out.flags(flags);
  return out;
}
}  // namespace Key
