#include <optional>
#include <random>

#include "support/console_test.h"
#include "support/manual_clock.h"
#include "support/temp_dir.h"
#include "support/x_keys.h"

namespace {
class Painting : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    console->picture();
  }
  // Paints that `action` costs, with all that it left pending.
  template <class Action>
  unsigned long paintsOf(Action action) {
    console->completePainting();
    const unsigned long before = console->paintCount();
    action();
    console->completePainting();
    return console->paintCount() - before;
  }
};

TEST_F(Painting, CellsThatAreThereAlreadyCostNoPaint) {
  console->writeWide(5, 5, L"same", 0x1E);
  EXPECT_EQ(paintsOf([] { console->writeWide(5, 5, L"same", 0x1E); }), 0u);
  EXPECT_EQ(paintsOf([] { console->fillAttr(5, 5, 4, 0x1E); }), 0u);
  EXPECT_EQ(paintsOf([] { console->fillCell(40, 5, 10, Cell{L' ', 7}); }), 0u);
  const Cell cells[] = {{L's', 0x1E}, {0, 0}};
  EXPECT_EQ(paintsOf([&] { console->writeCellString(5, 5, cells); }), 0u);
  EXPECT_EQ(paintsOf([] { console->writeWide(5, 5, L"some", 0x1E); }), 1u);
}

TEST_F(Painting, AnEndWithoutABeginningChangesNothing) {
  console->endBatch();
  EXPECT_EQ(paintsOf([] { console->writeWide(0, 0, L"a", 7); }), 1u);
  console->endBatch();
  {
    BatchScope batch;
    const unsigned long before = console->paintCount();
    console->writeWide(0, 0, L"b", 7);
    EXPECT_EQ(console->paintCount(), before) << "the batch still holds painting back";
  }
}

TEST_F(Painting, NestedBatchesPaintOnceAtTheOutermostEnd) {
  EXPECT_EQ(paintsOf([] {
              BatchScope outer;
              console->writeWide(0, 0, L"one", 0x1E);
              {
                BatchScope inner;
                console->writeWide(0, 24, L"two", 0x1E);
              }
              console->writeWide(70, 12, L"three", 0x1E);
            }),
            1u);
  EXPECT_EQ(paintsOf([] { BatchScope empty; }), 0u);
}

ManualClock& frameClock() {
  static ManualClock clock;
  return clock;
}
constexpr uint32_t FrameMs = 16;

TEST_F(Painting, ALoneChangeIsPaintedAtOnce) {
  const FrameClock frames(frameClock());
  const unsigned long before = console->paintCount();
  console->writeWide(0, 0, L"now", 0x1E);
  EXPECT_EQ(console->paintCount(), before + 1);
}

TEST_F(Painting, AFloodIsPaintedOnceAFrame) {
  const FrameClock frames(frameClock());
  wchar_t text[] = L"0000";
  const auto flood = [&text] {
    for (int i = 0; i < 500; ++i) {
      text[3] = static_cast<wchar_t>(L'0' + i % 10);
      console->writeWide(0, i % 25, text, static_cast<unsigned char>(i % 128));
    }
  };
  for (int frame = 0; frame < 20; ++frame) {
    const unsigned long before = console->paintCount();
    flood();
    frameClock().moveOn(FrameMs - 1);
    flood();
    EXPECT_EQ(console->paintCount(), before + 1);
    console->completePainting();
    frameClock().moveOn(FrameMs);
  }
}

TEST_F(Painting, WhatAFloodLeftIsPaintedWithoutBeingAskedFor) {
  console->writeWide(0, 0, L"first", 0x1E);
  console->writeWide(0, 1, L"second", 0x1E);
  console->writeWide(0, 2, L"third", 0x1E);
  const unsigned long before = console->paintCount();
  EXPECT_TRUE(waitUntil([&] { return console->paintCount() > before; }));
}

