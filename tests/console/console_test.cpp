#include "console/console.h"

#include <climits>

#include "console/key_codes.h"
#include "support/console_test.h"
#include "support/temp_dir.h"
#include "support/x_keys.h"

namespace {
using Console = ConsoleTest;
using Size = std::pair<int, int>;
using Sizes = std::vector<Size>;

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

TEST_F(Console, TextLeftOfTheGridAppearsFromColumnZero) {
  console->writeWide(-2, 0, L"abcdef", 7);
  EXPECT_EQ(rowText(0, 0, 6), "cdef  ");
}

TEST_F(Console, TextMapsControlCharacters) {
  console->writeWide(0, 0, L"\x07\x7F\x85", 7);
  EXPECT_EQ(cellAt(0, 0).ch, 0x2022);
  EXPECT_EQ(cellAt(1, 0).ch, 0x2302);
  EXPECT_EQ(cellAt(2, 0).ch, 0x2302);
}

TEST_F(Console, FillCellMapsTheLowControlsOnly) {
  console->fillCell(0, 0, 2, Cell{0x85, 7});
  EXPECT_EQ(cellAt(0, 0).ch, 0x85);
  console->fillCell(0, 0, 1, Cell{7, 7});
  EXPECT_EQ(cellAt(0, 0).ch, 0x2022);
}

TEST_F(Console, FillCellStopsAtTheRowsEnd) {
  console->fillCell(78, 1, INT_MAX, Cell{L'x', 0x20});
  EXPECT_EQ(rowText(76, 1, 4), "  xx");
  EXPECT_EQ(rowText(0, 2, 2), "  ");
}

TEST_F(Console, WriteCellStringEndsAtAZeroCell) {
  const Cell cells[] = {{L'a', 0x10}, {0x1F, 0x20}, {0, 0x30}, {L'c', 0x40}};
  console->writeCellString(5, 5, cells);
  EXPECT_EQ(cellAt(5, 5), (Cell{L'a', 0x10}));
  EXPECT_EQ(cellAt(6, 5), (Cell{0x25BC, 0x20}));
  EXPECT_EQ(cellAt(7, 5), (Cell{L' ', 7}));
}

TEST_F(Console, WriteBytesDecodesTheCodePage) {
  console->writeBytes(0, 0, "\x84\xB3", 0x1B);  // 850: a with diaeresis, a vertical line
  EXPECT_EQ(cellAt(0, 0).ch, 0xE4);
  EXPECT_EQ(cellAt(1, 0).ch, 0x2502);
  console->setCodePage(1252);
  EXPECT_EQ(console->codePage(), 1252);
  console->writeBytes(0, 1, "\xE4", 0x1B);
  EXPECT_EQ(cellAt(0, 1).ch, 0xE4);
  console->setCodePage(0);
  EXPECT_EQ(console->codePage(), 1252) << "0 changes nothing";
}

TEST_F(Console, PutCellsGivesBackWhatGetCellsTook) {
  console->writeWide(10, 10, L"hello", 0x4F);
  const auto saved = console->getCells(9, 9, 8, 3);
  ASSERT_EQ(saved.size(), 24u);
  console->fillBlank(0, 0, 80, 25, 0x70);
  console->putCells(9, 9, 8, 3, saved.data());
  EXPECT_EQ(rowText(9, 10, 8), " hello  ");
  EXPECT_EQ(attrAt(10, 10), 0x4F);
  EXPECT_EQ(attrAt(8, 10), 0x70);
}

TEST_F(Console, CellsOutsideTheGridReadAsBlanksAndAreNotWritten) {
  console->fillBlank(0, 0, 80, 25, 0x30);
  const auto corner = console->getCells(78, 23, 4, 4);
  ASSERT_EQ(corner.size(), 16u);
  EXPECT_EQ(corner[0].attr, 0x30);
  EXPECT_EQ(corner[2], (Cell{L' ', 7}));
  EXPECT_EQ(corner[15], (Cell{L' ', 7}));
  std::vector<Cell> block(16, Cell{L'#', 0x11});
  console->putCells(-2, -2, 4, 4, block.data());
  EXPECT_EQ(rowText(0, 0, 3), "## ");
  EXPECT_EQ(rowText(0, 2, 3), "   ");
  console->putCells(78, 23, 4, 4, block.data());
  EXPECT_EQ(rowText(76, 24, 4), "  ##");
  console->putCells(1000, 1000, 4, 4, block.data());
  console->putCells(0, 0, -1, 4, block.data());
  EXPECT_TRUE(console->getCells(0, 0, 0, 5).empty());
  EXPECT_TRUE(console->getCells(0, 0, 5, -1).empty());
}

TEST_F(Console, FillAttrColoursUpToTheRowsEnd) {
  console->writeWide(76, 2, L"abcd", 7);
  console->fillAttr(78, 2, 100, 0x1F);
  EXPECT_EQ(rowText(76, 2, 4), "abcd");
  EXPECT_EQ(attrAt(77, 2), 7);
  EXPECT_EQ(attrAt(78, 2), 0x1F);
  EXPECT_EQ(attrAt(0, 3), 7);
  console->fillAttr(0, 4, 0, 0x55);
  console->fillAttr(0, 4, -3, 0x55);
  console->fillAttr(80, 4, 3, 0x55);
  console->fillAttr(0, 25, 3, 0x55);
  EXPECT_EQ(attrAt(0, 4), 7);
}

TEST_F(Console, FillBlankClipsToTheGrid) {
  console->fillCell(0, 0, 80, Cell{L'x', 7});
  console->fillBlank(-5, -5, 10, 10, 0x60);
  EXPECT_EQ(rowText(0, 0, 6), "     x");
  EXPECT_EQ(attrAt(4, 4), 0x60);
  EXPECT_EQ(attrAt(5, 4), 7);
  console->fillBlank(INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0x60);
  console->fillBlank(INT_MIN, 0, 5, 5, 0x60);
}

TEST_F(Console, RawBytesOfFileNamesStayInTheGrid) {
  const wchar_t name[] = {L'a', wchar_t(-0x80 + 0x24), L'b', 0};  // the byte 0xA4
  console->writeWide(0, 0, name, 7);
  EXPECT_EQ(cellAt(1, 0).ch, name[1]);
  EXPECT_EQ(rowText(0, 0, 3),
            "a\xC2\xA4"
            "b");
}

TEST_F(Console, TitleIsValidUtf8WhateverTheNameHolds) {
  const wchar_t name[] = {L'x', wchar_t(-1), wchar_t(0xD800), wchar_t(0x7FFFFFFF), L'y', 0};
  console->setTitle(Westring(name));
  EXPECT_EQ(console->title(), "x\xC3\xBF\xE2\x8C\x82\xE2\x8C\x82y");
  console->setTitle("\x84");
  EXPECT_EQ(console->title(), "\xC3\xA4") << "bytes come through the code page";
}

TEST_F(Console, ControlCharactersShowInTheTitleAsInACell) {
  const Westring name(L"a\nb\x1B[0m\x7F\x85");
  console->setTitle(name);
  console->writeWide(0, 0, name.data(), 7);
  EXPECT_EQ(console->title(), rowText(0, 0, name.length()));
  EXPECT_EQ(console->title(),
            "a\xE2\x97\x99"
            "b\xE2\x86\x90[0m\xE2\x8C\x82\xE2\x8C\x82");
}

TEST_F(Console, ABeepRingsTheServersBell) {
  EXPECT_EQ(XKeys::get().bellsOf([] { console->beep(); }), 1);
  EXPECT_EQ(XKeys::get().bellsOf([] {
    console->beep();
    console->beep();
  }),
            2);
}

TEST_F(Console, AnIconThatIsMissingLeavesTheOneBefore) {
  const TempDir dir;
  const auto iconSize = [] { return XKeys::get().iconSizes(console->windowId()); };
  console->setGeometry(10, 2, Estring(""), 0);
  ASSERT_EQ(console->savePicture(dir.path("small.png").c_str()), 0);
  const Size small{console->picture().width, console->picture().height};
  console->setGeometry(12, 3, Estring(""), 0);
  ASSERT_EQ(console->savePicture(dir.path("large.png").c_str()), 0);
  const Size large{console->picture().width, console->picture().height};

  console->setIcon(dir.path("small.png").c_str());
  EXPECT_EQ(iconSize(), Sizes{small});
  console->setIcon("/nonexistent/icon.png");
  EXPECT_EQ(iconSize(), Sizes{small});
  console->setIconList({"/nonexistent/a.png", dir.path("large.png"), "/nonexistent/b.svg"});
  EXPECT_EQ(iconSize(), Sizes{large}) << "those of a list that are there";
  console->setIconList({"/nonexistent/a.png"});
  EXPECT_EQ(iconSize(), Sizes{});
  console->setIconList({dir.path("small.png"), dir.path("large.png")});
  EXPECT_EQ(iconSize(), (Sizes{small, large}));
  console->setIconList({});
  EXPECT_EQ(iconSize(), Sizes{});
}

TEST_F(Console, GeometryTakesFamilyAndSizeOnlyWhenGiven) {
  console->setGeometry(80, 25, Estring("DejaVu Sans"), 14);
  const int width = console->cellWidth(), height = console->cellHeight();
  console->setGeometry(90, 30, Estring(""), 0);
  EXPECT_EQ(console->columns(), 90);
  EXPECT_EQ(console->rows(), 30);
  EXPECT_EQ(console->cellWidth(), width);
  EXPECT_EQ(console->cellHeight(), height);
  console->setGeometry(90, 30, Estring("DejaVu Sans Mono"), 0);
  EXPECT_NE(console->cellWidth(), width);
}

TEST_F(Console, GeometryClearsTheScreen) {
  console->writeWide(0, 0, L"old", 0x4F);
  console->setGeometry(80, 25, Estring(""), 0);
  EXPECT_EQ(cellAt(0, 0), (Cell{L' ', 7}));
}

TEST_F(Console, GeometryIsClampedToWhatCanBeDrawn) {
  console->setGeometry(100000, 100000, Estring(""), 100000);
  EXPECT_EQ(console->columns(), CConsole::MaxColumns);
  EXPECT_EQ(console->rows(), CConsole::MaxRows);
  EXPECT_LE(console->cellWidth() * console->columns(), 32767);
  EXPECT_LE(console->cellHeight() * console->rows(), 32767);
  EXPECT_GT(console->picture().width, 0) << "the X server still has a pixmap for it";
  console->setGeometry(-5, 0, Estring(""), -7);
  EXPECT_EQ(console->columns(), CConsole::MinColumns);
  EXPECT_EQ(console->rows(), CConsole::MinRows);
  EXPECT_GE(console->cellWidth(), 1);
  EXPECT_GE(console->cellHeight(), 1);
}

TEST_F(Console, CellsSavedBeforeASmallerGeometryAreClippedOnReturn) {
  const auto saved = console->getCells(60, 20, 20, 5);
  console->setGeometry(70, 22, Estring(""), 0);
  console->putCells(60, 20, 20, 5, saved.data());
  EXPECT_EQ(console->columns(), 70);
  EXPECT_EQ(cellAt(69, 21), (Cell{L' ', 7}));
}

TEST_F(Console, TheCursorMayStandOutsideTheGrid) {
  console->setCursorSize(100);
  console->setCursorPos(300, 99);
  console->completePainting();
  EXPECT_EQ(console->getCursorPos().x, 300);
  console->setCursorPos(-1, -1);
  console->completePainting();
  console->writeTty("x");
  EXPECT_EQ(cellAt(0, 0).ch, L'x');
}

TEST_F(Console, AnUnknownFontFallsBack) {
  console->setGeometry(80, 25, Estring("No Such Family"), 12);
  EXPECT_GE(console->cellWidth(), 1);
  console->writeWide(0, 0, L"abc", 7);
  EXPECT_GT(console->picture().width, 0);
}
}  // namespace
