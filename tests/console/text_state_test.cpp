#include "console/text_state.h"

#include "options/colours.h"
#include "support/console_test.h"

namespace {
using TextStateTest = ConsoleTest;

TEST_F(TextStateTest, PlainWritesTakeTheAttributeAndMoveThePosition) {
  setTextAttr(0x1E);
  writeWideAt(3, 4, L"wide");
  EXPECT_EQ(rowText(3, 4, 4), "wide");
  EXPECT_EQ(attrAt(3, 4), 0x1E);
  EXPECT_EQ(textState.textX, 7);
  EXPECT_EQ(textState.textY, 4);
  writeBytesAt(10, 5,
               "\x84"
               "b");
  EXPECT_EQ(rowText(10, 5, 2),
            "\xC3\xA4"
            "b");
  EXPECT_EQ(textState.textX, 12);
  EXPECT_EQ(textState.textY, 5);
}

TEST_F(TextStateTest, ClearToEndOfLineStopsAtTheLastColumn) {
  console->fillCell(0, 1, 160, Cell{L'x', 7});
  console->fillCell(0, 2, 80, Cell{L'x', 7});
  setTextAttr(0x2F);
  setTextPos(70, 1);
  clearToEndOfLine();
  EXPECT_EQ(rowText(68, 1, 12), "xx          ");
  EXPECT_EQ(attrAt(79, 1), 0x2F);
  EXPECT_EQ(rowText(0, 2, 2), "xx");
}

TEST_F(TextStateTest, APositionFarRightOfTheScreenIsHeldWhole) {
  writeWideAt(70, 0, Westring(L'y', 300).data());
  EXPECT_EQ(textState.textX, 370);
  clearToEndOfLine();
  syncCursor();
  EXPECT_EQ(console->getCursorPos().x, 370);
}

TEST_F(TextStateTest, SyncCursorPutsTheCursorAtTheText) {
  setTextPos(11, 12);
  syncCursor();
  EXPECT_EQ(console->getCursorPos().x, 11);
  EXPECT_EQ(console->getCursorPos().y, 12);
}

TEST_F(TextStateTest, TheCursorShapeIsKeptAndSet) {
  setCursorShape(50);
  EXPECT_EQ(textState.cursorShape, 50);
  EXPECT_EQ(console->cursorSize(), 50);
}

TEST_F(TextStateTest, TheGuardRestoresEverything) {
  setTextAttr(0x1B);
  setTextPos(5, 6);
  setCursorShape(14);
  {
    TextStateGuard guard;
    setTextAttr(0x70);
    setTextPos(1, 2);
    setCursorShape(100);
  }
  EXPECT_EQ(textState.textAttr, 0x1B);
  EXPECT_EQ(textState.textX, 5);
  EXPECT_EQ(textState.textY, 6);
  EXPECT_EQ(textState.cursorShape, 14);
  EXPECT_EQ(console->cursorSize(), 14);
}

TEST_F(TextStateTest, PrintLineEndsTheLine) {
  console->setCursorPos(0, 3);
  printLine("one");
  printLine("two");
  EXPECT_EQ(rowText(0, 3, 4), "one ");
  EXPECT_EQ(rowText(0, 4, 4), "two ");
}

using KeyBar = ConsoleTest;
const char* const Labels[KeyBarFields] = {"1Help", "2Menu",  "3View",   "4Edit",  "5Copy",
                                          "6Move", "7MkDir", "8Delete", "9Setup", "10Quit"};

std::string colourLine(const std::vector<Cell>& row) {
  std::string result;
  for (const Cell& cell : row) {
    result += cell.attr == colourOf(Colour::CommandLine) ? 'n'
              : cell.attr == colourOf(Colour::MenuBar)   ? '.'
                                                         : '?';
  }
  return result;
}

TEST_F(KeyBar, StandsOnTheLastRowInTenFields) {
  drawKeyBarLine(Labels);
  EXPECT_EQ(rowText(24),
            "1Help   2Menu   3View   4Edit   5Copy   6Move   7MkDir  8Delete 9Setup  10Quit  ");
  EXPECT_EQ(colourLine(console->getCells(0, 24, 80, 1)),
            "n......nn......nn......nn......nn......nn......nn......nn......nn......nnn......");
}

TEST_F(KeyBar, LooksAsDrawnOnPaper) {
  drawKeyBarLine(Labels);
  expectGolden("key_bar");
}

TEST_F(KeyBar, LeavesNoCellOpenOnAWideScreen) {
  console->setGeometry(132, 25, Estring(""), 0);
  drawKeyBarLine(Labels);
  EXPECT_EQ(rowText(0, 24, 20), "1Help        2Menu  ");
  EXPECT_EQ(rowText(117, 24, 6), "10Quit");
  EXPECT_EQ(attrAt(129, 24), colourOf(Colour::MenuBar));
  EXPECT_EQ(attrAt(130, 24), colourOf(Colour::MenuBar));
  EXPECT_EQ(attrAt(131, 24), colourOf(Colour::MenuBar));
}

TEST_F(KeyBar, AnOverlongLabelIsOverwrittenByTheNextAndCutAtTheEnd) {
  const char* const labels[KeyBarFields] = {
      "1AVeryLongLabel", "2", "3", "4", "5", "6", "7", "8", "9", "10AlsoVeryLong"};
  drawKeyBarLine(labels);
  EXPECT_EQ(rowText(0, 24, 16), "1AVeryLo2gLabel ");
  EXPECT_EQ(rowText(72, 24, 8), "10AlsoVe");
}

TEST_F(KeyBar, SurvivesAScreenTooNarrowForFields) {
  console->setGeometry(7, 3, Estring(""), 0);
  drawKeyBarLine(Labels);
  EXPECT_EQ(console->columns(), 7);
}
}  // namespace
