#include "terminal/ansi_emulator.h"

#include <random>

#include "emulator_test.h"
#include "terminal/utf8_tail.h"

using AnsiEmulator = EmulatorTest;

TEST_F(AnsiEmulator, AnEscapeAtTheEndWaitsForTheNextWrite) {
  feed("ab\x1b");
  EXPECT_EQ(rowText(0, 0, 4), "ab  ");
  feed("[31mc");
  EXPECT_EQ(rowText(0, 0, 4), "abc ");
  EXPECT_EQ(attrAt(1, 0), 7);
  EXPECT_EQ(attrAt(2, 0), 4);
}

TEST_F(AnsiEmulator, ASequenceCutInTwoIsOne) {
  feed("\x1b[3");
  feed("1mr");
  EXPECT_EQ(attrAt(0, 0), 4);
  EXPECT_EQ(rowText(0, 0, 2), "r ");
}

TEST_F(AnsiEmulator, EachCutOfAStreamGivesTheSameScreen) {
  const std::string stream =
      "one\x1b[1;34mtwo\x1b[2;5Hthree\t\x1b[7mfour\r\n\xC3\xA9\xE2\x82\xAC\x1b[m\x1b[2Kfive\x1b[5b";
  feed(stream);
  const std::vector<Cell> whole = console->getCells(0, 0, 80, 25);
  const std::string where = cursor();
  for (size_t cut = 1; cut < stream.size(); ++cut) {
    if (unfinishedUtf8(std::string_view(stream).substr(0, cut)) != 0) continue;
    console->fillBlank(0, 0, 80, 25, 7);
    console->setCursorPos(0, 0);
    CAnsiTerminalEmulator other(*console, *input, logPath.c_str());
    other.write(std::string_view(stream).substr(0, cut));
    other.write(std::string_view(stream).substr(cut));
    EXPECT_EQ(console->getCells(0, 0, 80, 25), whole) << cut;
    EXPECT_EQ(cursor(), where) << cut;
  }
}

TEST_F(AnsiEmulator, AnEscapeWithAnythingButABracketIsDropped) {
  feed(
      "\x1b"
      "c\x1b(B\x1b\x1b[31mx\x1b\ny");
  EXPECT_EQ(rowText(0, 0, 5), "c(Bx ");
  EXPECT_EQ(attrAt(3, 0), 4);
  EXPECT_EQ(rowText(0, 1, 2), "y ");
  EXPECT_EQ(logText(), "");
}

// There are no modes: what asks for one shows as it is, and that is meant so.
TEST_F(AnsiEmulator, APrivateSequenceIsLoggedAndItsRestIsText) {
  feed("\x1b[?25lx");
  EXPECT_EQ(rowText(0, 0, 5), "25lx ");
  EXPECT_EQ(logText(), "Unhandled code ? (0 args)\r\n");
}

TEST_F(AnsiEmulator, ArgumentsMustBeginWithADigit) {
  feed("\x1b[;5H");
  EXPECT_EQ(rowText(0, 0, 3), "5H ");
  EXPECT_EQ(logText(), "Unhandled code ; (0 args)\r\n");
}

TEST_F(AnsiEmulator, TheLogTellsWhatIsNotUnderstood) {
  feed("\x1b[31mx");
  EXPECT_TRUE(files.exists("log")) << "its presence tells that a sequence was read";
  EXPECT_EQ(logText(), "");
  feed("\x1b[5;10r\x1b[6;31;53m\x1b[s");
  EXPECT_EQ(logText(),
            "Unhandled code r (2 args)\r\nUnhandled Graphic Rendition 6\r\n"
            "Unhandled Graphic Rendition 53\r\nUnhandled code s (0 args)\r\n");
}

TEST_F(AnsiEmulator, PlainTextMakesNoLog) {
  feed("text\r\n");
  EXPECT_FALSE(files.exists("log"));
}

TEST_F(AnsiEmulator, ALongSequenceThatNeverEndsIsDropped) {
  feed("a\x1b[" + std::string(4094, '1'));
  feed("mb");
  EXPECT_EQ(rowText(0, 0, 3), "ab ") << "4096 bytes are held";
  feed("\x1b[" + std::string(4095, '1'));
  feed("mc");
  EXPECT_EQ(rowText(0, 0, 5), "abmc ");
  EXPECT_EQ(logText(), "Unhandled Graphic Rendition 65535\r\nDropped code of 4097 bytes\r\n");
}

