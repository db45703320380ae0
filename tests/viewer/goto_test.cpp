// Going to an offset, to a line, to what is searched.

#include "editor/text/text_encoding.h"
#include "options/colours.h"
#include "options/options.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerGoto : public ViewerTest {
 protected:
  static bool isMarked(const Shot& shot, int x, int y) {
    return shot.at(x, y).attr == colourOf(Colour::Highlight);
  }
  // Presses the key, types the text into the dialog that comes up, and Enter.
  void queueAnswer(Key::Code key, const std::string& text) {
    queueKey(key);
    queueText(text);
    queueKey(Key::Enter);
  }
  // The text of the box that comes up for the keys that were queued; it is left with Enter.
  std::string boxOf(const std::string& part) {
    std::string shown;
    std::thread user([&] {
      EXPECT_TRUE(waitUntil([&] { return (shown = screenText()).find(part) != std::string::npos; }))
          << part;
      queueKey(Key::Enter);
      queueKey(Key::F10);
    });
    Recorder viewer(dir.wide("file"));
    viewer.view(AnyPosition);
    user.join();
    shots = viewer.shots;
    return shown;
  }
  std::vector<Shot> shots;
};

TEST_F(ViewerGoto, AnOffsetIsShownInItsLineAsAHit) {
  queueAnswer(Key::alt('o'), "2b");  // 43: the second digit of line 18
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(1), "18");
  EXPECT_FALSE(isMarked(shot, 0, 1));
  EXPECT_TRUE(isMarked(shot, 1, 1));
}

TEST_F(ViewerGoto, WithoutWrappingTheColumnsMoveToTheOffsetToo) {
  GlobalOptions::ViewerWrap = false;
  queueAnswer(Key::alt('o'), "96");
  const Shot shot = last(std::string(150, 'x') + "!" + std::string(20, 'y'));
  EXPECT_EQ(shot.text(77, 1, 3), "x!\u00BB");
  EXPECT_TRUE(isMarked(shot, 78, 1));
  EXPECT_FALSE(isMarked(shot, 77, 1));
}

TEST_F(ViewerGoto, InHexTheRowsBeginAtTheOffsetItself) {
  queueKey(Key::F4);
  queueAnswer(Key::alt('o'), "2Bxyz");
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.text(0, 1, 9), "0000002B ");
  EXPECT_TRUE(isMarked(shot, 64, 1));
  EXPECT_FALSE(isMarked(shot, 65, 1));
  EXPECT_FALSE(isMarked(shot, 9, 1));
}

TEST_F(ViewerGoto, AnOffsetBehindTheEndTellsTheSizeAndTheViewStays) {
  dir.write("file", "0123456789");
  queueAnswer(Key::alt('o'), "a");
  EXPECT_NE(boxOf("Only").find("Only 10 bytes in this file"), std::string::npos);
  EXPECT_FALSE(isMarked(shots.back(), 0, 1));
}

TEST_F(ViewerGoto, AnOffsetBeyondAllNumbersIsBehindTheEnd) {
  dir.write("file", "0123456789");
  queueAnswer(Key::alt('o'), "FFFFFFFFFFFFFFFF");
  EXPECT_NE(boxOf("Only").find("Only 10 bytes in this file"), std::string::npos);
}

TEST_F(ViewerGoto, EscInTheDialogChangesNothing) {
  queueKey(Key::alt('o'));
  queueText("2c");
  queueKey(Key::Esc);
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(1), "1");
}

TEST_F(ViewerGoto, ALineIsFoundByItsNumber) {
  queueAnswer(Key::alt('l'), "500");
  EXPECT_EQ(last(numbered(1000)).row(1), "500");
  queueAnswer(Key::alt('l'), "1");
  EXPECT_EQ(viewAgain().back().row(1), "1");
}

TEST_F(ViewerGoto, LinesAreCountedWithoutWrapping) {
  queueAnswer(Key::alt('l'), "2");
  EXPECT_EQ(last(std::string(1000, 'x') + "\nsecond\n" + numbered(50)).row(1), "second");
}

