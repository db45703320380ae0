// A file that changes while it is viewed, without follow mode.

#include <filesystem>
#include <fstream>

#include "options/colours.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerChange : public ViewerTest {
 protected:
  void append(const std::string& text) const {
    std::ofstream(dir.path("file"), std::ios::binary | std::ios::app) << text;
  }
  void cutTo(uintmax_t size) const { std::filesystem::resize_file(dir.path("file"), size); }
};

TEST_F(ViewerChange, DownAtTheEndFindsWhatHasComeBehindIt) {
  afterShot = [&](size_t shots) {
    if (shots == 2) append("new\n");
  };
  const auto shots = view(numbered(30), {Key::End, Key::Down, Key::Down});
  EXPECT_EQ(shots[1].row(23), "30");
  EXPECT_EQ(shots[2].row(23), "new");
  EXPECT_EQ(shots[3].row(23), "new");
}

TEST_F(ViewerChange, EndFindsItToo) {
  afterShot = [&](size_t shots) {
    if (shots == 2) append(numbered(50));
  };
  const auto shots = view(numbered(30), {Key::End, Key::End});
  EXPECT_EQ(shots[2].row(23), "50");
}

TEST_F(ViewerChange, ALineThatIsContinuedIsShownWhole) {
  afterShot = [&](size_t shots) {
    if (shots == 1) append(" end\n");
  };
  const auto shots = view("begin", {Key::Up});
  EXPECT_EQ(shots[1].row(1), "begin end");
}

TEST_F(ViewerChange, AFileThatHasLostItsEndShowsItsNewEndAtTheNextKey) {
  afterShot = [&](size_t shots) {
    if (shots == 2) cutTo(18);
  };
  const auto shots = view(numbered(1000), {Key::End, 'x'});
  EXPECT_EQ(shots[1].row(23), "1000");
  EXPECT_EQ(shots[2].page(),
            (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TEST_F(ViewerChange, AnEmptiedFileShowsNothingAndGrowsAgain) {
  for (Key::Code hex : {Key::Code('x'), Key::F4}) {
    afterShot = [&](size_t shots) {
      if (shots == 3) cutTo(0);
      if (shots == 5) append("again\n");
    };
    const auto shots = view(numbered(1000), {hex, Key::End, Key::Up, Key::Up, Key::Home});
    EXPECT_TRUE(shots[4].page().empty());
    EXPECT_EQ(shots[4].percent(), "100.00%");
    EXPECT_NE(shots[5].row(1).find("again"), std::string::npos);
    fileStatusStore().clear();
  }
}

TEST_F(ViewerChange, InHexTheLastRowsShowToo) {
  afterShot = [&](size_t shots) {
    if (shots == 3) cutTo(1000);
  };
  const auto shots = view(std::string(5000, 'x'), {Key::F4, Key::End, 'x'});
  EXPECT_EQ(shots[3].text(0, 1, 8), "00000278");
  EXPECT_EQ(shots[3].text(0, 23, 8), "000003D8");
}

TEST_F(ViewerChange, OtherBytesOfTheSameLengthAreShownAtTheNextKey) {
  afterShot = [&](size_t shots) {
    if (shots == 1) dir.write("file", "other\n");
  };
  EXPECT_EQ(view("bytes\n", {'x'})[1].row(1), "other");
}

TEST_F(ViewerChange, AHitThatIsGoneIsNotMarkedAnyMore) {
  searchValues().text = L"hit";
  afterShot = [&](size_t shots) {
    if (shots == 2) cutTo(3);
    if (shots == 3) append("\n  hit");
  };
  const auto shots = view("one\n  hit", {Key::ShiftF7, 'x', 'x', Key::ShiftF7});
  EXPECT_EQ(shots[1].at(2, 2).attr, colourOf(Colour::Highlight));
  EXPECT_EQ(shots[3].at(2, 2).attr, colourOf(Colour::FileViewer));
  EXPECT_EQ(shots[4].at(2, 2).attr, colourOf(Colour::Highlight)) << "found from the top";
}

TEST_F(ViewerChange, TheRowOfALongLineStaysAtTheTopWhenMoreComes) {
  afterShot = [&](size_t shots) {
    if (shots == 2) append("more");
  };
  std::string line;
  for (int i = 0; i < 60; ++i) line += std::string(80, static_cast<char>('A' + i % 26));
  const auto shots = view(line, {Key::PageDown, 'x'});
  EXPECT_EQ(shots[1].row(1), std::string(80, 'W'));
  EXPECT_EQ(shots[2].row(1), std::string(80, 'W'));
}

}  // namespace