TEST_F(AnsiEmulator, ControlBytesMoveTheCursorAndTheOthersAreDropped) {
  feed(
      "ab\bX\rY\n\x01\x02\x0b\x0c\x0e\x0f\x1f"
      "Z\b\b\b");
  EXPECT_EQ(rowText(0, 0, 3), "YX ");
  EXPECT_EQ(rowText(0, 1, 3), "Z  ");
  EXPECT_EQ(cursor(), "0,1");
}

TEST_F(AnsiEmulator, ALineFeedIsAReturnToo) {
  feed("abc\nd");
  EXPECT_EQ(rowText(0, 1, 2), "d ");
}

TEST_F(AnsiEmulator, NulAndDeleteAreDroppedAndNothingAfterThemIsLost) {
  using namespace std::string_view_literals;
  feed(
      "a\0b\x7f"
      "c\x1b\0[\0"
      "3\0"
      "1\0md\0"sv);
  EXPECT_EQ(rowText(0, 0, 5), "abcd ");
  EXPECT_EQ(attrAt(3, 0), 4);
  feed("\x1b"sv);
  feed("\0"sv);
  feed("\0[32me"sv);
  EXPECT_EQ(attrAt(4, 0), 2);
}

TEST_F(AnsiEmulator, CharactersThatWouldBreakALineShowAsHouses) {
  feed("\xC2\x80\xC2\x9F\xE2\x80\xA8\xE2\x80\xA9x");
  EXPECT_EQ(rowText(0, 0, 6), "\xE2\x8C\x82\xE2\x8C\x82\xE2\x8C\x82\xE2\x8C\x82x ");
}

TEST_F(AnsiEmulator, BytesThatAreNoUtf8ShowAsLatin1) {
  feed("\xE9x\xC3");
  EXPECT_EQ(rowText(0, 0, 4), "\xC3\xA9x\xC3\x83 ");
}

TEST_F(AnsiEmulator, WideAndCombiningCharactersTakeOneCellEach) {
  feed(
      "\xE4\xB8\xAD"
      "e\xCC\x81x");
  EXPECT_EQ(cellAt(0, 0).ch, 0x4E2D);
  EXPECT_EQ(cellAt(1, 0).ch, L'e');
  EXPECT_EQ(cellAt(2, 0).ch, 0x301);
  EXPECT_EQ(cellAt(3, 0).ch, L'x');
}

TEST_F(AnsiEmulator, TheAlternateSetIsCodePage437) {
  feed(
      "\x1b[11m\xC4\xB3\x80"
      "a\x1b[10m\xC3\xA9");
  EXPECT_EQ(rowText(0, 0, 6),
            "\xE2\x94\x80\xE2\x94\x82\xC3\x87"
            "a\xC3\xA9 ");
}

TEST_F(AnsiEmulator, TheLastColumnWrapsAtOnce) {
  feedAt(79, 3, "x");
  EXPECT_EQ(rowText(79, 3, 1), "x");
  EXPECT_EQ(cursor(), "0,4");
}

TEST_F(AnsiEmulator, TheLastCellScrollsAtOnce) {
  numberRows();
  console->setDefaultAttr(0x1E);
  feedAt(79, 24, "\x1b[31mx");
  EXPECT_EQ(cursor(), "0,24");
  EXPECT_EQ(startOf(0), "1  ");
  EXPECT_EQ(rowText(79, 23, 1), "x");
  EXPECT_EQ(attrAt(0, 24), 0x1E) << "blanks of the console's own attribute";
  console->setDefaultAttr(7);
}

TEST_F(AnsiEmulator, ALineFeedOnTheLastRowScrolls) {
  numberRows();
  feedAt(5, 24, "\nz");
  EXPECT_EQ(startOf(0), "1  ");
  EXPECT_EQ(startOf(23), "24 ");
  EXPECT_EQ(startOf(24), "z  ");
}

TEST_F(AnsiEmulator, ATabGoesToTheNextStopOrTheNextRow) {
  feed("\tx");
  EXPECT_EQ(rowText(8, 0, 1), "x");
  feedAt(76, 0, "\ty");
  EXPECT_EQ(rowText(0, 1, 2), "y ");
}

TEST_F(AnsiEmulator, ALongTextWrapsAndScrolls) {
  std::string text;
  for (int i = 0; i < 80 * 30 + 5; ++i) text += static_cast<char>('a' + i / 80 % 26);
  feed(text);
  EXPECT_EQ(rowText(0), std::string(80, 'a' + 6));
  EXPECT_EQ(rowText(0, 24, 6), "eeeee ");
  EXPECT_EQ(cursor(), "5,24");
}

