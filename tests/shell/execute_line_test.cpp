// What a typed line does: built-ins, macros, history, and what the shell gets.

#include "shell/execute_line.h"

#include <cerrno>
#include <filesystem>

#include "foundation/path_info.h"
#include "language/environment.h"
#include "language/temporary_names.h"
#include "options/options.h"
#include "panels/commands/selection.h"
#include "shell/built_ins.h"
#include "shell/internal_programs.h"
#include "shell/logged_shell.h"
#include "shell/process_command.h"
#include "shell/shell_test.h"
#include "shell/visual_change.h"
#include "support/x_keys.h"
#include "terminal/run_command.h"

namespace {

using Commands = std::vector<std::string>;

class ExecuteLine : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    leftDir.makeDir("sub");
    leftDir.makeDir("two words");
    for (const char* name : {"a", "b c", "d"}) leftDir.write(name, "x");
    openPanels();
    cursorTo("a");
  }
  LineOutcome execute(const std::string& line, Separate separate = Separate::No) {
    return executeLine(fromUtf8(line.c_str()), separate);
  }
  void enter(const std::string& line) { EXPECT_EQ(execute(line), LineOutcome::Taken); }
  std::string place() { return bytes(left().path); }
  void tag(const char* name) {
    cursorTo(name);
    toggleTag(left(), left().currentIndex(), TagMode::Tag);
  }
  std::string variable(const char* name) {
    const char* value = sessionEnvironment().get(name);
    return value ? value : "(unset)";
  }

  LoggedShell shell;
};

// ---- cd

TEST_F(ExecuteLine, AQuotedNameIsReadAsAShellReadsIt) {
  enter("cd two\\ words");
  EXPECT_EQ(place(), leftDir.path("two words"));
  enter("cd ..");
  enter("cd 'two words'");
  EXPECT_EQ(place(), leftDir.path("two words"));
  enter("cd..");
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_TRUE(shell.take().empty());
}

TEST_F(ExecuteLine, ATildeIsTheHome) {
  sessionEnvironment().set("HOME", leftDir.path().c_str());
  enter("cd /");
  enter("cd ~/sub");
  EXPECT_EQ(place(), leftDir.path("sub"));
  enter("cd ~");
  EXPECT_EQ(place(), leftDir.path());
  sessionEnvironment().set("HOME", nullptr);
}