TEST_F(ViewerGoto, ALineBehindTheEndTellsHowManyThereAreAndTheViewStays) {
  dir.write("file", numbered(50));
  queueKey(Key::Down);
  queueAnswer(Key::alt('l'), "51");
  EXPECT_NE(boxOf("Only").find("Only 50 lines in this file"), std::string::npos);
  EXPECT_EQ(shots.back().row(1), "2");
}

TEST_F(ViewerGoto, AHitIsMarkedInTheFifthRow) {
  queueAnswer(Key::F7, "50");
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(5), "50");
  EXPECT_TRUE(isMarked(shot, 0, 5));
  EXPECT_TRUE(isMarked(shot, 1, 5));
  EXPECT_FALSE(isMarked(shot, 2, 5));
}

TEST_F(ViewerGoto, AHitNearTheBeginningStaysInItsRow) {
  queueAnswer(Key::F7, "3");
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(1), "1");
  EXPECT_TRUE(isMarked(shot, 0, 3));
}

TEST_F(ViewerGoto, ASearchBeginsAtTheTopAndGoesOnBehindTheHit) {
  queueKey(Key::PageDown);
  queueAnswer('/', "5");  // line 25
  queueKey(Key::ShiftF7);
  queueKey(Key::ShiftF7);
  shots = view(numbered(1000));
  EXPECT_EQ(shots[2].row(5), "25");
  EXPECT_EQ(shots[3].row(5), "35");
  EXPECT_EQ(shots[4].row(5), "45");
}

TEST_F(ViewerGoto, TheOtherDirectionGoesBackFromTheHit) {
  queueAnswer('/', "55");
  for (Key::Code key : {Key::ShiftF7, Key::AltF7, Key::ShiftF7}) queueKey(key);
  shots = view(numbered(1000));
  EXPECT_EQ(shots[1].row(5), "55");
  EXPECT_EQ(shots[2].row(5), "155");
  EXPECT_EQ(shots[3].row(5), "55");
  EXPECT_EQ(shots[4].row(5), "155") << "the direction itself stays";
  EXPECT_FALSE(searchValues().reverse);
}

TEST_F(ViewerGoto, AQuestionMarkSearchesBackwardFromTheBottomAndF7KeepsTheDirection) {
  queueKey(Key::End);
  queueAnswer('?', "5");
  queueAnswer(Key::F7, "4");
  shots = view(numbered(1000));
  EXPECT_EQ(shots[2].row(5), "995");
  EXPECT_EQ(shots[3].row(5), "994");
  EXPECT_TRUE(searchValues().reverse);
}

TEST_F(ViewerGoto, BackwardWithoutAHitItBeginsAtTheLastLineThatShows) {
  queueAnswer('?', "2");
  shots = view(numbered(1000));
  EXPECT_TRUE(isMarked(shots[1], 1, 5)) << "22: what lies in the last row, 23, isn't searched";
  EXPECT_EQ(shots[1].row(5), "22");
}

TEST_F(ViewerGoto, ANewSearchBeginsAtTheTopWhenTheHitShowsNoMore) {
  queueAnswer('/', "900");
  queueKey(Key::Home);
  queueAnswer('/', "7");
  shots = view(numbered(1000));
  EXPECT_EQ(shots[1].row(5), "900");
  EXPECT_TRUE(isMarked(shots[3], 0, 5));
  EXPECT_EQ(shots[3].row(5), "7");
}

TEST_F(ViewerGoto, WhatIsNotThereIsTold) {
  dir.write("file", numbered(50));
  queueAnswer('/', "nowhere");
  EXPECT_NE(boxOf("String").find("String not found"), std::string::npos);
}

TEST_F(ViewerGoto, ASearchForNothingDoesNothing) {
  shots = view(numbered(50), {Key::ShiftF7, Key::AltF7, Key::F7, Key::Enter});
  EXPECT_EQ(shots.back().row(1), "1");
}

