#include "ui/win.h"

#include <cwctype>
#include <random>

#include "ui/ui_test.h"

namespace {

class WinTest : public UiTest {};

}  // namespace

TEST_F(WinTest, ANegativeLeftCentresTheOuterWidth) {
  Win win(-1, 3, 40, 8, Grey, Grey);
  EXPECT_EQ(win.left(), 20);
  EXPECT_EQ(win.right(), 59);
  EXPECT_EQ(win.top(), 3);
  EXPECT_EQ(win.bottom(), 8);
}

TEST_F(WinTest, ANegativeTopPlacesByAFraction) {
  const struct {
    int fraction;
    int height;
    int top;
  } rows[] = {{-2, 5, 10}, {-3, 5, 6}, {-1, 5, 20}, {-4, 6, 4}, {-2, 25, 0}};
  for (const auto& row : rows) {
    Win win(-1, row.fraction, 40, row.height, Grey, Grey);
    EXPECT_EQ(win.top(), row.top) << row.fraction << " with height " << row.height;
    EXPECT_EQ(win.bottom(), row.top + row.height - 1);
  }
}

TEST_F(WinTest, TheFrameIsDoubleAndInteriorCoordinatesStartInsideIt) {
  Win win(10, 5, 14, 8, Grey, 0x4F);
  EXPECT_EQ(textAt(10, 5, 5), L"\u2554\u2550\u2550\u2550\u2557");
  EXPECT_EQ(textAt(10, 6, 5), L"\u2551   \u2551");
  EXPECT_EQ(textAt(10, 7, 5), L"\u2551   \u2551");
  EXPECT_EQ(textAt(10, 8, 5), L"\u255A\u2550\u2550\u2550\u255D");
  EXPECT_EQ(attrsAt(10, 6, 5), (std::vector<int>{0x4F, 0x70, 0x70, 0x70, 0x4F}));
  EXPECT_EQ(win.originX(), 11);
  EXPECT_EQ(win.originY(), 6);
  EXPECT_EQ(win.curX(), 0);
  EXPECT_EQ(win.curY(), 0);
}

TEST_F(WinTest, AShadowDarkensTheRowBelowAndTwoColumnsToTheRight) {
  console->fillCell(0, 9, 80, Cell{L'.', 0x17});
  Win win(10, 5, 14, 8, Grey, Grey);
  ASSERT_TRUE(win.hasShadow());
  EXPECT_EQ(attrsAt(14, 5, 4), (std::vector<int>{Grey, Ground, Ground, Ground}));
  for (int y = 6; y <= 8; ++y) {
    EXPECT_EQ(attrsAt(14, y, 4), (std::vector<int>{Grey, 7, 7, Ground})) << y;
  }
  EXPECT_EQ(attrsAt(10, 9, 8), (std::vector<int>{0x17, 0x17, 8, 8, 8, 8, 8, 0x17}));
  EXPECT_EQ(textAt(10, 9, 8), L"........");
}

TEST_F(WinTest, AWindowTouchingTheRightEdgeHasNoShadow) {
  EXPECT_FALSE(Win(40, 5, 79, 8, Grey, Grey).hasShadow());
  EXPECT_FALSE(Win(40, 5, 78, 8, Grey, Grey).hasShadow());
  EXPECT_TRUE(Win(40, 5, 77, 8, Grey, Grey).hasShadow());
}

TEST_F(WinTest, AWindowOnTheLastRowHasNoShadow) {
  EXPECT_FALSE(Win(10, 5, 20, 24, Grey, Grey).hasShadow());
  EXPECT_TRUE(Win(10, 5, 20, 23, Grey, Grey).hasShadow());
}

TEST_F(WinTest, NoFrameMeansNoShadowAndAnOriginOnTheOuterCorner) {
  Win win(10, 5, 14, 8, Grey, NoFrame);
  EXPECT_FALSE(win.hasShadow());
  EXPECT_FALSE(win.hasFrame());
  EXPECT_EQ(win.originX(), 10);
  EXPECT_EQ(win.originY(), 5);
  EXPECT_EQ(win.innerWidth(), 5);
  EXPECT_EQ(textAt(9, 5, 7), L".     .");
}