TEST_F(Painting, ThePictureIsCompleteBeforeAWaitForAKey) {
  const FrameClock frames(frameClock());
  const unsigned long before = console->paintCount();
  console->writeWide(0, 0, L"first", 0x1E);
  console->writeWide(0, 1, L"second", 0x1E);
  EXPECT_EQ(console->paintCount(), before + 1);
  getKey(nullptr, 1);
  EXPECT_EQ(console->paintCount(), before + 2);
  console->completePainting();
  EXPECT_EQ(console->paintCount(), before + 2);
}

TEST_F(Painting, EachColourHasItsExactPixels) {
  const uint32_t palette[16] = {0x000000, 0x00007F, 0x007F00, 0x007F7F, 0x7F0000, 0x7F007F,
                                0x7F7F00, 0x7F7F7F, 0x404040, 0x0000FF, 0x00FF00, 0x00FFFF,
                                0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
  for (int i = 0; i < 16; ++i) {
    console->fillBlank(i, 0, 1, 1, static_cast<unsigned char>(i << 4));
    console->fillCell(i, 1, 1, Cell{0x2588, static_cast<unsigned char>(i)});
  }
  const Picture picture = console->picture();
  for (int i = 0; i < 16; ++i) {
    for (const uint32_t pixel : cellPixels(picture, i, 0)) ASSERT_EQ(pixel, palette[i]) << i;
    for (const uint32_t pixel : cellPixels(picture, i, 1)) ASSERT_EQ(pixel, palette[i]) << i;
  }
}

TEST_F(Painting, BlankScreenIsBlack) {
  const Picture picture = console->picture();
  EXPECT_EQ(picture.width, 80 * console->cellWidth());
  EXPECT_EQ(picture.height, 25 * console->cellHeight());
  for (const uint32_t pixel : picture.rgb) ASSERT_EQ(pixel, 0u);
}

TEST_F(Painting, TheDefaultFontHasCellsOfTenByTwentyOnABareServer) {
  EXPECT_EQ(console->cellWidth(), 10);
  EXPECT_EQ(console->cellHeight(), 20);
}

// A screen with everything that is hard to draw: frames, blocks, wide and combining characters,
// scripts that run from right to left, what no font has, raw bytes, ligature candidates.
std::vector<Cell> hardScreen(unsigned seed, int count) {
  const wchar_t hard[] = {0x2550,
                          0x2551,
                          0x2554,
                          0x255D,
                          0x2502,
                          0x2500,
                          0x2588,
                          0x2591,
                          0x2580,
                          0x4E2D,
                          0x1F600,
                          0x0301,
                          0x20DD,
                          0x05D0,
                          0x0627,
                          0x0644,
                          0x0E33,
                          0xFB01,
                          0x1D11E,
                          0xE000,
                          0xFFFF,
                          0x200B,
                          0x202E,
                          0x2028,
                          L'W',
                          L'M',
                          L'@',
                          L'f',
                          L'i',
                          L'j',
                          L'_',
                          L'g',
                          0x00C5,
                          0x1EA4,
                          wchar_t(-0x40),
                          0x85,
                          1,
                          0,
                          wchar_t(0x7FFFFFFF),
                          wchar_t(0xD800),
                          L' ',
                          L'=',
                          L'>',
                          L'-',
                          0x263A};
  std::mt19937 random(seed);
  std::vector<Cell> cells;
  for (int i = 0; i < count; ++i) {
    cells.push_back({hard[random() % std::size(hard)], static_cast<unsigned char>(random())});
  }
  return cells;
}

struct FontRow {
  const char* family;
  int size;
};

class PaintingInFont : public Painting, public testing::WithParamInterface<FontRow> {
 protected:
  void SetUp() override {
    Painting::SetUp();
    console->setGeometry(40, 12, Estring(GetParam().family), GetParam().size);
  }
};

TEST_P(PaintingInFont, TheSameCellsGiveTheSamePixelsInWhateverOrderTheyCame) {
  const int columns = 40, rows = 12, count = columns * rows;
  const auto cells = hardScreen(7, count);
  console->putCells(0, 0, columns, rows, cells.data());
  const Picture whole = console->picture();

  const auto other = hardScreen(99, count);
  console->putCells(0, 0, columns, rows, other.data());
  console->completePainting();
  std::vector<int> order;
  for (int i = 0; i < count; ++i) order.push_back(i);
  std::shuffle(order.begin(), order.end(), std::mt19937(3));
  for (const int i : order) {
    console->putCells(i % columns, i / columns, 1, 1, &cells[static_cast<size_t>(i)]);
    console->completePainting();
  }
  const Picture single = console->picture();
  for (int i = 0; i < count; ++i) {
    const int x = i % columns, y = i / columns;
    ASSERT_EQ(cellPixels(whole, x, y), cellPixels(single, x, y))
        << "cell " << x << "," << y << " character " << std::hex << int(cells[size_t(i)].ch);
  }
}

TEST_P(PaintingInFont, ACellsPixelsDependOnNothingButTheCell) {
  const auto cells = hardScreen(21, 40 * 12);
  for (size_t i = 0; i < cells.size(); ++i) {
    // Each in a row of its own kind: alone between blanks, then crowded.
    console->putCells(static_cast<int>(i % 40), static_cast<int>(i / 40), 1, 1, &cells[i]);
  }
  const Picture crowded = console->picture();
  for (size_t i = 0; i < cells.size(); i += 7) {
    const int x = static_cast<int>(i % 40), y = static_cast<int>(i / 40);
    console->fillBlank(0, 0, 40, 12, 0x50);
    console->putCells(x, y, 1, 1, &cells[i]);
    const Picture alone = console->picture();
    ASSERT_EQ(cellPixels(crowded, x, y), cellPixels(alone, x, y))
        << "character " << std::hex << int(cells[i].ch);
    console->putCells(0, 0, 1, 1, &cells[i]);
    ASSERT_EQ(cellPixels(console->picture(), 0, 0), cellPixels(crowded, x, y))
        << "the place doesn't matter";
  }
}

TEST_P(PaintingInFont, LettersStandInTheirOwnCells) {
  console->writeWide(0, 0, std::wstring(39, L'H').append(L"|").c_str(), 0x0F);
  const Picture picture = console->picture();
  const auto first = cellPixels(picture, 0, 0);
  for (int x = 1; x < 39; ++x) ASSERT_EQ(cellPixels(picture, x, 0), first) << x;
  bool ink = false;
  for (const uint32_t pixel : cellPixels(picture, 39, 0)) ink |= pixel != 0;
  EXPECT_TRUE(ink) << "the last character hasn't drifted out of its cell";
}

TEST_P(PaintingInFont, WideAndCombiningCharactersAreSeenAndShiftNothing) {
  const wchar_t text[] = {0x4E2D, L'a', 0x1F600, L'a', 0x0301, L'a', 0x0627, L'a', 0};
  console->writeWide(0, 0, text, 0x0F);
  console->writeWide(0, 1, L" a a a a", 0x0F);
  const Picture picture = console->picture();
  for (int x = 1; x < 8; x += 2) {
    EXPECT_EQ(cellPixels(picture, x, 0), cellPixels(picture, x, 1)) << x;
    bool ink = false;
    for (const uint32_t pixel : cellPixels(picture, x - 1, 0)) ink |= pixel != 0;
    EXPECT_TRUE(ink) << "cell " << x - 1 << " shows nothing";
  }
}

std::string fontName(const testing::TestParamInfo<FontRow>& info) {
  std::string name = info.param.family + std::to_string(info.param.size);
  std::erase(name, ' ');
  return name;
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, PaintingInFont,
    testing::Values(FontRow{"DejaVu Sans Mono", 12}, FontRow{"DejaVu Sans Mono", 8},
                    FontRow{"DejaVu Sans Mono", 9}, FontRow{"DejaVu Sans Mono", 14},
                    FontRow{"DejaVu Sans Mono", 4}, FontRow{"DejaVu Sans Mono", 31},
                    FontRow{"DejaVu Sans", 11}),
    fontName);

TEST_F(Painting, FramesCloseWithoutGapsAtEverySize) {
  for (int size = 4; size <= 30; ++size) {
    console->setGeometry(4, 4, Estring("DejaVu Sans Mono"), size);
    console->fillCell(0, 0, 4, Cell{0x2588, 0x0F});
    console->fillCell(0, 1, 1, Cell{0x2588, 0x0F});
    const Picture picture = console->picture();
    for (int x = 0; x < 4; ++x) {
      for (const uint32_t pixel : cellPixels(picture, x, 0)) ASSERT_EQ(pixel, 0xFFFFFFu) << size;
    }
  }
}

TEST_F(Painting, WideTextOnOneRowLeavesNoMarksOnItsNeighbours) {
  console->fillBlank(0, 0, 80, 25, 0x1F);
  console->fillCell(0, 1, 80, Cell{0x2588, 0x1E});
  console->fillCell(0, 1, 80, Cell{0x2551, 0x1E});
  const Picture picture = console->picture();
  for (const int y : {0, 2}) {
    for (int x = 0; x < 80; ++x) {
      for (const uint32_t pixel : cellPixels(picture, x, y)) ASSERT_EQ(pixel, 0x00007Fu);
    }
  }
}

TEST_F(Painting, SavesThePictureAsPng) {
  TempDir directory;
  console->writeWide(0, 0, L"saved", 0x1E);
  EXPECT_EQ(console->savePicture(directory.path("screen.png").c_str()), 0);
  EXPECT_EQ(directory.read("screen.png").substr(1, 3), "PNG");
  EXPECT_EQ(console->savePicture(directory.path("none/screen.png").c_str()), ENOENT);
}

// On a server of its own, where no other window lies above.
using PaintingOnScreen = RealKeysTest;

TEST_F(PaintingOnScreen, TheWindowShowsThePicture) {
  console->writeWide(3, 3, L"on the screen", 0x4F);
  console->writeWide(60, 24, L"\x2554\x2550\x2557", 0x1B);
  const Picture picture = console->picture();
  int width = 0, height = 0;
  EXPECT_TRUE(waitUntil([&] {
    return XKeys::get().windowPixels(console->windowId(), width, height) == picture.rgb;
  }));
  EXPECT_EQ(width, picture.width);
  EXPECT_EQ(height, picture.height);
}

TEST_F(PaintingOnScreen, TheWindowFollowsTheGeometry) {
  console->setGeometry(100, 30, Estring(""), 9);
  int width = 0, height = 0;
  EXPECT_TRUE(waitUntil([&] {
    XKeys::get().windowPixels(console->windowId(), width, height);
    return width == 100 * console->cellWidth() && height == 30 * console->cellHeight();
  })) << width
      << "x" << height;
}

class Cursor : public Painting {
 protected:
  // Rows of the cell, from its bottom, that are all in `colour`.
  int barHeight(int x, int y, uint32_t colour) {
    const auto pixels = cellPixels(console->picture(), x, y);
    const int w = console->cellWidth(), h = console->cellHeight();
    int rows = 0;
    for (int row = h - 1; row >= 0; --row) {
      for (int column = 0; column < w; ++column) {
        if (pixels[static_cast<size_t>(row * w + column)] != colour) return rows;
      }
      ++rows;
    }
    return rows;
  }
};

TEST_F(Cursor, OfHundredPercentFillsTheCell) {
  console->setCursorSize(100);
  console->setCursorPos(4, 4);
  EXPECT_EQ(barHeight(4, 4, 0xFFFFFF), console->cellHeight());
  EXPECT_EQ(barHeight(3, 4, 0xFFFFFF), 0);
  EXPECT_EQ(barHeight(5, 4, 0xFFFFFF), 0);
}

TEST_F(Cursor, OfFourteenPercentIsTwoPixelsOnSeventeen) {
  int size = 4;
  do {
    console->setGeometry(80, 25, Estring(""), size);
  } while (console->cellHeight() != 17 && ++size < 40);
  ASSERT_EQ(console->cellHeight(), 17);
  console->setCursorSize(14);
  console->setCursorPos(10, 10);
  EXPECT_EQ(barHeight(10, 10, 0xFFFFFF), 2);
}

TEST_F(Cursor, IsWhiteOnBlackAndBlueAndBlackOnAnyOtherBackground) {
  console->setCursorSize(50);
  for (int background = 0; background < 16; ++background) {
    console->fillBlank(7, 7, 1, 1, static_cast<unsigned char>(background << 4));
    console->setCursorPos(6, 7);
    console->setCursorPos(7, 7);
    const uint32_t colour = background < 2 ? 0xFFFFFFu : 0u;
    EXPECT_EQ(barHeight(7, 7, colour), console->cellHeight() / 2) << background;
  }
}

TEST_F(Cursor, LeavesTheOldCellAsItWas) {
  console->fillBlank(0, 0, 80, 25, 0x30);
  const auto clean = cellPixels(console->picture(), 2, 2);
  console->setCursorSize(100);
  console->setCursorPos(2, 2);
  EXPECT_NE(cellPixels(console->picture(), 2, 2), clean);
  console->setCursorPos(3, 3);
  EXPECT_EQ(cellPixels(console->picture(), 2, 2), clean);
  console->setCursorSize(0);
  EXPECT_EQ(cellPixels(console->picture(), 3, 3), clean);
}

TEST_F(Cursor, MovesCostNoPaintWhileItIsHidden) {
  EXPECT_EQ(paintsOf([] { console->setCursorPos(9, 9); }), 0u);
  console->setCursorSize(14);
  EXPECT_EQ(paintsOf([] { console->setCursorPos(10, 9); }), 1u);
  EXPECT_EQ(paintsOf([] { console->setCursorSize(14); }), 0u);
}

// The cursor with a clock that the test moves on.
class BlinkingCursor : public Cursor {
 protected:
  void SetUp() override {
    Cursor::SetUp();
    frames_.emplace(clock());
    ASSERT_TRUE(clock().waitForWaiter());
    console->setCursorSize(100);
    console->setCursorPos(1, 1);
  }
  // Lets a tenth of a second pass, and what the cursor does then.
  static void tick() {
    clock().letPass(100);
    ASSERT_TRUE(clock().waitForWaiter());
  }
  static ManualClock& clock() {
    static ManualClock clock;
    return clock;
  }
  // For each of the next tenths whether the cursor shows.
  std::string phases(int ticks) {
    std::string result;
    for (int i = 0; i < ticks; ++i) {
      tick();
      result += barHeight(1, 1, 0xFFFFFF) > 0 ? '#' : '.';
    }
    return result;
  }

 private:
  std::optional<FrameClock> frames_;
};

TEST_F(BlinkingCursor, ShowsForHalfASecondAndHidesForTheNext) {
  EXPECT_EQ(phases(20), "#####.....#####.....");
}

TEST_F(BlinkingCursor, ShowsAtOnceWhenMoved) {
  EXPECT_EQ(phases(7), "#####..");
  console->setCursorPos(1, 1);
  EXPECT_GT(barHeight(1, 1, 0xFFFFFF), 0);
  EXPECT_EQ(phases(6), "#####.");
}

TEST_F(BlinkingCursor, HidesFromCellsAsTheyAreNow) {
  console->writeWide(1, 1, L"\x2588", 0x0C);
  const auto colour = [this] { return cellPixels(console->picture(), 1, 1).front(); };
  EXPECT_EQ(colour(), 0xFFFFFFu);
  for (int i = 0; i < 10 && colour() == 0xFFFFFFu; ++i) tick();
  EXPECT_EQ(colour(), 0xFF0000u);
}
}  // namespace
