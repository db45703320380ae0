// Commands that run to their end with their output on the screen.
#include <cstdlib>

#include "foundation/path_info.h"
#include "support/console_test.h"
#include "terminal/run_command.h"

namespace {
class RunOnScreen : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    setenv("SHELL", "/bin/sh", 1);
  }
  void run(const wchar_t* command) { EXPECT_EQ(runCommand(command, currentDir(), 0, &status), 0); }

  int status = -1;
};
}  // namespace

TEST_F(RunOnScreen, ColoursAndCursorMovesAreCarriedOut) {
  console->setCursorPos(0, 5);
  run(L"printf 'a\\033[31mred\\033[0m\\033[3;10Hthere'");
  EXPECT_EQ(rowText(0, 5, 5), "ared ");
  EXPECT_EQ(attrAt(1, 5), 4);
  EXPECT_EQ(rowText(9, 2, 6), "there ");
  EXPECT_EQ(status, 0);
}

TEST_F(RunOnScreen, ACharacterThatComesInPiecesIsOne) {
  run(L"printf '\\342'; sleep 0.02; printf '\\202'; sleep 0.02; printf '\\254.'");
  EXPECT_EQ(rowText(0, 0, 3), "\xE2\x82\xAC. ");
}

TEST_F(RunOnScreen, APieceThatNothingFollowsShowsInTheEnd) {
  run(L"printf 'x\\342\\202'");
  EXPECT_EQ(rowText(0, 0, 4), "x\xC3\xA2\xE2\x8C\x82 ");
}

TEST_F(RunOnScreen, AWholeFloodIsThereInTheEnd) {
  run(L"seq 1 20000; printf end");
  EXPECT_EQ(rowText(0, 24, 4), "end ");
  EXPECT_EQ(rowText(0, 23, 6), "20000 ");
  EXPECT_EQ(rowText(0, 0, 6), "19977 ");
}
