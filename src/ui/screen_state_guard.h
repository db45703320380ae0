#pragma once

#include <string>

#include "console/text_state.h"

// For the time of a full screen with a life of its own: the clock is off, and on every way out the
// Clock option, the cursor, the text state and the window's title are what they were.
class ScreenStateGuard {
 public:
  ScreenStateGuard();
  ~ScreenStateGuard();
  ScreenStateGuard(const ScreenStateGuard&) = delete;
  ScreenStateGuard& operator=(const ScreenStateGuard&) = delete;

 private:
  TextStateGuard textState_;
  bool clock_;
  std::string title_;
};
