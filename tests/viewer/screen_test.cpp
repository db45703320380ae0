// The viewer's screen: rows, status, key bar, and the keys that move.

#include "options/colours.h"
#include "options/options.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerScreen : public ViewerTest {};

TEST_F(ViewerScreen, AFileWithoutBytesShowsAnEmptyScreenAndAllOfIt) {
  const Shot shot = last("", {Key::Down, Key::PageDown, Key::End, Key::Up, Key::F4, Key::Right});
  EXPECT_TRUE(shot.page().empty());
  EXPECT_EQ(shot.percent(), "100.00%");
}

TEST_F(ViewerScreen, TheStatusTellsNameFormatAndHowFarItIs) {
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.text(0, 0, 6), "View: ");
  EXPECT_EQ(shot.row(0).substr(6, dir.path("file").size()), dir.path("file"));
  EXPECT_EQ(shot.text(65, 0, 8), "UTF-8   ");
  // 23 lines of 9 * 2 + 14 * 3 bytes of 3893.
  EXPECT_EQ(shot.percent(), "  1.54%");
  EXPECT_EQ(shot.at(0, 0).attr, colourOf(Colour::MenuBar));
  EXPECT_EQ(shot.at(79, 0).attr, colourOf(Colour::MenuBar));
}

TEST_F(ViewerScreen, ALongNameIsShortenedSoThatABlankStaysBeforeTheFormat) {
  std::string name;
  for (int i = 0; i < 10; ++i) name += "0123456789";
  dir.write(name, "x");
  queueKey(Key::F10);
  Recorder viewer(dir.wide(name));
  viewer.view(AnyPosition);
  const Shot& shot = viewer.shots[0];
  EXPECT_EQ(shot.text(6, 0, 8), "/tmp/...");
  EXPECT_EQ(shot.text(60, 0, 13), "6789 UTF-8   ");
}

TEST_F(ViewerScreen, TheKeyBarNamesTheKeysAndWhatTheyWouldDo) {
  const auto shots = view("text", {Key::F2, Key::F4, Key::F4, Key::F2});
  const char* labels[] = {"1Help", "2UnWrap", "3",     "4Hex", "5",
                          "6",     "7Search", "8Home", "9End", "10Quit"};
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(shots[0].label(i), labels[i - 1]);
  EXPECT_EQ(shots[1].label(2), "2Wrap");
  EXPECT_FALSE(GlobalOptions::ViewerWrap == false) << "F2 twice";
  EXPECT_EQ(shots[2].label(4), "4ASCII");
  EXPECT_EQ(shots[3].label(4), "4Hex");
  EXPECT_EQ(shots[4].label(2), "2UnWrap");
}

TEST_F(ViewerScreen, LinesStandInTheColourOfTheViewer) {
  const Shot shot = last("one\n\ttwo\r\nthree");
  EXPECT_EQ(shot.page(), (std::vector<std::string>{"one", "        two", "three"}));
  for (int y = 1; y < 24; ++y) {
    EXPECT_EQ(shot.at(0, y).attr, colourOf(Colour::FileViewer));
    EXPECT_EQ(shot.at(79, y).attr, colourOf(Colour::FileViewer));
  }
}

TEST_F(ViewerScreen, UpAndDownGoByARowAndStopAtTheEnds) {
  const auto shots = view(numbered(25), {Key::Up, Key::Down, Key::Down, Key::Down, Key::Up});
  EXPECT_EQ(shots[1].row(1), "1");
  EXPECT_EQ(shots[2].row(1), "2");
  EXPECT_EQ(shots[3].row(1), "3");
  EXPECT_EQ(shots[3].row(23), "25");
  EXPECT_EQ(shots[3].percent(), "100.00%");
  EXPECT_EQ(shots[4].row(1), "3") << "the end shows";
  EXPECT_EQ(shots[5].row(1), "2");
}

TEST_F(ViewerScreen, PagesOverlapByOneRow) {
  const auto shots =
      view(numbered(100), {Key::PageDown, ' ', Key::PageUp, Key::PageUp, Key::PageUp});
  EXPECT_EQ(shots[1].row(1), "23");
  EXPECT_EQ(shots[2].row(1), "45");
  EXPECT_EQ(shots[3].row(1), "23");
  EXPECT_EQ(shots[4].row(1), "1");
  EXPECT_EQ(shots[5].row(1), "1");
}

TEST_F(ViewerScreen, PageDownNearTheEndLeavesBlankRowsAndStopsThere) {
  const auto shots = view(numbered(30), {Key::PageDown, Key::PageDown, Key::Down, Key::End});
  EXPECT_EQ(shots[1].row(1), "23");
  EXPECT_EQ(shots[1].row(8), "30");
  EXPECT_EQ(shots[1].row(9), "");
  EXPECT_EQ(shots[1].percent(), "100.00%");
  for (size_t i = 2; i <= 4; ++i) EXPECT_EQ(shots[i].row(1), "23") << i;
}