TEST_F(ViewerGoto, EscInTheSearchDialogKeepsTextAndDirection) {
  searchValues().text = L"kept";
  queueKey('?');
  queueText("other");
  queueKey(Key::Esc);
  view(numbered(50));
  EXPECT_TRUE(searchValues().text == Westring(L"kept"));
  EXPECT_FALSE(searchValues().reverse);
}

TEST_F(ViewerGoto, AWrappedRowWithTheHitIsTheFifth) {
  std::string line;
  for (int i = 0; i < 60; ++i) line += std::string(78, static_cast<char>('A' + i % 26)) + "--";
  line.replace(40 * 80 + 10, 3, "hit");
  queueAnswer('/', "hit");
  const Shot shot = last(line + "\n");
  EXPECT_EQ(shot.text(10, 5, 3), "hit");
  for (int x = 10; x < 13; ++x) EXPECT_TRUE(isMarked(shot, x, 5));
}

TEST_F(ViewerGoto, AHitOverTheEndOfARowIsMarkedInBoth) {
  queueAnswer('/', "hit");
  const Shot shot = last(std::string(78, 'x') + "hit" + std::string(20, 'y'));
  EXPECT_TRUE(isMarked(shot, 78, 1));
  EXPECT_TRUE(isMarked(shot, 79, 1));
  EXPECT_TRUE(isMarked(shot, 0, 2));
  EXPECT_FALSE(isMarked(shot, 1, 2));
}

TEST_F(ViewerGoto, WithoutWrappingTheColumnsMoveToTheHitByFours) {
  GlobalOptions::ViewerWrap = false;
  queueAnswer('/', "hit");
  const Shot shot = last(std::string(150, 'x') + "hit" + std::string(20, 'y'));
  EXPECT_EQ(shot.text(74, 1, 6), "hityy\u00BB");
}

TEST_F(ViewerGoto, InHexTheCharactersOfTheHitAreMarked) {
  queueKey(Key::F4);
  queueAnswer('/', "hit");
  const Shot shot = last(std::string(1000, 'x') + "hit" + std::string(1000, 'y'));
  EXPECT_EQ(shot.text(0, 5, 8), "000003E0");
  EXPECT_EQ(shot.text(72, 5, 3), "hit");
  for (int x = 64; x < 80; ++x) EXPECT_EQ(isMarked(shot, x, 5), x >= 72 && x < 75) << x;
}

TEST_F(ViewerGoto, OpenedAtAHitOfTheLastSearchAllOfItIsMarked) {
  searchValues().text = L"fifty";
  const Shot shot = last(numbered(49) + "fifty\n" + numbered(50), {}, 9 * 2 + 40 * 3);
  EXPECT_TRUE(isMarked(shot, 0, 5));
  EXPECT_TRUE(isMarked(shot, 4, 5));
  EXPECT_FALSE(isMarked(shot, 5, 5));
}

TEST_F(ViewerGoto, AHitIsMarkedByItsCharactersInEveryEncoding) {
  const std::wstring text = L"one\n\t\u00E9\u20AC hit!\n";
  for (TextFormat format : {TextFormat::Utf8, TextFormat::Utf16Le, TextFormat::Utf16Be,
                            TextFormat::Utf32Le, TextFormat::Utf32Be}) {
    std::string bytes(markOf(format));
    encodeText(text, {format}, bytes);
    queueAnswer('/', "HIT");
    const Shot shot = last(bytes);
    EXPECT_EQ(shot.row(2), "        \u00E9\u20AC hit!");
    for (int x = 8; x < 16; ++x) EXPECT_EQ(isMarked(shot, x, 2), x >= 11 && x < 14) << x;
    fileStatusStore().clear();
  }
}

TEST_F(ViewerGoto, CaseAndWholeWordsCountAsTheDialogSays) {
  searchValues().caseSensitive = true;
  searchValues().wholeWord = true;
  queueAnswer('/', "word");
  queueKey(Key::ShiftF7);
  shots = view("Word\nwords\nword\nsword\n word!\n");
  EXPECT_TRUE(isMarked(shots[1], 0, 3));
  EXPECT_TRUE(isMarked(shots[2], 1, 5));
}

}  // namespace