TEST_F(ExecuteLine, SeveralCommandsThatBeginWithCdAreTheShells) {
  for (const std::string line : {"cd sub; ls", "cd sub && ls", "cd sub | ls"}) {
    enter(line);
    EXPECT_EQ(shell.take(), Commands{line});
  }
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(ExecuteLine, ADirectoryWhoseNameLooksLikeSeveralCommandsIsEntered) {
  leftDir.makeDir("a;b");
  enter("cd a;b");
  EXPECT_EQ(place(), leftDir.path("a;b"));
  enter("cd ..");
  enter("cd a\\;b");
  EXPECT_EQ(place(), leftDir.path("a;b"));
}

TEST_F(ExecuteLine, AQuotedSeparatorMakesNoSecondCommand) {
  dialogScreen("Invalid directory", [this] { enter("cd 'no;where'"); });
  dialogScreen("Invalid directory", [this] { enter("cd no\\&where"); });
  EXPECT_TRUE(shell.take().empty());
}

TEST_F(ExecuteLine, CdAloneIsTheShells) {
  enter("cd");
  EXPECT_EQ(shell.take(), Commands{"cd"});
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_TRUE(left().needsRead);
}

// ---- set

TEST_F(ExecuteLine, SetChangesTheEnvironmentOfLaterCommands) {
  enter("set TD_FOO=bar = baz ");
  EXPECT_EQ(variable("TD_FOO"), "bar = baz");
  enter("set TD_FOO=");
  EXPECT_EQ(variable("TD_FOO"), "(unset)");
  EXPECT_TRUE(shell.take().empty());
  EXPECT_FALSE(left().needsRead);
}

TEST_F(ExecuteLine, ARemovedVariableDoesNotComeBackFromBelow) {
  configuredEnvironment().set("TD_FOO", "configured");
  enter("set TD_FOO=");
  EXPECT_EQ(variable("TD_FOO"), "(unset)");
  enter("set TD_FOO=new");
  EXPECT_EQ(variable("TD_FOO"), "new");
  configuredEnvironment().set("TD_FOO", nullptr);
  sessionEnvironment().set("TD_FOO", nullptr);
}

TEST_F(ExecuteLine, ASetWithoutANameIsTheShells) {
  for (const std::string line : {"set -o a=b", "set 1A=b", "set =b", "set a b=c", "set -x"}) {
    enter(line);
    EXPECT_EQ(shell.take(), Commands{line});
  }
}

// ---- vcd

TEST_F(ExecuteLine, VcdRunsItsHelperWithAPrivateFile) {
  const TempDir temporary;
  setenv("TMP", temporary.path().c_str(), 1);
  enter("vcd some where");
  const Commands run = shell.take();
  ASSERT_EQ(run.size(), 1u);
  EXPECT_TRUE(run[0].starts_with("vcdpgm.exe some where > " + temporary.path() + "/TD\\#"));
  EXPECT_TRUE(run[0].ends_with("/td2cd.\\$\\$\\$"));
  EXPECT_TRUE(temporary.names().empty());
  EXPECT_EQ(place(), leftDir.path());
  enter("vcdx");
  EXPECT_EQ(shell.take(), Commands{"vcdx"});
}

TEST_F(ExecuteLine, VcdLeadsToWhatItsHelperWrote) {
  const TempDir programs;
  programs.write("vcdpgm.exe", "#!/bin/sh\nprintf '/:\\r\\ncd \"%s\"\\r\\n' '" +
                                   leftDir.path("two words").substr(1) + "'\n");
  programs.chmod("vcdpgm.exe", 0755);
  sessionEnvironment().set("SHELL", "/bin/sh");
  const std::string path = variable("PATH");
  sessionEnvironment().set("PATH", (programs.path() + ":" + path).c_str());
  enter("vcd");
  sessionEnvironment().set("PATH", nullptr);
  EXPECT_EQ(place(), leftDir.path("two words"));
}

TEST(VisualChange, ARecordIsADriveAndAQuotedPath) {
  struct Row {
    const wchar_t* drive;
    const wchar_t* command;
    const char* path;
  };
  const Row rows[] = {
      {L"/:", L"cd \"home/me\"", "/home/me"},
      {L"/:", L"cd \"/home/me\"", "/home/me"},
      {L"/:", L"cd \"\"", "/"},
      {L"/", L"cd \"home\"", ""},
      {L"", L"", ""},
      {L"/:", L"cd home", ""},
      {L"/:", L"cd \"home", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(bytes(directoryOfRecord(row.drive, row.command)), row.path) << bytes(row.command);
  }
}

// ---- macros

TEST_F(ExecuteLine, TheEntryUnderTheCursorIsTheFile) {
  cursorTo("b c");
  enter("wc !");
  EXPECT_EQ(shell.take(), Commands{"wc b\\ c"});
}

TEST_F(ExecuteLine, ACommandForEachTaggedFileRunsInTheOrderOfTheList) {
  tag("d");
  tag("a");
  tag("b c");
  enter("wc !t");
  EXPECT_EQ(shell.take(), (Commands{"wc a", "wc b\\ c", "wc d"}));
}

TEST_F(ExecuteLine, WithoutTagsItRunsOnce) {
  cursorTo("d");
  enter("wc !t");
  EXPECT_EQ(shell.take(), Commands{"wc d"});
}

TEST_F(ExecuteLine, AQuestionIsAskedOnceForASeries) {
  tag("a");
  tag("d");
  queueText("word");
  queueKey(Key::Enter);
  enter("grep !i !t");
  EXPECT_EQ(shell.take(), (Commands{"grep word a", "grep word d"}));
}

TEST_F(ExecuteLine, ACancelledQuestionRunsNothing) {
  queueKey(Key::Esc);
  enter("grep !i !");
  EXPECT_TRUE(shell.take().empty());
}

TEST_F(ExecuteLine, WhatComesOutEmptyIsNotRun) {
  enter("!n");
  enter(" !L ");
  EXPECT_TRUE(shell.take().empty());
  EXPECT_FALSE(left().needsRead);
}

TEST_F(ExecuteLine, ASeriesGoesOnAfterAFailedCommandAndStopsWhenItWasEnded) {
  sessionEnvironment().set("SHELL", "/bin/sh");
  tag("a");
  tag("d");
  enter("echo x >> log-!t; exit 3");
  EXPECT_TRUE(leftDir.exists("log-a"));
  EXPECT_TRUE(leftDir.exists("log-d"));
  {
    Beside user([&] {
      EXPECT_TRUE(waitUntil([&] { return leftDir.exists("begun-a"); }));
      XKeys::get().closeWindow(console->windowId());
    });
    enter("echo x > begun-!t; exec sleep 1000");
  }
  EXPECT_FALSE(leftDir.exists("begun-d"));
  drainEvents();
}

TEST_F(ExecuteLine, TheListFileOfACommandIsThereUntilTheNext) {
  const TempDir temporary;
  setenv("TMP", temporary.path().c_str(), 1);
  tag("a");
  enter("tar -T !@");
  EXPECT_EQ(temporary.names().size(), 1u);
  enter("true");
  EXPECT_TRUE(temporary.names().empty());
}

// ---- the line itself

TEST_F(ExecuteLine, TheBackgroundPrefixStandsInFrontOfASeparateCommand) {
  GlobalOptions::Background = L"nohup";
  EXPECT_EQ(execute("make", Separate::Yes), LineOutcome::Taken);
  GlobalOptions::Background = L"";
  EXPECT_EQ(execute("  make all ", Separate::Yes), LineOutcome::Taken);
  EXPECT_EQ(execute("   "), LineOutcome::Taken);
  EXPECT_EQ(shell.take(), (Commands{"nohup make", "make all"}));
  EXPECT_EQ(stored(commandHistory()), (Commands{"nohup make", "make all"}));
}

TEST_F(ExecuteLine, BesideAnInfoPanelTheOtherOneIsMeant) {
  left().type = PanelType::Info;
  enter("echo !p");
  EXPECT_EQ(shell.take(), Commands{"echo " + rightDir.path()});
  EXPECT_EQ(bytes(currentDir()), rightDir.path());
}

TEST_F(ExecuteLine, ALineStaysWhereItsDirectoryCantBeEntered) {
  std::filesystem::remove_all(leftDir.path("sub"));
  leftDir.makeDir("sub");
  goToPath(left(), leftDir.wide("sub"));
  std::filesystem::remove_all(leftDir.path("sub"));
  dialogScreen("No such file or directory",
               [this] { EXPECT_EQ(execute("rm *"), LineOutcome::Kept); });
  EXPECT_TRUE(shell.take().empty());
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(ExecuteLine, ASeriesOfAMenuStaysInItsDirectory) {
  ASSERT_EQ(changeDir(rightDir.wide()), 0);
  sessionEnvironment().set("SHELL", "/bin/sh");
  EXPECT_EQ(runBuiltinOrShell(L"pwd > here", 0, L"", RunFlag::StayInDirectory), 0);
  EXPECT_EQ(rightDir.read("here"), rightDir.path() + "\n");
  EXPECT_EQ(runBuiltinOrShell(L"pwd > here", 0, L""), 0);
  EXPECT_EQ(leftDir.read("here"), leftDir.path() + "\n");
}

TEST_F(ExecuteLine, ViewAndEditAreNoCommandsOfAShell) {
  struct Programs : InternalPrograms {
    ~Programs() override { internalPrograms().disconnect(); }
    void view(const Westring& path) override { calls.push_back("view " + bytes(path)); }
    void edit(const Westring& path) override { calls.push_back("edit " + bytes(path)); }
    Commands calls;
  } programs;
  internalPrograms().connect(programs);
  cursorTo("b c");
  enter("$view !");
  enter("$EDIT /etc/passwd");
  enter("$view 'a\nb'\\ \\'c");
  EXPECT_EQ(programs.calls, (Commands{"view " + leftDir.path("b c"), "edit /etc/passwd",
                                      "view " + leftDir.path("a\nb 'c")}));
  EXPECT_TRUE(shell.take().empty());
  enter("$viewer x");
  EXPECT_EQ(shell.take(), Commands{"$viewer x"});
}

}  // namespace