TEST_F(AnsiEmulator, CursorMoves) {
  const std::tuple<int, int, const char*, const char*> rows[] = {
      {10, 10, "A", "10,9"},   {10, 10, "0A", "10,10"},      {10, 10, "3A", "10,7"},
      {10, 10, "99A", "10,0"}, {10, 10, "B", "10,11"},       {10, 10, "0B", "10,10"},
      {10, 10, "4B", "10,14"}, {10, 10, "65535B", "10,24"},  {10, 10, "C", "11,10"},
      {10, 10, "0C", "10,10"}, {10, 10, "5C", "15,10"},      {10, 10, "999C", "79,10"},
      {10, 10, "D", "9,10"},   {10, 10, "0D", "10,10"},      {10, 10, "2D", "8,10"},
      {10, 10, "99D", "0,10"}, {10, 10, "E", "0,11"},        {10, 10, "3E", "0,13"},
      {10, 10, "99E", "0,24"}, {10, 10, "F", "0,9"},         {10, 10, "2F", "0,8"},
      {10, 10, "99F", "0,0"},  {10, 10, "G", "0,10"},        {10, 10, "0G", "0,10"},
      {10, 10, "5G", "4,10"},  {10, 10, "200G", "79,10"},    {10, 10, "H", "0,0"},
      {10, 10, "0;0H", "0,0"}, {10, 10, "5H", "0,4"},        {10, 10, "5;7H", "6,4"},
      {10, 10, "5;7f", "6,4"}, {10, 10, "99;999H", "79,24"}, {10, 10, "d", "10,0"},
      {10, 10, "0d", "10,0"},  {10, 10, "6d", "10,5"},       {10, 10, "99d", "10,24"},
      {10, 10, "I", "16,10"},  {16, 10, "I", "24,10"},       {10, 10, "2I", "24,10"},
      {75, 10, "I", "79,10"},  {10, 10, "99I", "79,10"},     {10, 10, "Z", "8,10"},
      {16, 10, "Z", "8,10"},   {17, 10, "2Z", "8,10"},       {3, 10, "Z", "0,10"},
      {0, 10, "Z", "0,10"},    {79, 10, "99Z", "0,10"},
  };
  for (const auto& [x, y, code, expected] : rows) {
    feedAt(x, y, std::string("\x1b[") + code);
    EXPECT_EQ(cursor(), expected) << x << "," << y << " " << code;
  }
}

TEST_F(AnsiEmulator, LineEdits) {
  const std::tuple<const char*, const char*> rows[] = {
      {"@", "abcd efghij"}, {"0@", "abcd efghij"}, {"3@", "abcd   efghij"},
      {"P", "abcdfghij"},   {"0P", "abcdfghij"},   {"3P", "abcdhij"},
      {"99P", "abcd"},      {"999@", "abcd"},      {"X", "abcd fghij"},
      {"3X", "abcd   hij"}, {"999X", "abcd"},      {"K", "abcd"},
      {"0K", "abcd"},       {"1K", "    efghij"},  {"2K", ""},
      {"7K", ""},
  };
  for (const auto& [code, expected] : rows) {
    console->fillBlank(0, 0, 80, 1, 7);
    console->writeWide(0, 0, L"abcdefghij", 7);
    feedAt(4, 0, std::string("\x1b[") + code);
    std::string text = rowText(0);
    text.erase(text.find_last_not_of(' ') + 1);
    EXPECT_EQ(text, expected) << code;
    EXPECT_EQ(cursor(), "4,0") << code;
  }
}

TEST_F(AnsiEmulator, ErasingToTheEndBeginsAtTheCursorAndToTheStartEndsBeforeIt) {
  console->writeWide(0, 0, L"0123456789", 7);
  feedAt(5, 0, "\x1b[K");
  EXPECT_EQ(rowText(0, 0, 8), "01234   ");
  console->writeWide(0, 0, L"0123456789", 7);
  feedAt(5, 0, "\x1b[1K");
  EXPECT_EQ(rowText(0, 0, 8), "     567");
}

TEST_F(AnsiEmulator, CellsPushedOverTheEdgeAreLost) {
  console->writeWide(76, 0, L"wxyz", 7);
  feedAt(76, 0, "\x1b[2@");
  EXPECT_EQ(rowText(76, 0, 4), "  wx");
  EXPECT_EQ(rowText(0, 1, 4), "    ");
}