TEST_F(ViewerScreen, EveryKeyForTheEndsOfTheFile) {
  for (Key::Code end : {Key::F9, Key::End, Key::CtrlPageDown}) {
    for (Key::Code home : {Key::F8, Key::Home, Key::CtrlPageUp}) {
      const auto shots = view(numbered(100), {end, home});
      EXPECT_EQ(shots[1].row(1), "78");
      EXPECT_EQ(shots[1].row(23), "100");
      EXPECT_EQ(shots[1].percent(), "100.00%");
      EXPECT_EQ(shots[2].row(1), "1");
      fileStatusStore().clear();
    }
  }
}

TEST_F(ViewerScreen, ALineThatEndsInNothingCountsAsOne) {
  const Shot shot = last(numbered(30) + "last", {Key::End});
  EXPECT_EQ(shot.row(23), "last");
}

TEST_F(ViewerScreen, ALongLineIsWrappedAndScrolledByRows) {
  std::string line;
  for (int i = 0; i < 80; ++i) line += std::string(78, static_cast<char>('A' + i % 26)) + "--";
  const auto shots = view(line, {Key::Down, Key::PageDown, Key::End, Key::Up, Key::Home});
  EXPECT_EQ(shots[0].row(1), std::string(78, 'A') + "--");
  EXPECT_EQ(shots[0].row(2)[0], 'B');
  EXPECT_EQ(shots[1].row(1)[0], 'B');
  EXPECT_EQ(shots[2].row(1)[0], 'X') << "what was in the last row";
  EXPECT_EQ(shots[3].row(23)[0], 'B') << "its last row";
  EXPECT_EQ(shots[3].percent(), "100.00%");
  EXPECT_EQ(shots[4].row(23)[0], 'A');
  EXPECT_EQ(shots[5].row(1)[0], 'A');
  EXPECT_EQ(shots[5].row(2)[0], 'B') << "from its beginning";
}

TEST_F(ViewerScreen, WrappedRowsOfTheLineAboveCountOneAtATime) {
  const auto shots = view(std::string(170, 'x') + "\nshort\n" + numbered(40),
                          {Key::Down, Key::Down, Key::Down, Key::Up, Key::Up});
  EXPECT_EQ(shots[2].row(1), std::string(10, 'x'));
  EXPECT_EQ(shots[3].row(1), "short");
  EXPECT_EQ(shots[4].row(1), std::string(10, 'x'));
  EXPECT_EQ(shots[5].row(1), std::string(80, 'x'));
}

TEST_F(ViewerScreen, ALineAsLongAsTheScreenTakesOneRow) {
  const Shot shot = last(std::string(80, 'x') + "\nbelow\n");
  EXPECT_EQ(shot.row(2), "below");
}

TEST_F(ViewerScreen, WithoutWrappingALineThatGoesOnIsMarked) {
  GlobalOptions::ViewerWrap = false;
  const Shot shot = last(std::string(81, 'x') + "\n" + std::string(80, 'y') + "\n");
  EXPECT_EQ(shot.row(1), std::string(79, 'x') + "\xC2\xBB");
  const int background = colourOf(Colour::FileViewer) & 0xF0;
  EXPECT_EQ(shot.at(79, 1).attr, background | (colourOf(Colour::Tagged) & 0x0F));
  EXPECT_EQ(shot.row(2), std::string(80, 'y'));
}

TEST_F(ViewerScreen, WithoutWrappingTheColumnsScrollToTheRightWithoutEnd) {
  GlobalOptions::ViewerWrap = false;
  const auto shots =
      view("0123456789", {Key::Left, Key::Right, Key::Right, Key::CtrlRight, Key::CtrlRight,
                          Key::CtrlLeft, Key::CtrlLeft, Key::Left, Key::Left, Key::Left});
  EXPECT_EQ(shots[1].row(1), "0123456789");
  EXPECT_EQ(shots[2].row(1), "456789");
  EXPECT_EQ(shots[3].row(1), "89");
  EXPECT_EQ(shots[5].row(1), "");
  EXPECT_EQ(shots[7].row(1), "89") << "it had gone on to column 88";
  EXPECT_EQ(shots[8].row(1), "456789");
  EXPECT_EQ(shots[10].row(1), "0123456789");
}

TEST_F(ViewerScreen, WrappedTextDoesNotScrollSideways) {
  const auto shots = view("0123456789", {Key::Right, Key::CtrlRight});
  EXPECT_EQ(shots[2].row(1), "0123456789");
}

TEST_F(ViewerScreen, UnwrappingKeepsWhatIsInTheFirstRow) {
  std::string line;
  for (int i = 0; i < 60; ++i) line += std::string(80, static_cast<char>('A' + i % 26));
  const auto shots =
      view(numbered(3) + line + "\n" + numbered(50), {Key::PageDown, Key::F2, Key::F2});
  EXPECT_EQ(shots[1].row(1)[0], 'T');
  EXPECT_EQ(shots[2].row(1)[0], 'A') << "the line begins there";
  EXPECT_EQ(shots[2].row(2), "1");
  EXPECT_EQ(shots[3].row(1)[0], 'A');
}

