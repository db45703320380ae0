#pragma once

#include <cstdint>
#include <memory>

#include "foundation/clock.h"
#include "ui/escape_watch.h"
#include "ui/win.h"

namespace TDEditor {

// A few words in a frame in the middle of the screen, for as long as it lives.
class CNoteWindow : public Win {
 public:
  explicit CNoteWindow(const wchar_t* text);
};

inline constexpr wchar_t Searching[] = L"Searching...";
inline constexpr wchar_t NoMoreFiles[] = L"No more files";

// Stands by while something is searched: looks for Esc and Break, and says "Searching..." once it
// has lasted long enough to be felt. Application thread.
class CSearchWatch {
 public:
  static constexpr int64_t QuietNs = 100'000'000;

  explicit CSearchWatch(CClock& clock = systemClock());

  bool pressed();      // to be asked often; true from the first Esc or Break on
  void closeWindow();  // before anything else is shown
  bool showing() const { return window_ != nullptr; }

 private:
  CClock& clock_;
  EscapeWatch escape_;
  int64_t showFrom_;
  std::unique_ptr<CNoteWindow> window_;
};

}  // namespace TDEditor
