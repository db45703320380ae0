// The screen around a command: what stands where before, meanwhile and afterwards.

#include "shell/run_in_shell.h"

#include <X11/keysym.h>

#include "language/environment.h"
#include "options/colours.h"
#include "panels/commands/panel_switch.h"
#include "panels/picture/panel_title.h"
#include "shell/shell_test.h"
#include "terminal/run_command.h"

namespace {

class RunInShell : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    sessionEnvironment().set("SHELL", "/bin/sh");
    leftDir.write("file", "");
    openPanels();
    for (Panel& side : panelPair().side) side.needsRead = false;
  }
  void TearDown() override {
    sessionEnvironment().set("SHELL", nullptr);
    ShellTest::TearDown();
  }
  int run(const std::string& command, const std::string& echo, unsigned flags = 0) {
    return runInShell(fromUtf8(command.c_str()), left(), fromUtf8(echo.c_str()), flags);
  }
  std::string rowOf(int y) const {
    const std::string text = rowText(y);
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }
};

constexpr int PromptRow = 23, KeyBarRow = 24;

TEST_F(RunInShell, TheOutputStandsBelowTheEchoAndAboveThePrompt) {
  EXPECT_EQ(run("echo one; echo two", "prompt>echo"), 0);
  EXPECT_EQ(rowOf(PromptRow - 3), "prompt>echo");
  EXPECT_EQ(rowOf(PromptRow - 2), "one");
  EXPECT_EQ(rowOf(PromptRow - 1), "two");
  EXPECT_EQ(rowOf(PromptRow), "");
  EXPECT_EQ(rowOf(KeyBarRow), "");
}

TEST_F(RunInShell, ALastLineWithoutItsEndStaysVisible) {
  EXPECT_EQ(run("printf hi", "prompt>"), 0);
  EXPECT_EQ(rowOf(PromptRow - 2), "prompt>");
  EXPECT_EQ(rowOf(PromptRow - 1), "hi");
  EXPECT_EQ(rowOf(PromptRow), "");
}

TEST_F(RunInShell, TheRunsOfASeriesFollowEachOther) {
  EXPECT_EQ(run("echo one", "prompt>"), 0);
  EXPECT_EQ(run("echo two", ""), 0);
  EXPECT_EQ(run("printf three", ""), 0);
  EXPECT_EQ(rowOf(PromptRow - 4), "prompt>");
  EXPECT_EQ(rowOf(PromptRow - 3), "one");
  EXPECT_EQ(rowOf(PromptRow - 2), "two");
  EXPECT_EQ(rowOf(PromptRow - 1), "three");
}

TEST_F(RunInShell, AnEchoIsCutToTheScreen) {
  EXPECT_EQ(run("true", std::string(100, 'e')), 0);
  EXPECT_EQ(rowOf(PromptRow - 2), "");
  EXPECT_EQ(rowOf(PromptRow - 1), std::string(80, 'e'));
}

TEST_F(RunInShell, MeanwhileThePanelsAndTheKeyBarAreAwayAndTheTitleIsTheCommand) {
  const char* labels[KeyBarFields] = {"1Bar", "", "", "", "", "", "", "", "", ""};
  drawKeyBarLine(labels);
  std::string meanwhile, title;
  int cursor = 0;
  {
    Beside user([&] {
      EXPECT_TRUE(waitToShow("go"));
      meanwhile = screenText();
      title = console->title();
      cursor = console->cursorSize();
      leftDir.write("seen", "");
    });
    EXPECT_EQ(run("echo go; until [ -e seen ]; do sleep 0.01; done", "prompt>"), 0);
  }
  EXPECT_EQ(meanwhile.find("UP-DIR"), std::string::npos);
  EXPECT_EQ(meanwhile.find("1Bar"), std::string::npos);
  EXPECT_NE(meanwhile.find("prompt>"), std::string::npos);
  EXPECT_EQ(title, "TD/X: echo go; until [ -e seen ]; do sleep 0.01; done");
  EXPECT_GT(cursor, 0);
  EXPECT_EQ(console->cursorSize(), 0);
  EXPECT_TRUE(console->title().starts_with("Tandem Deck V"));
}

TEST_F(RunInShell, AfterwardsBothPanelsAreReadAnew) {
  EXPECT_EQ(run("touch made", ""), 0);
  EXPECT_TRUE(left().needsRead);
  EXPECT_TRUE(right().needsRead);
  EXPECT_FALSE(shows("UP-DIR"));
  panelsVisible(Visible::Yes);
  EXPECT_TRUE(shows("UP-DIR"));
  EXPECT_NE(entryNamed(left(), "made"), nullptr);
}

TEST_F(RunInShell, AHiddenCommandLeavesThePanelsWhereTheyAre) {
  const std::string before = screenText();
  EXPECT_EQ(run("echo no > made", "prompt>", RunFlag::Hidden), 0);
  EXPECT_EQ(screenText(), before);
  EXPECT_TRUE(leftDir.exists("made"));
  EXPECT_TRUE(left().needsRead);
}

TEST_F(RunInShell, ACommandIsToldTheDirectoryThatIsShown) {
  leftDir.makeDir("real");
  leftDir.link("real", "link");
  goToPath(left(), leftDir.wide("link"));
  EXPECT_EQ(run("echo \"$PWD\" > here", ""), 0);
  EXPECT_EQ(leftDir.read("real/here"), leftDir.path("link") + "\n");
}

TEST_F(RunInShell, InAnArchiveItRunsWhereTheArchiveLies) {
  enterArchive();
  EXPECT_EQ(run("echo \"$PWD\" > here", ""), 0);
  EXPECT_EQ(leftDir.read("here"), leftDir.path() + "\n");
}

}  // namespace
