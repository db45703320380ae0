#include "archive_actions/tool_run.h"

#include <X11/keysym.h>

#include <thread>

#include "language/environment.h"
#include "panels/model/panel_pair.h"
#include "support/console_test.h"
#include "support/temp_dir.h"
#include "support/wait_until.h"
#include "support/x_keys.h"

namespace {

class ToolRun : public RealKeysTest {
 protected:
  void SetUp() override {
    RealKeysTest::SetUp();
    sessionEnvironment().set("SHELL", "/bin/sh");
    // Their windows come back after a question; here is nothing but what the task shows.
    for (Panel& panel : panelPair().side) panel.showing = false;
  }
  void TearDown() override {
    for (Panel& panel : panelPair().side) panel.showing = true;
    sessionEnvironment().set("SHELL", nullptr);
    RealKeysTest::TearDown();
  }
  bool shows(const std::string& text) const { return screenText().find(text) != std::string::npos; }
  ToolEnd run(const std::string& command) {
    const ToolBox box{L"Extracting", L"a member", [] { return int64_t{1234}; }};
    return runToolHidden(decodeFileName(command.c_str()), box, code);
  }
  // Acts as the user as soon as the screen shows the text.
  ToolEnd runWithUser(const std::string& command, const std::string& text,
                      const std::function<void()>& act) {
    std::thread user([&] {
      EXPECT_TRUE(waitUntil([&] { return shows(text); })) << screenText();
      act();
    });
    const ToolEnd end = run(command);
    user.join();
    return end;
  }

  TempDir dir;
  int code = -1;
};

TEST_F(ToolRun, ATaskBehindThePanelsShowsNothing) {
  EXPECT_EQ(run("echo seen; exit 3"), ToolEnd::Ran);
  EXPECT_EQ(code, 3);
  EXPECT_FALSE(shows("seen"));
}

TEST_F(ToolRun, AQuestionShowsTheTerminalAndGetsTheAnswer) {
  const ToolEnd end = runWithUser(
      "printf 'Password: '; read word; echo $word >'" + dir.path("answer") + "'", "Password:", [] {
        XKeys::get().type("secret");
        XKeys::get().press(XK_Return);
      });
  EXPECT_EQ(end, ToolEnd::Ran);
  EXPECT_EQ(dir.read("answer"), "secret\n");
}

TEST_F(ToolRun, AQuestionHasTheRowsOfPromptAndKeyBarToItself) {
  const int rows = console->getSize().rows;
  console->writeWide(0, rows - 2, L"prompt> with what was typed, longer than any question", 7);
  console->writeWide(0, rows - 1, L"1Help   2Menu   3View   4Edit   5Copy   6RenMov", 7);
  static_cast<void>(
      runWithUser("printf 'Archive: one\nPassword: '; read word; echo done", "Password:", [&] {
        EXPECT_FALSE(shows("Menu")) << screenText();
        EXPECT_FALSE(shows("typed")) << screenText();
        XKeys::get().press(XK_Return);
      }));
  EXPECT_FALSE(shows("Menu")) << screenText();
  // What was printed last stays above the two rows.
  EXPECT_EQ(rowText(0, rows - 3, 5), "done ");
}

TEST_F(ToolRun, ALongTaskShowsABoxThatEscEnds) {
  const ToolEnd end = runWithUser("exec sleep 1000", "1,234", [&] {
    EXPECT_TRUE(shows("Extracting"));
    EXPECT_TRUE(shows("a member"));
    XKeys::get().press(XK_Escape);
  });
  EXPECT_EQ(end, ToolEnd::Broken);
  EXPECT_FALSE(shows("Extracting"));
}

}  // namespace
