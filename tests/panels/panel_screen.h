#pragma once

#include <functional>
#include <string>
#include <thread>

#include "panel_fixture.h"
#include "panels/picture/panel_window.h"
#include "support/console_test.h"

// Does something beside the test, which waits for keys meanwhile.
class Beside {
 public:
  explicit Beside(std::function<void()> act) : thread_(std::move(act)) {}
  ~Beside() { thread_.join(); }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;

 private:
  std::thread thread_;
};

// Panels on a real screen. Their windows are closed until a test opens them.
class PanelScreenTest : public WithPanels<ConsoleTest> {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    fetchScreenSize();
  }
  void openWindows() {
    openPanelWindow(0);
    openPanelWindow(1);
  }

  bool shows(const std::string& text) const { return screenText().find(text) != std::string::npos; }
  bool waitToShow(const std::string& text) const {
    return waitUntil([&] { return shows(text); });
  }
  // The first row that shows a text, or -1.
  int rowWith(const std::string& text) const {
    for (int y = 0; y < console->rows(); ++y) {
      if (rowText(y).find(text) != std::string::npos) return y;
    }
    return -1;
  }
};
