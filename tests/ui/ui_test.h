#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "console/console.h"
#include "console/text_state.h"
#include "options/options.h"
#include "support/console_test.h"
#include "ui/dialog.h"

// A real console under the test's display, and what tests of windows do with it.
class UiTest : public ConsoleTest {
 protected:
  static constexpr unsigned char Ground = 0x1F;  // what the screen holds before a window opens
  static constexpr unsigned char Grey = 0x70;

  void SetUp() override {
    ConsoleTest::SetUp();
    for (int y = 0; y < console->rows(); ++y) {
      console->fillCell(0, y, console->columns(), Cell{L'.', Ground});
    }
  }

  static wchar_t charAt(int x, int y) { return console->getCells(x, y, 1, 1)[0].ch; }

  static std::wstring textAt(int x, int y, int n) {
    std::wstring text;
    for (const Cell& cell : console->getCells(x, y, n, 1)) text += cell.ch;
    return text;
  }
  static std::vector<int> attrsAt(int x, int y, int n) {
    std::vector<int> attrs;
    for (const Cell& cell : console->getCells(x, y, n, 1)) attrs.push_back(cell.attr);
    return attrs;
  }
  // The same in a window's interior.
  static std::wstring inside(const Win& win, int x, int y, int n) {
    return textAt(win.originX() + x, win.originY() + y, n);
  }
  int attrInside(const Win& win, int x, int y) const {
    return attrAt(win.originX() + x, win.originY() + y);
  }

  static std::vector<Cell> screen() {
    return console->getCells(0, 0, console->columns(), console->rows());
  }

  void queueKeys(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queueKey(key);
  }
  void queueClick(int x, int y, int button = 1) {
    queueMouse(EventKind::Press, x, y, button);
    queueMouse(EventKind::Release, x, y, button);
  }
};

// A dialog of 60 by 20 cells whose run can be left at any time: F12 ends it, what has the focus is
// drawn.
class TestDialog : public Dialog {
 public:
  static constexpr Key::Code Stop = Key::F12;

  explicit TestDialog(int width = 60, int height = 20) : Dialog(-1, -2, width, height, 0x70) {}

  // Runs until the queued events are used up.
  Key::Code runQueued() {
    queueStop();
    return run();
  }
  Key::Code runKeys(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queue(key);
    return runQueued();
  }

 protected:
  virtual void queueStop() {
    if (!stopper_) addExitKey(Stop);
    stopper_ = true;
    queue(Stop);
  }
  static void queue(Key::Code key) {
    TEvent event;
    event.key = key;
    console->events().put(event);
  }
  static void queueMouse(EventKind kind, int button) {
    TEvent event;
    event.kind = kind;
    event.button = button;
    console->events().put(event);
  }

 private:
  bool stopper_ = false;
};