TEST_F(ViewerScreen, AHexRowHasItsOffsetItsBytesAndTheirCharacters) {
  std::string bytes;
  for (int i = 0; i < 40; ++i) bytes += static_cast<char>(i * 7);
  const auto shots = view(bytes, {Key::F4});
  EXPECT_EQ(shots[1].text(0, 1, 64),
            "00000000 00 07 0E 15 \u2502 1C 23 2A 31 \u2502 38 3F 46 4D \u2502 54 5B 62 69  ");
  EXPECT_EQ(shots[1].text(64, 1, 4), ".\u2022\u266B\u00A7");
  EXPECT_EQ(shots[1].text(72, 1, 8), "8?FMT[bi");
  EXPECT_EQ(shots[1].text(0, 3, 9), "00000020 ");
  EXPECT_EQ(shots[1].row(4), "");
  EXPECT_EQ(shots[1].percent(), "100.00%");
}

TEST_F(ViewerScreen, HexRowsMoveByRowsAndBytes) {
  std::string bytes(4096, 'x');
  const auto shots = view(bytes, {Key::F4, Key::Down, Key::Right, Key::CtrlRight, Key::Left,
                                  Key::CtrlLeft, Key::Up, Key::Up, Key::Left});
  EXPECT_EQ(shots[2].text(0, 1, 8), "00000010");
  EXPECT_EQ(shots[3].text(0, 1, 8), "00000011");
  EXPECT_EQ(shots[4].text(0, 1, 8), "00000039");
  EXPECT_EQ(shots[5].text(0, 1, 8), "00000038");
  EXPECT_EQ(shots[6].text(0, 1, 8), "00000010");
  EXPECT_EQ(shots[7].text(0, 1, 8), "00000000");
  EXPECT_EQ(shots[8].text(0, 1, 8), "00000000");
  EXPECT_EQ(shots[9].text(0, 1, 8), "00000000");
}

TEST_F(ViewerScreen, HexPagesAndTheEnd) {
  const auto shots = view(std::string(1000, 'x'), {Key::F4, Key::PageDown, Key::PageUp, Key::End});
  EXPECT_EQ(shots[2].text(0, 1, 8), "00000160");
  EXPECT_EQ(shots[3].text(0, 1, 8), "00000000");
  EXPECT_EQ(shots[4].text(0, 1, 8), "00000278") << "23 rows before the end";
  EXPECT_EQ(shots[4].text(0, 23, 8), "000003D8");
  EXPECT_EQ(shots[4].percent(), "100.00%");
}

TEST_F(ViewerScreen, BackFromHexTheTopIsTheLineOfTheByte) {
  const auto shots = view(numbered(1000), {Key::F4, Key::Down, Key::Down, Key::F4});
  EXPECT_EQ(shots[4].row(1), "14") << "byte 32";
}

TEST_F(ViewerScreen, TabsAreAsWideAsTheUserSays) {
  const auto shots = view("\tx", {Key::alt('1'), Key::alt('2'), Key::alt('3'), Key::alt('4'),
                                  Key::alt('5'), Key::alt('6'), Key::alt('7'), Key::alt('8')});
  for (int width = 1; width <= 8; ++width) {
    EXPECT_EQ(shots[static_cast<size_t>(width)].row(1),
              std::string(static_cast<size_t>(width), ' ') + "x");
  }
  EXPECT_EQ(GlobalOptions::TabWidth, 8);
}

TEST_F(ViewerScreen, WhatLayBeneathIsThereAgainAtTheEnd) {
  setCursorShape(14);
  GlobalOptions::Clock = true;
  console->writeWide(3, 3, L"beneath", 7);
  view("text");
  EXPECT_EQ(rowText(3, 3, 7), "beneath");
  EXPECT_EQ(console->cursorSize(), 14);
  EXPECT_TRUE(GlobalOptions::Clock);
}

TEST_F(ViewerScreen, EveryWayOutTellsItsKey) {
  const struct {
    Key::Code key, result;
  } rows[] = {{Key::F10, Key::Esc},         {Key::Esc, Key::Esc},         {Key::AltUp, Key::AltUp},
              {Key::AltDown, Key::AltDown}, {Key::ShiftF4, Key::ShiftF4}, {Key::AltF4, Key::AltF4}};
  for (const auto& row : rows) {
    view("text", {row.key});
    EXPECT_EQ(left, row.result);
    drainEvents();
  }
}

TEST_F(ViewerScreen, TheEditorOpensAtTheTopLine) {
  view(numbered(100), {Key::PageDown, Key::ShiftF4});
  EXPECT_EQ(topLine, 9 * 2 + 13 * 3);
  drainEvents();
  viewAgain({Key::F4, Key::Right, Key::Right, Key::ShiftF4});
  EXPECT_EQ(topLine, 9 * 2 + 13 * 3) << "in hex mode the line of the first byte";
  drainEvents();
}

TEST_F(ViewerScreen, AnErrorAtOpeningIsTold) {
  std::string shown;
  std::thread user([&] {
    waitUntil([&] { return (shown = screenText()).find("No such file") != std::string::npos; });
    queueKey(Key::Enter);
  });
  EXPECT_EQ(viewFile(dir.wide("missing")), Key::Esc);
  user.join();
  EXPECT_NE(shown.find("missing"), std::string::npos);
}

}  // namespace
