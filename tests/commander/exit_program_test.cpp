// How the screen is left behind.

#include "commander/exit_program.h"

#include "commander/main_loop_test.h"
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

}  // namespace