TEST_F(WinTest, AShadowCanBeRefusedByTheCaller) {
  EXPECT_FALSE(Win(10, 5, 14, 8, Grey, Grey, Shadow::None).hasShadow());
}

TEST_F(WinTest, ANegativeAttributeDrawsTheFrameOnlyAndWritesInTheTextAttribute) {
  setTextAttr(0x2E);
  Win win(10, 5, 14, 8, KeepAttr, 0x4F);
  EXPECT_EQ(textAt(10, 6, 5), L"\u2551...\u2551");
  EXPECT_EQ(attrAt(11, 6), Ground);
  win.put(0, 0, L"x");
  EXPECT_EQ(attrAt(11, 6), 0x2E);
}

TEST_F(WinTest, ClosingPutsTheScreenBackWithItsShadow) {
  const std::vector<Cell> before = screen();
  {
    Win win(10, 5, 30, 12, Grey, Grey);
    win.put(0, 0, L"something");
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(WinTest, WithShadowsOffTheSavedAreaIsTheRectangle) {
  GlobalOptions::Shadows = false;
  {
    Win win(10, 5, 14, 8, Grey, Grey);
    EXPECT_FALSE(win.hasShadow());
    console->fillCell(15, 6, 1, Cell{L'!', 0x2E});
    console->fillCell(12, 9, 1, Cell{L'!', 0x2E});
  }
  EXPECT_EQ(charAt(15, 6), L'!');
  EXPECT_EQ(charAt(12, 9), L'!');
}

TEST_F(WinTest, WithAShadowTheSavedAreaReachesTwoColumnsAndOneRowFurther) {
  {
    Win win(10, 5, 14, 8, Grey, Grey);
    for (int x : {15, 16, 17}) console->fillCell(x, 6, 1, Cell{L'!', 0x2E});
    for (int y : {9, 10}) console->fillCell(12, y, 1, Cell{L'!', 0x2E});
  }
  EXPECT_EQ(textAt(15, 6, 3), L"..!");
  EXPECT_EQ(charAt(12, 9), L'.');
  EXPECT_EQ(charAt(12, 10), L'!');
}

TEST_F(WinTest, WindowsNestAndCloseInReverse) {
  const std::vector<Cell> before = screen();
  {
    Win outer(5, 2, 60, 20, Grey, Grey);
    const std::vector<Cell> between = screen();
    { Win inner(10, 5, 40, 22, 0x4F, 0x4F); }
    EXPECT_EQ(screen(), between);
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(WinTest, ARectangleBesideTheScreenMovesIntoIt) {
  Win win(70, 20, 89, 27, Grey, Grey);
  EXPECT_EQ(win.left(), 60);
  EXPECT_EQ(win.right(), 79);
  EXPECT_EQ(win.top(), 17);
  EXPECT_EQ(win.bottom(), 24);
}

TEST_F(WinTest, ARectangleLargerThanTheScreenIsClippedToIt) {
  const std::vector<Cell> before = screen();
  {
    Win win(-1, -2, 200, 60, Grey, Grey);
    EXPECT_EQ(win.left(), 0);
    EXPECT_EQ(win.top(), 0);
    EXPECT_EQ(win.right(), 79);
    EXPECT_EQ(win.bottom(), 24);
    EXPECT_EQ(charAt(79, 24), L'\u255D');
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(WinTest, AScreenThatShrankUnderAWindowTakesBackWhatFits) {
  {
    Win win(60, 18, 79, 24, Grey, Grey);
    console->setGeometry(70, 22, Estring(), 0);
  }
  EXPECT_EQ(console->getSize().columns, 70);
  EXPECT_EQ(charAt(65, 20), L'.');
  EXPECT_EQ(charAt(50, 20), L' ');
}

TEST_F(WinTest, TextMovesTheTextPosition) {
  Win win(10, 5, 40, 12, Grey, Grey);
  win.put(2, 1, L"abc");
  EXPECT_EQ(win.curX(), 5);
  EXPECT_EQ(win.curY(), 1);
  win.put(L"de", 0x71);
  EXPECT_EQ(inside(win, 2, 1, 6), L"abcde ");
  EXPECT_EQ(attrInside(win, 4, 1), Grey);
  EXPECT_EQ(attrInside(win, 5, 1), 0x71);
}

TEST_F(WinTest, OnlyByteTextMovesTheProcessWideCursor) {
  Win win(10, 5, 40, 12, Grey, Grey);
  setTextPos(1, 1);
  win.put(2, 1, L"abc");
  EXPECT_EQ(textState.textX, 1);
  win.put(2, 1, "abc");
  EXPECT_EQ(textState.textX, 11 + 5);
  EXPECT_EQ(textState.textY, 6 + 1);
}

TEST_F(WinTest, ByteTextIsInTheConsolesCodePage) {
  Win win(10, 5, 40, 12, Grey, Grey);
  win.put(0, 0, "\x84\xE1");
  EXPECT_EQ(inside(win, 0, 0, 2), L"\u00E4\u00DF");
}

TEST_F(WinTest, TextStopsAtTheFrameOnBothSides) {
  Win win(10, 5, 15, 8, Grey, Grey);
  win.put(1, 0, L"abcdef");
  EXPECT_EQ(textAt(10, 6, 7), L"\u2551 abc\u2551.");
  win.put(-2, 1, L"123456789");
  EXPECT_EQ(textAt(10, 7, 7), L"\u25513456\u2551.");
  EXPECT_EQ(win.curX(), 7);
  win.put(9, 1, L"x");
  win.put(-3, 1, L"xx");
  EXPECT_EQ(textAt(9, 7, 8), L".\u25513456\u2551.");
}

TEST_F(WinTest, TextBelowOrAboveTheWindowIsDropped) {
  Win win(10, 5, 15, 8, Grey, Grey);
  win.put(0, 3, L"x");
  win.put(0, -2, L"x");
  EXPECT_EQ(charAt(11, 9), L'.');
  EXPECT_EQ(charAt(11, 4), L'.');
}

TEST_F(WinTest, CellStringsAreWrittenWithTheirColours) {
  Win win(10, 5, 40, 12, Grey, Grey);
  const Cell cells[] = {{L'a', 0x1E}, {L'b', 0x2E}, {0, 0}};
  win.putCells(3, 2, cells);
  EXPECT_EQ(win.curX(), 5);
  win.putCells(cells);
  EXPECT_EQ(inside(win, 3, 2, 4), L"abab");
  EXPECT_EQ(attrInside(win, 3, 2), 0x1E);
  EXPECT_EQ(attrInside(win, 4, 2), 0x2E);
  CellString coloured(L"xy", 0x4F);
  coloured.append(L"z", 0x5F);
  win.put(0, 4, coloured);
  EXPECT_EQ(inside(win, 0, 4, 3), L"xyz");
  EXPECT_EQ(attrInside(win, 2, 4), 0x5F);
}

TEST_F(WinTest, CentringIsTheSameInFramedAndPlainWindows) {
  {
    Win win(10, 5, 21, 8, Grey, Grey);  // 10 columns inside
    win.putCentred(0, L"abcd");
    EXPECT_EQ(textAt(10, 6, 12), L"\u2551   abcd   \u2551");
    win.putCentred(1, "abc");
    EXPECT_EQ(textAt(10, 7, 12), L"\u2551   abc    \u2551");
  }
  Win plain(10, 5, 21, 8, Grey, NoFrame);
  plain.putCentred(0, L"abcd");
  EXPECT_EQ(textAt(10, 5, 12), L"    abcd    ");
}

TEST_F(WinTest, ATitleStandsInTheMiddleOfTheTopFrame) {
  Win win(10, 5, 21, 8, Grey, Grey);
  win.putFrameTitle(" Go ");
  EXPECT_EQ(textAt(10, 5, 12), L"\u2554\u2550\u2550\u2550 Go \u2550\u2550\u2550\u2557");
}

TEST_F(WinTest, LongTextWrapsAtSpaces) {
  Win win(10, 5, 21, 15, Grey, Grey);  // 10 columns inside
  win.putWrapped(0, 0, L"one two three   four5678901234 x");
  EXPECT_EQ(inside(win, 0, 0, 10), L"one two   ");
  EXPECT_EQ(inside(win, 0, 1, 10), L"three     ");  // the white space behind it goes
  EXPECT_EQ(inside(win, 0, 2, 10), L"four567890");  // a word without a space is cut
  EXPECT_EQ(inside(win, 0, 3, 10), L"1234 x    ");
}

TEST_F(WinTest, WrappedTextGoesOnAtColumnZeroWithTheWholeWidth) {
  Win win(10, 5, 21, 15, Grey, Grey);
  win.putWrapped(6, 1, L"abc defghi jk");
  EXPECT_EQ(inside(win, 0, 1, 10), L"      abc ");
  EXPECT_EQ(inside(win, 0, 2, 10), L"defghi jk ");
}

TEST_F(WinTest, AWordThatExactlyFillsTheLineStaysWhole) {
  Win win(10, 5, 21, 15, Grey, Grey);
  win.putWrapped(0, 0, L"0123456789 abc");
  EXPECT_EQ(inside(win, 0, 0, 10), L"0123456789");
  EXPECT_EQ(inside(win, 0, 1, 4), L"abc ");
}

// The rule word for word, on copies of what is left of the text.
TEST_F(WinTest, EveryTextWrapsByTheSameRule) {
  const auto ruled = [](int x, int width, std::wstring rest) {
    std::vector<std::wstring> rows;
    for (; !rest.empty(); x = 0) {
      const size_t room = static_cast<size_t>(std::max(width - x, 1));
      std::wstring piece = rest.substr(0, room + 1);
      if (piece.length() > room) {
        const size_t space = piece.rfind(L' ');
        piece.resize(space == std::wstring::npos ? room : space);
      }
      rest.erase(0, piece.length());
      while (!rest.empty() && iswspace(static_cast<wint_t>(rest[0]))) rest.erase(0, 1);
      rows.push_back(std::wstring(static_cast<size_t>(x), L' ') + piece);
    }
    return rows;
  };
  constexpr wchar_t signs[] = L"ab \u00E4\u2003";
  std::minstd_rand random(7);
  for (int round = 0; round < 300; ++round) {
    std::wstring text;
    for (unsigned left = random() % 40; left > 0; --left) text += signs[random() % 5];
    const int x = static_cast<int>(random() % 12);
    Win win(10, 2, 18, 23, Grey, Grey);  // 7 columns and 20 rows inside
    win.putWrapped(x, 0, text.c_str());
    std::vector<std::wstring> rows = ruled(x, 7, text);
    rows.resize(20);
    for (int row = 0; row < 20; ++row) {
      rows[static_cast<size_t>(row)].resize(7, L' ');
      ASSERT_EQ(inside(win, 0, row, 7), rows[static_cast<size_t>(row)]) << "row " << row;
    }
  }
}

TEST_F(WinTest, ARowOfALongTextCostsItsOwnLength) {
  constexpr int rows = 200'000;
  std::wstring text;
  for (int row = 1; row < rows; ++row) text += L"abcd efgh ";
  text += L"the end";
  Win win(10, 5, 20, 15, Grey, Grey);  // 9 columns inside
  win.putWrapped(0, 1 - rows, text.c_str());
  EXPECT_EQ(inside(win, 0, 0, 9), L"the end  ");
  EXPECT_EQ(inside(win, 0, 1, 9), L"         ");
}

TEST_F(WinTest, WrappedBytesAreUtf8) {
  Win win(10, 5, 21, 15, Grey, Grey);
  win.putWrapped(0, 0, "\xC3\xA4\xE2\x86\x93");
  EXPECT_EQ(inside(win, 0, 0, 3), L"\u00E4\u2193 ");
}

TEST_F(WinTest, HotKeysShowInAnotherForeground) {
  const struct {
    int attr;
    int hot;
  } rows[] = {{0x70, 0x71}, {0x7F, 0x7E}, {0x30, 0x3E}, {0x3E, 0x3F}, {0x1F, 0x1E}};
  Win win(10, 5, 40, 12, Grey, Grey);
  for (const auto& row : rows) {
    win.putHotKeys(0, 0, "Skip", "s", row.attr);
    EXPECT_EQ(attrInside(win, 0, 0), row.hot) << row.attr;
    EXPECT_EQ(attrInside(win, 1, 0), row.attr);
  }
}

TEST_F(WinTest, AHotKeyIsFoundInUpperCaseFirst) {
  Win win(10, 5, 40, 12, Grey, Grey);
  win.putHotKeys(0, 0, "aaA", "a");
  EXPECT_EQ(attrInside(win, 0, 0), Grey);
  EXPECT_EQ(attrInside(win, 2, 0), 0x71);
  win.putHotKeys(0, 1, L"xaa", "A");
  EXPECT_EQ(attrInside(win, 1, 1), 0x71);
  EXPECT_EQ(attrInside(win, 2, 1), Grey);
}

TEST_F(WinTest, AHotKeyThatIsntInTheTextHighlightsNothing) {
  Win win(10, 5, 40, 12, Grey, Grey);
  win.putHotKeys(0, 0, "abc", "x\xFF");
  for (int x = 0; x < 5; ++x) EXPECT_EQ(attrInside(win, x, 0), Grey);
}

TEST_F(WinTest, ClearLeavesRowsAtBothEndsAlone) {
  Win win(10, 5, 15, 10, Grey, Grey);
  for (int y = 0; y < 4; ++y) win.put(0, y, L"abcd");
  win.clear(1, 2);
  EXPECT_EQ(inside(win, 0, 0, 4), L"abcd");
  EXPECT_EQ(inside(win, 0, 1, 4), L"    ");
  EXPECT_EQ(inside(win, 0, 2, 4), L"abcd");
  win.clear();
  EXPECT_EQ(textAt(10, 9, 6), L"\u2551    \u2551");
  win.put(0, 0, L"abcd");
  win.clear(3, 3);
  EXPECT_EQ(inside(win, 0, 0, 4), L"abcd");
}

TEST_F(WinTest, ClearToEndOfLineStopsAtTheFrame) {
  Win win(10, 5, 17, 10, Grey, Grey);
  win.put(0, 0, L"abcdef");
  win.setPos(2, 0);
  win.clearToEndOfLine(0x1E);
  EXPECT_EQ(textAt(10, 6, 8), L"\u2551ab    \u2551");
  EXPECT_EQ(attrsAt(12, 6, 6), (std::vector<int>{Grey, 0x1E, 0x1E, 0x1E, 0x1E, Grey}));
}

TEST_F(WinTest, ScrollMovesARectangleUpAndDown) {
  Win win(10, 5, 15, 10, Grey, Grey);
  for (int y = 0; y < 4; ++y)
    win.put(0, y, std::wstring(4, static_cast<wchar_t>(L'a' + y)).c_str());
  win.scroll(0, 0, 4, 4, 1);
  EXPECT_EQ(inside(win, 0, 0, 4), L"bbbb");
  EXPECT_EQ(inside(win, 0, 3, 4), L"    ");
  win.scroll(1, 0, 2, 4, -2);
  EXPECT_EQ(inside(win, 0, 0, 4), L"b  b");
  EXPECT_EQ(inside(win, 0, 2, 4), L"dbbd");
  EXPECT_EQ(attrInside(win, 1, 0), Grey);
}

TEST_F(WinTest, SetPosMovesTheProcessWideCursorToTheScreenCell) {
  Win win(10, 5, 40, 12, Grey, Grey);
  win.setPos(3, 2);
  EXPECT_EQ(win.curX(), 3);
  EXPECT_EQ(textState.textX, 14);
  EXPECT_EQ(textState.textY, 8);
}

TEST_F(WinTest, HidingTwiceBringsTheWindowBackIntact) {
  const std::vector<Cell> before = screen();
  Win win(10, 5, 40, 12, Grey, Grey);
  win.put(0, 0, L"content");
  const std::vector<Cell> with = screen();
  win.hide();
  EXPECT_TRUE(win.hidden());
  EXPECT_EQ(screen(), before);
  win.hide();
  EXPECT_EQ(screen(), before);
  win.unhide();
  EXPECT_EQ(screen(), with);
}

TEST_F(WinTest, AHiddenWindowClosesWithoutTouchingTheScreen) {
  {
    Win win(10, 5, 40, 12, Grey, Grey);
    win.hide();
    console->fillCell(12, 7, 3, Cell{L'#', 0x2E});
  }
  EXPECT_EQ(textAt(12, 7, 3), L"###");
}
