#pragma once

#include <string>

#include "foundation/westring.h"

// The strings' own operators ignore case; a test compares what is really there, and a failing line
// shows it.
inline std::string exact(const Estring& text) {
  return text.data();
}
inline std::wstring exact(const Westring& text) {
  return text.data();
}
