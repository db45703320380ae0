// How the screen is left behind.

#include "commander/exit_program.h"

#include <cstdlib>

#include "commander/main_loop_test.h"
#include "language/shell_test_support.h"
#include "options/colours.h"

namespace {

class ExitProgram : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.write("file", "");
    openPanels();
  }
};

TEST_F(ExitProgram, TheConsoleComesBackWithTwoClearRowsAndACursor) {
  closePanelWindow(1);
  closePanelWindow(0);
  console->writeWide(0, 5, L"output of before", 7);
  openWindows();
  for (char c : std::string("unfinished")) queueKey(c);
  screenAfterQueued();
  leavePanels();
  const std::string blank(80, ' '), output = "output of before";
  for (int y = 0; y < 25; ++y) {
    EXPECT_EQ(rowText(y), y == 5 ? output + blank.substr(output.size()) : blank) << y;
  }
  for (int y : {23, 24}) {
    for (int x : {0, 79}) EXPECT_EQ(attrAt(x, y), colourOf(Colour::CommandLine)) << x << ", " << y;
  }
  EXPECT_GT(console->cursorSize(), 0);
  EXPECT_EQ(console->getCursorPos().x, 0);
  EXPECT_EQ(console->getCursorPos().y, 23);
  EXPECT_EQ(console->title(), "");
}

TEST_F(ExitProgram, OpenArchivesAreClosedFromTheInside) {
  FakeArchive::Log log;
  using Files = std::vector<std::string>;
  attachInnermost(left().archive, std::make_unique<FakeArchive>(L"/outer", Files{}, &log));
  attachInnermost(left().archive, std::make_unique<FakeArchive>(L"/outer/inner", Files{}, &log));
  leavePanels();
  EXPECT_EQ(left().archive, nullptr);
  EXPECT_EQ(log, (FakeArchive::Log{"close /outer/inner", "close /outer"}));
}

TEST_F(ExitProgram, InsideAnArchiveTheScriptLeadsToTheDirectoryThatHoldsIt) {
  enterArchive();
  const Westring directory = physicalDirectory(left());
  writeExitScript(rightDir.wide("leave.bat"), directory);
  EXPECT_EQ(rightDir.read("leave.bat"), "/:\r\ncd \"" + leftDir.path().substr(2) + "\"\r\n");
}

// What a shell that runs the script takes for the argument of its cd. The script is read as a part
// of another one, where cd only tells what it was given.
std::string directoryOfCd(const TempDir& place, const std::string& script) {
  place.write("run", "cd() { printf '%s' \"$1\" >\"$0.cd\"; }\n. \"" + place.path(script) + "\"\n");
  const std::string command =
      "cd '" + place.path("empty") + "' && sh '" + place.path("run") + "' >/dev/null 2>&1";
  static_cast<void>(system(command.c_str()));
  return place.read("run.cd");
}

TEST(ExitScript, AHostileDirectoryIsNoCommandOfTheShellThatRunsIt) {
  TempDir place;
  place.makeDir("empty");  // where a redirection or a command of a name would leave a file
  std::vector<std::string> names = hostileNames();
  names.insert(names.end(), {"$(>made)", "`>made`", "\";>made;\"", "a\n>made\n", "\\\";>made;\"",
                             "\n\";>made\n\"", "\\\n;>made\n"});
  for (const std::string& name : names) {
    const std::string directory = "/home/" + name + "/below";
    writeExitScript(place.wide("leave"), decodeFileName(directory.c_str()));
    EXPECT_EQ(directoryOfCd(place, "leave"), directory.substr(2) + "\r") << name;
    EXPECT_EQ(place.names(), (std::vector<std::string>{"empty", "leave", "run", "run.cd"})) << name;
    EXPECT_TRUE(std::filesystem::is_empty(place.path("empty"))) << name;
  }
}

}  // namespace