TEST_F(AnsiEmulator, BlanksAreOfTheChosenAttribute) {
  for (const char* code : {"@", "P", "X", "K", "1K", "2K", "J", "1J", "2J", "L", "M", "S", "T"}) {
    console->fillBlank(0, 0, 80, 25, 7);
    feedAt(40, 12, std::string("\x1b[0;44m\x1b[") + code);
    int blue = 0;
    for (const Cell& cell : console->getCells(0, 0, 80, 25)) {
      EXPECT_EQ(cell.ch, L' ');
      blue += cell.attr == 0x17;
    }
    EXPECT_GT(blue, 0) << code;
  }
}

TEST_F(AnsiEmulator, ErasingTheDisplay) {
  const std::tuple<const char*, int, int, int> rows[] = {
      // rows that keep their number, from and to, and whether the cursor's row keeps its start
      {"J", 0, 9, 1}, {"0J", 0, 9, 1}, {"1J", 11, 24, 0}, {"2J", 1, 0, 0}, {"3J", 0, 24, 0},
  };
  for (const auto& [code, from, to, keepsStart] : rows) {
    numberRows();
    feedAt(5, 10, std::string("\x1b[") + code);
    for (int y = 0; y < 25; ++y) {
      if (y == 10) continue;
      const bool kept = y >= from && y <= to;
      EXPECT_EQ(startOf(y) != "   ", kept) << code << " row " << y;
    }
    EXPECT_EQ(startOf(10) == "10 ", keepsStart == 1) << code;
    EXPECT_EQ(cursor(), "5,10") << code;
  }
}

TEST_F(AnsiEmulator, LinesAreInsertedAndDeletedBelowTheCursor) {
  const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
      // rows 9, 10 and 24 afterwards
      {"L", "9  ", "   ", "23 "},   {"0L", "9  ", "   ", "23 "},     {"3L", "9  ", "   ", "21 "},
      {"99L", "9  ", "   ", "   "}, {"M", "9  ", "11 ", "   "},      {"0M", "9  ", "11 ", "   "},
      {"4M", "9  ", "14 ", "   "},  {"S", "10 ", "11 ", "   "},      {"0S", "9  ", "10 ", "24 "},
      {"2S", "11 ", "12 ", "   "},  {"T", "8  ", "9  ", "23 "},      {"0T", "8  ", "9  ", "23 "},
      {"5T", "4  ", "5  ", "19 "},  {"65535S", "   ", "   ", "   "},
  };
  for (const auto& [code, nine, ten, last] : rows) {
    numberRows();
    feedAt(5, 10, std::string("\x1b[") + code);
    EXPECT_EQ(startOf(9) + "|" + startOf(10) + "|" + startOf(24),
              std::string(nine) + "|" + ten + "|" + last)
        << code;
    EXPECT_EQ(cursor(), "5,10") << code;
  }
}

TEST_F(AnsiEmulator, ReversingTwiceRestoresTheAttribute) {
  feed("\x1b[31;44m\x1b[7ma\x1b[7mb");
  EXPECT_EQ(attrAt(0, 0), 0x41);
  EXPECT_EQ(attrAt(1, 0), 0x14);
}

TEST_F(AnsiEmulator, TheLastCharacterIsRepeated) {
  feed("\x1b[3bx\x1b[b\x1b[0b\x1b[31m\x1b[2b");
  EXPECT_EQ(rowText(0, 0, 6), "xxxxx ");
  EXPECT_EQ(attrAt(2, 0), 7);
  EXPECT_EQ(attrAt(3, 0), 4);
  feed("\xC3\xA9\x1b[b");
  EXPECT_EQ(rowText(5, 0, 2), "\xC3\xA9\xC3\xA9");
}

TEST_F(AnsiEmulator, ManyRepetitionsEndAsIfEachHadBeenPlaced) {
  console->setGeometry(13, 4, "", 0);
  for (const int count : {1, 12, 13, 51, 52, 103, 104, 105, 117, 1000, 65535}) {
    console->fillBlank(0, 0, 13, 4, 7);
    console->setCursorPos(0, 0);
    feed("q\x1b[" + std::to_string(count) + "b");
    const std::vector<Cell> cells = console->getCells(0, 0, 13, 4);
    const std::string where = cursor();
    console->fillBlank(0, 0, 13, 4, 7);
    console->setCursorPos(0, 0);
    feed(std::string(static_cast<size_t>(count) + 1, 'q'));
    EXPECT_EQ(console->getCells(0, 0, 13, 4), cells) << count;
    EXPECT_EQ(cursor(), where) << count;
  }
  console->setGeometry(80, 25, "", 0);
}

TEST_F(AnsiEmulator, EachWriteGoesOnWhereTheConsolesCursorStands) {
  feed("ab");
  console->setCursorPos(10, 5);
  feed("cd");
  EXPECT_EQ(rowText(10, 5, 3), "cd ");
  EXPECT_EQ(cursor(), "12,5");
}

