#include "commander/key_bar.h"

#include "console/key_codes.h"
#include "options/colours.h"
#include "support/console_test.h"

namespace {

class KeyBar : public ConsoleTest {};

TEST_F(KeyBar, EveryCombinationOfModifiersHasItsRow) {
  struct Row {
    int state;
    const char* text;
  };
  using namespace ShiftState;
  const Row rows[] = {
      {0, "1Help   2Menu   3View   4Edit   5Copy   6RenMov 7Mkdir  8Delete 9PullDn 10Quit  "},
      {Alt, "1Left   2Right  3View.. 4Edit.. 5DStore 6Object 7Find   8Histry 9EGA Ln 10Tree  "},
      {Ctrl, "1Left   2Right  3Name   4Exten  5Time   6Size   7Unsort 8Revers 9       10      "},
      {Ctrl | Alt,
       "1       2       3       4       5       6       7       8       9       10      "},
      {Shift, "1Manual 2MnMenu 3View.. 4Edit.. 5Copy   6Rename 7MkArch 8DelOne 9SavSet 10MenuRe"},
      {Shift | Alt,
       "1Brief  2Full   3Wide   4BriefW 5Unix   6       7FindRC 8DirHst 9ColChg 10      "},
      {Shift | Ctrl,
       "1       2       3       4       5SymLnk 6       7       8       9       10      "},
      {Shift | Ctrl | Alt,
       "1       2       3       4       5       6       7       8       9       10      "}};
  for (const Row& row : rows) {
    drawKeyBar(row.state);
    EXPECT_EQ(rowText(24), row.text) << row.state;
  }
}

TEST_F(KeyBar, NumbersHaveTheCommandLinesColourAndLabelsTheMenuBars) {
  drawKeyBar(0);
  int number = colourOf(Colour::CommandLine), label = colourOf(Colour::MenuBar);
  const int numbers[] = {0, 7, 8, 15, 16, 71, 72, 73};
  for (int x : numbers) EXPECT_EQ(attrAt(x, 24), number) << x;
  const int labels[] = {1, 6, 9, 14, 17, 70, 74, 79};
  for (int x : labels) EXPECT_EQ(attrAt(x, 24), label) << x;
}

}  // namespace
