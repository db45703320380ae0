#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdlib>

#include "console/console.h"
#include "e2e/program_test.h"
#include "options/options.h"

namespace {

constexpr char UsageLines[] =
    "Usage:\ttd [ini_file] [-v|-e file_name] [-l|-r directory]\n"
    "\t-v: invoke internal viewer\n"
    "\t-e: invoke internal editor\n"
    "\t-l: specify left panel's directory\n"
    "\t-r: specify right panel's directory\n";

class StartAndExit : public ProgramTest {};

TEST_F(StartAndExit, EscapeAtTheQuestionStays) {
  start();
  press(XK_F10);
  expectText("Are you sure you want to exit TD/X ?");
  press(XK_Escape);
  expectNoText("Are you sure");
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartAndExit, TheLetterYLeaves) {
  start();
  press(XK_F10);
  expectText("Are you sure you want to exit TD/X ?");
  type("y");
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(StartAndExit, ClosingTheWindowAsksLikeF10) {
  start();
  keys().closeWindow(console->windowId());
  expectText("Are you sure you want to exit TD/X ?");
  press(XK_Return);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(StartAndExit, ClosingTheWindowIsJustAKeyToADialog) {
  start();
  press(XK_F7);
  expectText("Create the directory");
  keys().closeWindow(console->windowId());
  type("made");
  press(XK_Return);
  expectSoon("the directory", [this] { return left().exists("made"); });
  EXPECT_FALSE(shows("Are you sure"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartAndExit, AnUnknownOptionShowsTheUsageAndEndsWithStatusOne) {
  testing::internal::CaptureStdout();
  const int status = runToEnd({"-q"});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), UsageLines);
  EXPECT_EQ(status, 1);
}

TEST_F(StartAndExit, EditWithoutAFileSaysSoAndEndsWithStatusOne) {
  testing::internal::CaptureStdout();
  const int status = runToEnd({"-e"});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "No file specified\n");
  EXPECT_EQ(status, 1);
}

TEST_F(StartAndExit, WithoutADisplayOneLineTellsSoWithStatusOne) {
  unsetenv("DISPLAY");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int status = runToEnd({"-l", left().path()});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "td: cannot open the X display\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(status, 1);
}

TEST_F(StartAndExit, AWrongCommandLineIsToldWithoutADisplayToo) {
  unsetenv("DISPLAY");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int status = runToEnd({"\\q"});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), UsageLines);
  EXPECT_EQ(status, 1);
}

TEST_F(StartAndExit, ADirectoryAsArgumentIsIgnored) {
  start({right().path()});
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartAndExit, TheExitScriptKeepsTheFormOfADriveAndAPath) {
  start({"-x", home().path("leave.bat")});
  EXPECT_EQ(quit(), 0);
  EXPECT_EQ(home().read("leave.bat"), "/:\r\ncd \"" + left().path().substr(2) + "\"\r\n");
}

TEST_F(StartAndExit, ATerminateSignalEndsWithoutAQuestionAlsoInsideADialog) {
  start();
  press(XK_F7);
  expectText("Create the directory");
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(StartAndExit, HoldingAltShowsItsKeyBarWithoutAnotherKey) {
  start();
  keys().keyDown(XK_Alt_L);
  expectText("8Histry");
  keys().keyUp(XK_Alt_L);
  expectText("10Quit");
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartAndExit, LinesAndColumnsGrowAndShrink) {
  start();
  press(XK_F9, {XK_Alt_L});
  expectSoon("50 lines", [] { return console->rows() == 50; });
  press(XK_F9, {XK_Shift_L, XK_Alt_L});
  expectSoon("132 columns", [] { return console->columns() == 132; });
  expectText("10Quit");
  EXPECT_EQ(quit(), 0);
}

TEST_F(StartAndExit, TheWindowTitleShowsTheActivePath) {
  start();
  expectSoon("the path in the title", [this] {
    return keys().windowTitle(console->windowId()).find(left().path()) != std::string::npos;
  });
  EXPECT_EQ(quit(), 0);
}

}  // namespace