TEST_F(AnsiEmulator, ACursorThatASmallerScreenLeftOutsideComesBack) {
  console->setCursorPos(79, 24);
  console->setGeometry(40, 10, "", 0);
  feed("x");
  EXPECT_EQ(cursor(), "0,9");
  EXPECT_EQ(rowText(39, 8, 1), "x");
  console->setGeometry(80, 25, "", 0);
}

TEST_F(AnsiEmulator, WhatItCannotHoldBackShowsAsItIs) {
  feed("\xE2\x82");
  feed("\xAC");
  EXPECT_EQ(rowText(0, 0, 4), "\xC3\xA2\xE2\x8C\x82\xC2\xAC ");
}

TEST_F(AnsiEmulator, AFloodPaintsNoMoreThanAScreenAFrame) {
  const unsigned long before = console->paintCount();
  std::string flood;
  for (int i = 0; i < 20000; ++i) flood += "line after line\a\n";
  feed(flood);
  EXPECT_LE(console->paintCount() - before, 60u);
}

TEST_F(AnsiEmulator, AnyBytesLeaveAScreenThatCanBeDrawn) {
  const std::string bits[] = {"\x1b", "\x1b[", "\x1b[", ";", "9", "99999", "m",  "H",  "b", "J",
                              "L",    "S",     "T",     "@", "P", "\n",    "\t", "\r", "x", "\xE2"};
  std::mt19937 random(1);
  console->setGeometry(17, 5, "", 0);
  for (int soup = 0; soup < 300; ++soup) {
    std::string bytes;
    for (int i = 0; i < 500; ++i) {
      bytes += random() % 3 == 0 ? std::string(1, static_cast<char>(random()))
                                 : bits[random() % std::size(bits)];
    }
    feed(bytes);
    const CursorPos at = console->getCursorPos();
    ASSERT_TRUE(at.x >= 0 && at.x < 17 && at.y >= 0 && at.y < 5) << soup;
    for (const Cell& cell : console->getCells(0, 0, 17, 5)) {
      ASSERT_TRUE(cell.ch >= L' ' && cell.ch <= 0x10FFFF && mapControl(cell.ch) == cell.ch) << soup;
    }
  }
  EXPECT_LE(logText().size(), size_t{TerminalLog::MostBytes});
  console->setGeometry(80, 25, "", 0);
}

TEST_F(AnsiEmulator, AnEndlessSequenceIsReadInPiecesAndForgotten) {
  feed("\x1b[");
  for (int piece = 0; piece < 1000; ++piece) feed(std::string(4000, '7'));
  feed("mend");
  EXPECT_NE(logText().find("Dropped code of "), std::string::npos);
  EXPECT_EQ(rowText(0, console->getCursorPos().y, console->getCursorPos().x).back(), 'd');
}

TEST_F(AnsiEmulator, KeysGoToTheCommand) {
  EXPECT_TRUE(emulator->sendKey('a'));
  EXPECT_TRUE(emulator->sendKey(Key::Up));
  EXPECT_TRUE(emulator->sendKey(Key::ShiftF10));
  EXPECT_TRUE(emulator->sendText(L"x\ny"));
  EXPECT_EQ(sent(), "a\x1b[Ax\ry");
}

TEST_F(AnsiEmulator, ATextThatIsTooMuchIsRefusedWhole) {
  EXPECT_FALSE(emulator->sendText(Westring(L'x', (1 << 20) + 1)));
  EXPECT_EQ(sent(), "");
  EXPECT_TRUE(emulator->sendText(Westring(L'x', 1 << 20)));
  EXPECT_TRUE(input->waiting());
}

TEST_F(AnsiEmulator, BreakTwiceAndTheCloseButtonAskForTheEnd) {
  emulator->breakPressed();
  EXPECT_FALSE(input->endAsked());
  emulator->breakPressed();
  EXPECT_TRUE(input->endAsked());
  emulator->closePressed();
  EXPECT_TRUE(input->closeAsked());
}

TEST_F(AnsiEmulator, WriteTtyReachesItThroughTheConsole) {
  console->attachTerminal(
      std::make_unique<CAnsiTerminalEmulator>(*console, *input, logPath.c_str()));
  console->writeTty("\x1b[31mred");
  console->detachTerminal();
  EXPECT_EQ(rowText(0, 0, 4), "red ");
  EXPECT_EQ(attrAt(0, 0), 4);
  EXPECT_EQ(cursor(), "3,0");
}
