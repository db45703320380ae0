#include "support/console_test.h"

#include "console/key_codes.h"

namespace {
using Console = ConsoleTest;

TEST_F(Console, BeginsWithEightyByTwentyFiveBlanksInAttributeSeven) {
  EXPECT_EQ(console->columns(), 80);
  EXPECT_EQ(console->rows(), 25);
  for (const Cell& cell : console->getCells(0, 0, 80, 25)) ASSERT_EQ(cell, (Cell{L' ', 7}));
}

TEST_F(Console, WriteWideStopsAtTheLastColumnAndDoesNotWrap) {
  console->writeWide(77, 3, L"abcdef", 0x1E);
  EXPECT_EQ(rowText(70, 3, 10), "       abc");
  EXPECT_EQ(rowText(4), std::string(80, ' '));
  EXPECT_EQ(attrAt(79, 3), 0x1E);
}

}  // namespace
