#pragma once

#include <string>

#include "e2e/program_test.h"

// The program with the help file that comes with it.
class HelpTest : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    setenv("TD_SHARE", TD_BUILT_SHARE, 1);
  }
  // F1, the topic's title in the first row of the window, and what was on the screen comes back.
  void expectHelp(const std::string& title) {
    expectAwaited();
    const std::string before = screen();
    press(XK_F1);
    expectSoon("help on " + title, [&] { return row(3, 3, 73).starts_with("║ " + title + " "); });
    EXPECT_TRUE(row(2).find(" Help ") != std::string::npos);
    press(XK_Escape);
    expectSoon("the screen as it was", [&] { return screen() == before; });
  }
};
