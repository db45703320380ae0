// Starting where something is missing, and options that the configuration sets.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "console/console.h"
#include "e2e/program_test.h"
#include "foundation/utf8.h"
#include "options/options.h"
#include "support/as_user.h"

namespace {

class StartEdge : public ProgramTest {
 protected:
  void configure(const std::string& text) {
    home().makeDir(".tdx");
    home().write(".tdx/td.ini", text);
  }
  bool promptIs(const std::string& path) {
    return row(0, 23, static_cast<int>(path.size()) + 1) == path + ">";
  }
  // The box with this path, over both panels, the prompt and the key bar.
  void expectBoxOverTheWholeScreen(const std::string& path,
                                   const std::string& text = "Invalid directory") {
    expectText(path);
    EXPECT_TRUE(shows(text)) << screen();
    EXPECT_TRUE(shows("10Quit")) << screen();
    EXPECT_NE(row(0, 23, 80).find('>'), std::string::npos) << screen();
    for (int x : {0, 40}) EXPECT_EQ(row(x, 0, 1), "\u2554") << screen();
  }
  void expectPrompt(const std::string& path) {
    expectSoon("the prompt " + path, [&] { return promptIs(path); });
  }
};

// ---- places

TEST_F(StartEdge, WithoutHomeTheUsersDirectoryIsHome) {
  unsetenv("HOME");
  ASSERT_EQ(chdir(right().path().c_str()), 0);
  start();
  press(XK_Home, {XK_Alt_L});
  expectSoon("another directory", [this] { return !promptIs(left().path()); });
  EXPECT_FALSE(right().exists(".tdx"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, FromAVanishedDirectoryThePanelsStartAtTheNearestAboveIt) {
  right().makeDir("gone");
  right().makeDir("gone/deep");
  ASSERT_EQ(chdir(right().path("gone/deep").c_str()), 0);
  setenv("PWD", right().path("gone/deep").c_str(), 1);
  std::filesystem::remove_all(right().path("gone"));
  startPlain({}, FirstScreen::Box);
  expectBoxOverTheWholeScreen(right().path("gone/deep"));
  press(XK_Return);
  expectNoText("Invalid directory");
  expectPrompt(right().path());
  press(XK_Tab);
  expectPrompt(right().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, FromAVanishedDirectoryThatNobodyKnowsThePanelsStartAtHome) {
  right().makeDir("gone");
  ASSERT_EQ(chdir(right().path("gone").c_str()), 0);
  ASSERT_EQ(rmdir(right().path("gone").c_str()), 0);
  for (const char* useless : {"", "gone"}) setenv("PWD", useless, 1);
  startPlain({}, FirstScreen::Box);
  expectBoxOverTheWholeScreen(" . ");
  press(XK_Return);
  expectPrompt(home().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AMissingStartDirectoryIsToldOnceAndTheNearestAboveItTaken) {
  startPlain({"-l", left().path("no/such"), "-r", left().path("no/such")}, FirstScreen::Box);
  expectBoxOverTheWholeScreen(left().path("no/such"));
  press(XK_Return);
  expectNoText("Invalid directory");
  expectPrompt(left().path());
  press(XK_Tab);
  expectPrompt(left().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, EachMissingStartDirectoryIsTold) {
  ASSERT_EQ(chdir(right().path().c_str()), 0);
  startPlain({"-l", left().path("one"), "-r", "two"}, FirstScreen::Box);
  expectBoxOverTheWholeScreen(left().path("one"));
  press(XK_Return);
  expectBoxOverTheWholeScreen(right().path("two"));
  press(XK_Return);
  expectNoText("Invalid directory");
  expectPrompt(left().path());
  press(XK_Tab);
  expectPrompt(right().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AVanishedWorkingDirectoryIsNoMatterWhereBothPanelsGoElsewhere) {
  home().makeDir("gone");
  ASSERT_EQ(chdir(home().path("gone").c_str()), 0);
  ASSERT_EQ(rmdir(home().path("gone").c_str()), 0);
  start();
  expectPrompt(left().path());
  EXPECT_FALSE(shows("Invalid directory"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, StartDirectoriesAreMeantAsTheyAreWritten) {
  left().makeDir("...");
  left().makeDir("$HOME");
  ASSERT_EQ(chdir(left().path().c_str()), 0);
  startPlain({"-l", "...", "-r", left().path("$HOME")});
  expectPrompt(left().path("..."));
  press(XK_Tab);
  expectPrompt(left().path("$HOME"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AnUnreadableStartDirectoryLeadsUpWithOneBox) {
  left().openToAll();
  right().openToAll();
  home().openToAll();
  left().makeDir("closed");
  left().chmod("closed", 0111);
  const int status = runAsUser([this] {
    EXPECT_EQ(chdir(left().path("closed").c_str()), 0);
    startPlain({}, FirstScreen::Box);
    expectBoxOverTheWholeScreen(left().path("closed"), "Permission denied");
    press(XK_Return);
    expectNoText("Permission denied");
    expectPrompt(left().path());
    press(XK_Tab);
    expectPrompt(left().path());
    EXPECT_EQ(quit(), 0);
  });
  left().chmod("closed", 0755);
  EXPECT_EQ(status, 0);
}

TEST_F(StartEdge, RelativeStartDirectoriesBelongToTheWorkingDirectory) {
  left().makeDir("one");
  left().makeDir("two");
  ASSERT_EQ(chdir(left().path().c_str()), 0);
  startPlain({"-l", "one", "-R", "./two/"});
  expectPrompt(left().path("one"));
  press(XK_Tab);
  expectPrompt(left().path("two"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AMissingValueOfLLeavesTheWorkingDirectory) {
  ASSERT_EQ(chdir(left().path().c_str()), 0);
  startPlain({"-r", right().path(), "-l"});
  expectPrompt(left().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, ARelativeExitScriptStandsWhereTheProgramWasStarted) {
  ASSERT_EQ(chdir(home().path().c_str()), 0);
  start({"-x", "leave.bat"});
  EXPECT_EQ(quit(), 0);
  EXPECT_TRUE(home().exists("leave.bat"));
  EXPECT_FALSE(left().exists("leave.bat"));
}

TEST_F(StartEdge, TheExitScriptOfTheRootHasAnEmptyPath) {
  startPlain({"-l", "/", "-x", home().path("leave.bat")});
  EXPECT_EQ(quit(), 0);
  EXPECT_EQ(home().read("leave.bat"), "/:\r\ncd \"\"\r\n");
}

TEST_F(StartEdge, AnExitScriptThatCannotBeWrittenIsLeftOutSilently) {
  start({"-x", "/proc/no/such/place"});
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AnExitScriptNeverWritesThroughALink) {
  home().write("precious", "text");
  home().link("precious", "leave.bat");
  start({"-x", home().path("leave.bat")});
  EXPECT_EQ(quit(), 0);
  EXPECT_EQ(home().read("precious"), "text");
}

// ---- a file alone

TEST_F(StartEdge, AFileIsViewedAlone) {
  home().write("story", "Once upon a time\n");
  startAlone({"-v", home().path("story")}, "Once upon a time");
  EXPECT_EQ(row(0).substr(0, 6), "View: ");
  EXPECT_EQ(row(24).substr(0, 6), "1Help ");
  press(XK_Escape);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(StartEdge, WithBothTheViewerComesFirstAndTheEditorAfterIt) {
  home().write("seen", "a text to see\n");
  home().write("edited", "a text to edit\n");
  startAlone({"-e", home().path("edited"), "-v", home().path("seen")}, "a text to see");
  press(XK_Escape);
  expectText("a text to edit");
  expectAwaited();
  EXPECT_EQ(row(0).substr(0, 6), "Edit: ");
  type("not ");
  press(XK_F2);
  expectSoon("the saved text", [&] { return home().read("edited") == "not a text to edit\n"; });
  press(XK_F10);
  EXPECT_EQ(waitForEnd(), 0);
}

// ---- options

TEST_F(StartEdge, AConfiguredWidthOf60IsWidenedTo80) {
  configure("Columns=60\n");
  start();
  EXPECT_EQ(console->columns(), 80);
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AConfiguredSizeIsTheFirstScreens) {
  configure("Columns=132\nLines=50\n");
  start();
  EXPECT_EQ(console->columns(), 132);
  EXPECT_EQ(console->rows(), 50);
  EXPECT_EQ(row(49).substr(0, 5), "1Help");
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, NumbersOutOfRangeGoBackToTheirDefaults) {
  configure("MouSpeed=1001\nTabWidth=9\nLines=251\n");
  start();
  EXPECT_EQ(GlobalOptions::MouSpeed, 8);
  EXPECT_EQ(GlobalOptions::TabWidth, 8);
  EXPECT_EQ(console->rows(), 25);
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, NumbersAtTheEndsOfTheirRangeStay) {
  configure("MouSpeed=1000\nTabWidth=1\n");
  start();
  EXPECT_EQ(GlobalOptions::MouSpeed, 1000);
  EXPECT_EQ(GlobalOptions::TabWidth, 1);
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, PanelsStartAsConfigured) {
  left().write("b.one", "");
  left().write("a.two", "");
  configure(
      "LeftSort=rname\nLeftStyle=brief\nLeftFilter=*.one\nRightType=info\nStartupSide=R\n"
      "Clock=on\n");
  start();
  expectText("b.one");
  EXPECT_FALSE(shows("a.two"));
  expectText("INFO");
  expectSoon("the clock", [this] { return row(76, 0, 1) == ":"; });
  expectPrompt(left().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, PanelsThatWereOffStayOff) {
  configure("LeftShowing=off\nRight=" + right().path() + "\n");
  startPlain({});
  expectPrompt(right().path());
  EXPECT_EQ(row(0, 5, 40), std::string(40, ' '));
  press(XK_F1, {XK_Control_L});
  expectSoon("the left panel", [this] { return row(0, 5, 40) != std::string(40, ' '); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, TheDirectoryOnTheCommandLineGoesBeforeTheConfiguredOne) {
  configure("Left=" + right().path() + "\n");
  start();
  expectPrompt(left().path());
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartEdge, AutoSaveSavesAtTheEndWhileThePanelsStillStand) {
  configure("AutoSave=on\nLeftShowing=on\n");
  start();
  EXPECT_EQ(quit(), 0);
  const std::string saved = home().read(".tdx/td.ini");
  EXPECT_NE(saved.find("LeftShowing=on\r\n"), std::string::npos) << saved;
}

}  // namespace
