#include <climits>

#include "support/console_test.h"
#include "support/manual_clock.h"

namespace {
class Scroll : public ConsoleTest {
 protected:
  void fillRows() {
    BatchScope batch;
    for (int y = 0; y < console->rows(); ++y) {
      console->fillCell(0, y, console->columns(), Cell{static_cast<wchar_t>('a' + y), 7});
    }
  }
  std::string column(int x) const {
    std::string result;
    for (int y = 0; y < console->rows(); ++y) result += rowText(x, y, 1);
    return result;
  }
};

TEST_F(Scroll, UpMovesTheRectangleAndOpensRowsBelow) {
  fillRows();
  console->scrollUp(10, 2, 5, 4, 1, 0x1E);
  EXPECT_EQ(column(10), "abdef ghijklmnopqrstuvwxy");
  EXPECT_EQ(column(14), column(10));
  EXPECT_EQ(column(9), "abcdefghijklmnopqrstuvwxy");
  EXPECT_EQ(column(15), column(9));
  EXPECT_EQ(attrAt(10, 5), 0x1E);
}

TEST_F(Scroll, DownMovesTheRectangleAndOpensRowsAbove) {
  fillRows();
  console->scrollDown(0, 1, 80, 5, 2, 0x2F);
  EXPECT_EQ(column(0), "a  bcdghijklmnopqrstuvwxy");
  EXPECT_EQ(attrAt(79, 2), 0x2F);
}

TEST_F(Scroll, ByMoreRowsThanThereAreBlanksTheRectangle) {
  fillRows();
  console->scrollUp(0, 0, 80, 3, 99, 0x10);
  console->scrollDown(0, 22, 80, 3, 3, 0x10);
  EXPECT_EQ(column(5), "   defghijklmnopqrstuv   ");
}

TEST_F(Scroll, NothingMovesForNoneOrANegativeNumber) {
  fillRows();
  console->scrollUp(0, 0, 80, 25, 0, 7);
  console->scrollUp(0, 0, 80, 25, -3, 7);
  console->scrollDown(0, 0, 80, 25, INT_MIN, 7);
  EXPECT_EQ(column(0), "abcdefghijklmnopqrstuvwxy");
}

TEST_F(Scroll, TheRectangleIsClippedToTheGrid) {
  fillRows();
  console->scrollUp(-10, 23, 1000, 1000, 1, 7);
  EXPECT_EQ(column(0), "abcdefghijklmnopqrstuvwy ");
  console->scrollDown(0, -5, 80, 7, 1, 7);
  EXPECT_EQ(column(0), " acdefghijklmnopqrstuvwy ");
  console->scrollUp(0, 0, 80, INT_MAX, INT_MAX, 7);
  EXPECT_EQ(column(40), std::string(25, ' '));
}

constexpr int CursorX = 12, CursorY = 8;

// Everything but the cell that blinks by itself.
std::vector<uint32_t> stillPixels() {
  Picture picture = console->picture();
  const int w = console->cellWidth(), h = console->cellHeight();
  for (int y = CursorY * h; y < (CursorY + 1) * h; ++y) {
    for (int x = CursorX * w; x < (CursorX + 1) * w; ++x) {
      picture.rgb[static_cast<size_t>(y * picture.width + x)] = 0;
    }
  }
  return picture.rgb;
}

// The picture after moving pixels must be that of drawing all anew.
void expectSameAsRepaint() {
  const std::vector<uint32_t> moved = stillPixels();
  const GridSize size = console->getSize();
  const auto cells = console->getCells(0, 0, size.columns, size.rows);
  console->putCells(0, 0, size.columns, size.rows, cells.data());
  EXPECT_EQ(moved, stillPixels());
}

TEST_F(Scroll, MovedPixelsAreThoseOfARepaint) {
  static ManualClock clock;
  const FrameClock frames(clock);
  for (const int size : {12, 9, 14}) {
    console->setGeometry(80, 25, Estring(""), size);
    fillRows();
    console->setCursorSize(100);
    console->setCursorPos(CursorX, CursorY);
    console->completePainting();
    // A frame after the last paint, a lone scroll moves pixels.
    const auto lone = [](auto scroll) {
      const unsigned long before = console->paintCount();
      clock.moveOn(20);
      scroll();
      EXPECT_EQ(console->paintCount(), before + 1);
    };
    lone([] { console->scrollUp(10, 5, 20, 10, 3, 0x1E); });
    expectSameAsRepaint();
    lone([] { console->scrollDown(5, 2, 40, 20, 1, 0x2E); });
    expectSameAsRepaint();
  }
}

TEST_F(Scroll, InsideABatchPixelsFollowAtItsEnd) {
  fillRows();
  {
    BatchScope batch;
    console->writeWide(0, 0, L"new", 0x1E);
    console->scrollUp(0, 0, 80, 25, 1, 7);
    console->writeWide(0, 24, L"last", 0x1E);
  }
  EXPECT_EQ(rowText(0, 24, 5), "last ");
  expectSameAsRepaint();
}

using Teletype = Scroll;

TEST_F(Teletype, WritesInTheDefaultAttribute) {
  console->setDefaultAttr(0x1A);
  console->setCursorPos(3, 2);
  console->writeTty("hi");
  EXPECT_EQ(rowText(2, 2, 5), " hi  ");
  EXPECT_EQ(attrAt(3, 2), 0x1A);
  EXPECT_EQ(attrAt(5, 2), 7);
  EXPECT_EQ(console->getCursorPos().x, 5);
  EXPECT_EQ(console->getCursorPos().y, 2);
}

TEST_F(Teletype, TabReturnAndBackspaceMoveTheCursor) {
  console->writeTty("a\tb\rX\n12\b3\b\b\b\bY\n\t\tz");
  EXPECT_EQ(rowText(0, 0, 10), "X       b ");
  EXPECT_EQ(rowText(0, 1, 4), "Y3  ");
  EXPECT_EQ(rowText(14, 2, 4), "  z ");
}

TEST_F(Teletype, NewLineGoesToColumnZeroOfTheNextRow) {
  console->setCursorPos(7, 0);
  console->writeTty("ab\ncd");
  EXPECT_EQ(rowText(0, 0, 10), "       ab ");
  EXPECT_EQ(rowText(0, 1, 4), "cd  ");
}

TEST_F(Teletype, OutputGoesOnInTheNextRowAtTheLastColumn) {
  console->setCursorPos(78, 4);
  console->writeTty("abc");
  EXPECT_EQ(rowText(76, 4, 4), "  ab");
  EXPECT_EQ(rowText(0, 5, 3), "c  ");
  console->setCursorPos(78, 6);
  console->writeTty("\tx");
  EXPECT_EQ(rowText(0, 7, 3), "x  ");
}

TEST_F(Teletype, AtTheBottomRightCornerTheScreenScrollsByOneRow) {
  fillRows();
  console->setDefaultAttr(0x1B);
  console->setCursorPos(79, 24);
  console->writeTty("Z");
  EXPECT_EQ(column(0), "bcdefghijklmnopqrstuvwxy ");
  EXPECT_EQ(rowText(78, 23, 2), "yZ");
  EXPECT_EQ(attrAt(0, 24), 0x1B);
  EXPECT_EQ(console->getCursorPos().x, 0);
  EXPECT_EQ(console->getCursorPos().y, 24);
}

TEST_F(Teletype, DropsWhatIsNotPrintable) {
  console->writeTty(
      "a\x01\x1B\x7F\xC2\x85"
      "b\xC3\xA4\xE2\x94\x82");
  EXPECT_EQ(rowText(0, 0, 5), "ab\xC3\xA4\xE2\x94\x82 ");
}

TEST_F(Teletype, InvalidBytesShowAsLatin1) {
  console->writeTty(
      "a\xE4"
      "b");
  EXPECT_EQ(rowText(0, 0, 3),
            "a\xC3\xA4"
            "b");
}

TEST_F(Teletype, KeepsTheCursorSize) {
  console->setCursorSize(14);
  console->writeTty("text");
  EXPECT_EQ(console->cursorSize(), 14);
}

TEST_F(Teletype, TenThousandLinesLeaveTheLastOnesOnTheScreen) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += "line " + std::to_string(i) + "\r\n";
  const unsigned long before = console->paintCount();
  console->writeTty(text.c_str());
  EXPECT_EQ(rowText(0, 23, 10), "line 9999 ");
  EXPECT_EQ(rowText(0, 0, 10), "line 9976 ");
  EXPECT_LE(console->paintCount() - before, 2u);
  expectSameAsRepaint();
}
}  // namespace
