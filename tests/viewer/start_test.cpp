// Where the viewer opens a file, and what it remembers of it.

#include <filesystem>

#include "options/colours.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerStart : public ViewerTest {
 protected:
  HISTREC* record() const { return fileStatusStore().find(dir.wide("file")); }
  HISTREC& makeRecord() const { return fileStatusStore().record(dir.wide("file")); }
  static bool isMarked(const Shot& shot, int x, int y) {
    return shot.at(x, y).attr == colourOf(Colour::Highlight);
  }
};

TEST_F(ViewerStart, AFileIsShownAgainWhereItWasLeft) {
  EXPECT_EQ(last(numbered(1000), {Key::PageDown, Key::Down}).row(1), "24");
  EXPECT_EQ(viewAgain().back().row(1), "24");
}

TEST_F(ViewerStart, ANewRecordHasNoFormatOfItsOwn) {
  view(numbered(5));
  ASSERT_NE(record(), nullptr);
  EXPECT_EQ(record()->format, TextFormat::Undetermined);
  EXPECT_EQ(record()->viewerPosition, 0);
  EXPECT_EQ(record()->topLine, 0);
  EXPECT_TRUE(record()->steps.empty());
}

TEST_F(ViewerStart, AfterAnEditItOpensOnTheTopLineOfTheEditor) {
  view(numbered(1000), {Key::PageDown});
  record()->viewerPosition = HISTREC::Unset;
  record()->topLine = 500;
  EXPECT_EQ(viewAgain().back().row(1), "501");
  EXPECT_NE(record()->viewerPosition, HISTREC::Unset);
}

TEST_F(ViewerStart, TheEditorsTopLineCountsWithoutWrappingAndMayBeGone) {
  dir.write("file", std::string(1000, 'x') + "\n" + numbered(50));
  makeRecord().topLine = 3;
  EXPECT_EQ(viewAgain().back().row(1), "3");
  dir.write("file", numbered(5));
  record()->viewerPosition = HISTREC::Unset;
  record()->topLine = 100;
  EXPECT_EQ(viewAgain().back().row(1), "1");
}

TEST_F(ViewerStart, APlaceBehindTheEndIsNotUsed) {
  makeRecord().viewerPosition = 10;
  EXPECT_EQ(last("0123456789").row(1), "0123456789");
  EXPECT_EQ(last("one\ntwo\n", {}, 8).row(1), "one");
  EXPECT_FALSE(isMarked(last("one\ntwo\n", {}, 8), 0, 1));
}

TEST_F(ViewerStart, AGivenPlaceIsShownAsAHitFourRowsBelowTheTop) {
  const Shot shot = last(numbered(1000), {}, 9 * 2 + 40 * 3 + 1);
  EXPECT_EQ(shot.row(5), "50");
  EXPECT_FALSE(isMarked(shot, 0, 5));
  EXPECT_TRUE(isMarked(shot, 1, 5));
  EXPECT_FALSE(isMarked(shot, 2, 5));
  EXPECT_EQ(shot.row(1), "46");
}

TEST_F(ViewerStart, APlaceAboveTwoGigabytesIsKept) {
  constexpr int64_t Far = (int64_t{5} << 30) + 100;
  dir.write("file", "start\n");
  std::filesystem::resize_file(dir.path("file"), static_cast<uintmax_t>(2 * Far));
  viewAgain({Key::F4}, Far);
  EXPECT_GT(record()->viewerPosition, int64_t{4} << 30);
  viewAgain();
  EXPECT_GT(record()->viewerPosition, int64_t{4} << 30);
}

TEST_F(ViewerStart, AFormatChosenInTheEditorIsUsedAMarkComesBeforeIt) {
  HISTREC& chosen = makeRecord();
  chosen.format = TextFormat::CodePage;
  chosen.page = 437;
  EXPECT_EQ(last("\x80").row(1), "\xC3\x87");
  EXPECT_EQ(viewAgain().back().text(65, 0, 8), "CP437   ");
  EXPECT_EQ(record()->format, TextFormat::CodePage);
  const Shot marked = last("\xEF\xBB\xBFx");
  EXPECT_EQ(marked.text(65, 0, 8), "UTF-8   ");
  EXPECT_EQ(marked.row(1), "x") << "the mark isn't shown";
}

TEST_F(ViewerStart, ARelativeNameIsTheSameFile) {
  std::filesystem::path before = std::filesystem::current_path();
  view(numbered(1000), {Key::PageDown});
  std::filesystem::current_path(dir.path());
  queueKey(Key::F10);
  Recorder viewer(L"file");
  viewer.view(AnyPosition);
  EXPECT_EQ(viewer.shots[0].row(1), "23");
  EXPECT_EQ(viewer.shots[0].text(6, 0, static_cast<int>(dir.path("file").size())),
            dir.path("file"));
  std::filesystem::current_path(before);
}

TEST_F(ViewerStart, FilesThatAreNoTextHaveTheirErrors) {
  CViewer directory(dir.wide());
  EXPECT_EQ(directory.openResult(), EISDIR);
}

}  // namespace
