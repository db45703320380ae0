#pragma once

#include <functional>
#include <vector>

#include "console/text_state.h"
#include "tools/help_file.h"
#include "ui/screen.h"
#include "ui/win.h"
#include "viewer/key_repeat.h"

// The window in which a topic is read: scrolled by keys, by the wheel, and by a button held down in
// its top or bottom third. Esc and a press beside it leave. Application thread.
class HelpScreen : public Screen {
 public:
  // `onIndex` is what F1 does; nothing when there is no function.
  HelpScreen(std::vector<Westring> lines, std::function<void()> onIndex,
             CClock& clock = systemClock());

 protected:
  void draw() override;
  void onKey(Key::Code key, int shiftState) override;
  void onMouse(const MouseMessage& mouse) override;
  void onTimeOut() override;
  int waitMs() const override { return repeat_.waitMs(); }

 private:
  int rows() const { return window_.innerHeight(); }
  int lastTop() const;
  void scrollBy(int lines);
  void takeKey(Key::Code key);
  void press(const MouseMessage& mouse);
  void drawMark(int row, const wchar_t* mark);

  std::vector<Westring> lines_;
  std::function<void()> onIndex_;
  KeyRepeat repeat_;
  TextStateGuard textState_;
  Win window_;
  int top_ = 0;
};
