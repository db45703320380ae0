// Commands at the prompt of the whole program, by real keys.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>

#include "console/console.h"
#include "e2e/program_test.h"

namespace {

class Commands : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    setenv("SHELL", "/bin/sh", 1);
  }
  static constexpr int PromptRow = 23;

  void expectPanels() { expectText("10Quit"); }
  bool promptShows(const std::string& text) const {
    return row(PromptRow).find(text) != std::string::npos;
  }
  // Types a line at the prompt and runs it to its end. It must not be longer than the row.
  void run(const std::string& line) {
    type(line);
    expectSoon("the typed line", [&] { return promptShows(line); });
    press(XK_Return);
    // While it runs the key bar is away, and the line stands in the prompt's row at first.
    expectSoon("the prompt is back", [&] { return shows("10Quit") && !promptShows(line); });
  }
  // Starts a command that waits for its user, and waits until it has printed `text`.
  void begin(const std::string& line, const std::string& text) {
    type(line);
    expectSoon("the typed line", [&] { return promptShows(line); });
    press(XK_Return);
    expectSoon("the command's text", [&] { return !shows("10Quit") && shows("\n" + text); });
  }
  void showOutput() {
    press(XK_o, {XK_Control_L});
    expectNoText("UP-DIR");
    expectPanels();
  }
};

TEST_F(Commands, ThePanelsComeBackWithWhatTheCommandMade) {
  start();
  run("touch new");
  EXPECT_NE(row(2).find("new"), std::string::npos);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, CtrlOShowsTheOutput) {
  start();
  run("echo one; printf hi");
  showOutput();
  expectText(">echo one; printf hi");
  EXPECT_EQ(row(21).substr(0, 4), "one ");
  EXPECT_EQ(row(22).substr(0, 3), "hi ");
  EXPECT_NE(row(23).find(">"), std::string::npos);
  press(XK_o, {XK_Control_L});
  expectText("UP-DIR");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, ColoursShowAsTheyWerePrinted) {
  start();
  run("printf '\\033[31mred\\033[0m plain\\n'");
  showOutput();
  expectText("red plain");
  EXPECT_EQ(attrAt(0, 22), 4);
  EXPECT_EQ(attrAt(4, 22), 7);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, ACommandReadsTheKeyboard) {
  start();
  begin("printf 'name: '; read x; echo \"<$x>\" > answer", "name: ");
  typeMeanwhile("Grace");
  pressMeanwhile(XK_Return);
  expectPanels();
  expectText("answer");
  EXPECT_EQ(left().read("answer"), "<Grace>\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, CtrlCEndsACommandAndNotTheProgram) {
  start();
  begin("echo going; exec sleep 1000", "going");
  pressMeanwhile(XK_c, {XK_Control_L});
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, BreakTwiceLeavesAProgramThatIgnoresEverythingElse) {
  start();
  begin("trap '' INT HUP; echo going; while :; do sleep 1; done", "going");
  pressMeanwhile(XK_c, {XK_Control_L});
  pressMeanwhile(XK_Pause, {XK_Control_L});
  pressMeanwhile(XK_Pause, {XK_Control_L});
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, ClosingTheWindowEndsTheCommandAndThenAsks) {
  start();
  begin("echo going; exec sleep 1000", "going");
  keys().closeWindow(console->windowId());
  expectText("Are you sure you want to exit");
  press(XK_Escape);
  expectNoText("Are you sure");
  run("touch new");
  EXPECT_TRUE(left().exists("new"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, ASignalToEndTheProgramEndsTheCommandToo) {
  start();
  begin("echo going; exec sleep 1000", "going");
  raise(SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Commands, EnterRunsAProgramInItsDirectory) {
  left().write("my program", "#!/bin/sh\npwd > where\n");
  left().chmod("my program", 0755);
  start();
  moveTo("my program");
  press(XK_Return);
  expectText("where");
  expectPanels();
  EXPECT_EQ(left().read("where"), left().path() + "\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, EnterOnAnAssociatedFileRunsItsCommand) {
  home().makeDir(".tdx");
  home().write(".tdx/td.ini", "[Associations]\n*.txt: cp ! copied\n");
  left().write("a.txt", "words");
  start();
  moveTo("a.txt");
  press(XK_Return);
  expectText("copied");
  expectPanels();
  EXPECT_EQ(left().read("copied"), "words");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, ACommandRunsForEachTaggedFile) {
  for (const char* name : {"a", "b", "c"}) left().write(name, "");
  start();
  moveTo("a");
  press(XK_Insert);
  expectCursorOn("b");
  press(XK_Down);
  expectCursorOn("c");
  press(XK_Insert);
  run("echo !t >> log");
  EXPECT_EQ(left().read("log"), "a\nc\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, SetReachesTheNextCommand) {
  start();
  run("set TD_WORD=two words");
  run("echo \"$TD_WORD\" > out");
  EXPECT_EQ(left().read("out"), "two words\n");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, MuchOutputEndsWithThePanels) {
  start();
  run("seq 1 20000; echo the very end");
  showOutput();
  expectText("the very end");
  expectText("20000");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, AMissingShellIsTold) {
  setenv("SHELL", "/no/such/shell", 1);
  start();
  run("echo no");
  showOutput();
  expectText("/no/such/shell: No such file or directory");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Commands, WhatAKilledProgramLeftGoesADayLater) {
  const TempDir temporary;
  setenv("TMP", temporary.path().c_str(), 1);
  const pid_t killed = fork();
  if (killed == 0) _exit(0);
  ASSERT_EQ(waitpid(killed, nullptr, 0), killed);
  const std::string name = "TD#" + std::to_string(killed & 0xFFFF) + ".0";
  temporary.makeDir(name);
  temporary.write(name + "/list", "a");
  const timespec old{time(nullptr) - 25 * 3600, 0};
  const timespec times[2] = {old, old};
  ASSERT_EQ(utimensat(AT_FDCWD, temporary.path(name).c_str(), times, 0), 0);
  start();
  EXPECT_FALSE(temporary.exists(name));
  EXPECT_EQ(quit(), 0);
}

class CommandsIn : public Commands, public testing::WithParamInterface<const char*> {};

TEST_P(CommandsIn, AnInteractiveShellIsUsedAndLeft) {
  setenv("SHELL", GetParam(), 1);
  setenv("PS1", "ready$ ", 1);
  start();
  begin(std::string("echo go; exec ") + GetParam() + " -i", "go");
  expectSoon("a prompt", [] { return console->getCursorPos().x > 0; });
  typeMeanwhile("echo sh$((6*7))ell");
  pressMeanwhile(XK_Return);
  expectText("sh42ell");
  typeMeanwhile("exit");
  pressMeanwhile(XK_Return);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

INSTANTIATE_TEST_SUITE_P(Shells, CommandsIn, testing::Values("/bin/bash", "/bin/dash"));

}  // namespace
