#include "viewer/view_colours.h"

#include <algorithm>
#include <map>
#include <random>

#include "options/colours.h"
#include "options/options.h"
#include "support/files.h"
#include "viewer/viewer_test.h"

namespace {

constexpr char Definitions[] =
    "[Test:*]\n"
    "blockcomment:red:/*:*/\n"
    "string:green:\":\"\n"
    "number:white\n"
    "linecomment:cyan:#\n";
constexpr char Foregrounds[] = "0123456789ABCDEF";
constexpr int Foreground = 0x0F;

class ViewColoursTest : public ViewerTest {
 protected:
  void SetUp() override {
    ViewerTest::SetUp();
    setenv("HOME", dir.path().c_str(), 1);
    setenv("TD_SHARE", dir.path().c_str(), 1);
    dir.write("syntax.ini", Definitions);
  }

  void open(const std::string& content) {
    dir.write("file", content);
    ASSERT_EQ(file.open(dir.wide("file")), 0);
    colours.load(dir.wide("file"));
  }
  // The foreground digits of the line that starts there, '.' for the default colour.
  std::string at(int64_t start) {
    const ViewedLine line = file.lineAt(start);
    const std::wstring text = LineCells(file).text(line, 0, 200);
    CellString cells(text.c_str(), colourOf(Colour::FileViewer));
    colours.paint(line, 0, cells);
    return digits(cells);
  }
  static std::string digits(const CellString& cells) {
    std::string result;
    for (int i = 0; i < cells.length(); ++i) {
      const bool isPlain = cells[i].attr == colourOf(Colour::FileViewer);
      result += isPlain ? '.' : Foregrounds[cells[i].attr & Foreground];
    }
    return result;
  }
  static std::string row(const Shot& shot, int y, int width) {
    CellString cells;
    for (int x = 0; x < width; ++x) cells.append(shot.at(x, y).ch, shot.at(x, y).attr);
    return digits(cells);
  }

  ViewedFile file;
  ViewColours colours{file};
};

TEST_F(ViewColoursTest, EachLineKnowsWhatIsOpenBeforeIt) {
  open("a /* b\n12\n*/ 12\n");
  EXPECT_EQ(at(10), "44.77");
  EXPECT_EQ(at(0), "..4444");
  EXPECT_EQ(at(7), "44");
}

TEST_F(ViewColoursTest, ALineLooksAlikeFromWhereverItIsReached) {
  std::mt19937 random(7);
  constexpr const char* Pieces[] = {"12 ", "/* ", "*/ ", "\" ", "text ", "# ", "\n", "\n", "\n"};
  std::string content;
  while (content.size() < 40000) content += Pieces[random() % std::size(Pieces)];
  open(content);
  std::map<int64_t, std::string> inOrder;
  for (int64_t start = 0; start < file.size(); start = file.nextLine(start)) {
    inOrder[start] = at(start);
  }
  // Anew, in no order: every walk begins somewhere else.
  colours.load(dir.wide("file"));
  std::vector<int64_t> starts;
  for (const auto& [start, digits] : inOrder) starts.push_back(start);
  std::shuffle(starts.begin(), starts.end(), random);
  for (int64_t start : starts) ASSERT_EQ(at(start), inOrder[start]) << start;
}

TEST_F(ViewColoursTest, FarFromWhatIsKnownTheLinesALittleAboveTell) {
  const std::string filler(1023, 'x');
  std::string content = "/*\n";
  while (content.size() < 5 * 1024 * 1024) content += filler + "\n";
  const auto near = static_cast<int64_t>(content.size());
  content += "12 /*\n12\n";
  open(content);
  // What is open from the beginning on is too far above to be seen.
  EXPECT_EQ(at(near), "77.44");
  EXPECT_EQ(at(near + 6), "44");
  // A guess isn't remembered: from the beginning on everything is known.
  for (int64_t start = 0; start < near; start = file.nextLine(start)) at(start);
  EXPECT_EQ(at(near), "44444");
}

TEST_F(ViewColoursTest, AMarkAtTheBeginningIsNoText) {
  open("\xEF\xBB\xBF/*\n12\n");
  EXPECT_EQ(at(6), "44");
  EXPECT_EQ(at(3), "44");
}

TEST_F(ViewColoursTest, AFileThatGrowsKeepsWhatWasFound) {
  open("/*\n12");
  EXPECT_EQ(at(3), "44");
  dir.write("file", "/*\n12*/ 12\n12\n");
  EXPECT_EQ(file.refresh(), FileChange::Grown);
  EXPECT_EQ(at(3), "4444.77");
  EXPECT_EQ(at(11), "77");
}

TEST_F(ViewColoursTest, AFileThatWasRewrittenIsLookedAtAnew) {
  const std::string filler = std::string(8000, ' ') + "\n";
  open("/*\n" + filler + "12\n");
  const auto last = static_cast<int64_t>(3 + filler.size());
  EXPECT_EQ(at(last), "44");
  dir.write("file", "--\n" + filler + "12\n");
  setTime(dir.path("file"), 1000);
  EXPECT_EQ(file.refresh(), FileChange::Rewritten);
  EXPECT_EQ(at(last), "77");
}

TEST_F(ViewColoursTest, AnotherEncodingIsLookedAtAnew) {
  const std::string filler(8000, '\n');
  open("/*" + filler + "12\n");
  const auto last = static_cast<int64_t>(2 + filler.size());
  EXPECT_EQ(at(last), "44");
  file.setEncoding(TextEncoding{TextFormat::Utf16Le});
  file.setEncoding(TextEncoding{TextFormat::CodePage, 850});
  EXPECT_EQ(at(last), "44");
}

TEST_F(ViewColoursTest, SwitchedOffCellsStayAsTheyAre) {
  open("12\n");
  colours.off();
  EXPECT_EQ(at(0), "..");
}

TEST_F(ViewColoursTest, TheScreenShowsThemAndAltHSwitches) {
  const std::vector<Shot> shots = view("12 # a\n/* 1\n1 */ 1\n", {Key::alt('h'), Key::alt('h')});
  ASSERT_EQ(shots.size(), 3U);
  for (int shot : {0, 2}) {
    EXPECT_EQ(row(shots[static_cast<size_t>(shot)], 1, 7), "77.333.");
    EXPECT_EQ(row(shots[static_cast<size_t>(shot)], 2, 7), "4444...");
    EXPECT_EQ(row(shots[static_cast<size_t>(shot)], 3, 7), "4444.7.");
  }
  EXPECT_EQ(row(shots[1], 1, 7), ".......");
}

TEST_F(ViewColoursTest, AltHReadsTheDefinitionsAnew) {
  dir.write("file", "12\n");
  queueKey(Key::alt('h'));
  queueKey(Key::alt('h'));
  queueKey(Key::F10);
  struct Rewriting : CViewer {
    using CViewer::CViewer;
    void draw() override {
      CViewer::draw();
      seen.push_back(Shot().at(0, 1).attr & Foreground);
      writeFile(definitions, "[Test:*]\nnumber:green\n");
    }
    std::string definitions;
    std::vector<int> seen;
  } viewer(dir.wide("file"));
  viewer.definitions = dir.path("syntax.ini");
  viewer.view(AnyPosition);
  EXPECT_EQ(viewer.seen, (std::vector<int>{7, 11, 2}));
}

TEST_F(ViewColoursTest, WrappedRowsAndMovedOnesShowTheirPartOfTheLine) {
  GlobalOptions::ViewerWrap = true;
  const std::string line = std::string(79, ' ') + "123 " + std::string(89, 'x') + " 12\n";
  const Shot wrapped = last(line);
  EXPECT_EQ(row(wrapped, 1, 80), std::string(79, '.') + "7");
  EXPECT_EQ(row(wrapped, 2, 5), "77...");
  EXPECT_EQ(row(wrapped, 3, 16), ".............77.");
  GlobalOptions::ViewerWrap = false;
  const Shot moved = last(line, {Key::CtrlRight});
  EXPECT_EQ(row(moved, 1, 80).find("777"), 39U);
}

TEST_F(ViewColoursTest, EachPartOfALongLineShowsItsColoursInWhateverOrder) {
  std::string line;
  std::string wanted;
  std::mt19937 random(5);
  while (line.size() < 20000) {
    const size_t plain = random() % 90;
    line += std::string(plain, 'x') + " 12 ";
    wanted += std::string(plain, '.') + ".77.";
  }
  open(line + "\n");
  const ViewedLine shown = file.lineAt(0);
  for (const int cell : {0, 4000, 4090, 4100, 80, 19000, 0, 8100}) {
    CellString cells(std::wstring(80, L' ').c_str(), colourOf(Colour::FileViewer));
    colours.paint(shown, cell, cells);
    EXPECT_EQ(digits(cells), wanted.substr(static_cast<size_t>(cell), 80)) << cell;
  }
}

TEST_F(ViewColoursTest, AHitIsMarkedOverTheColours) {
  const Shot shot = last("12 34\n", {}, 3);
  EXPECT_EQ(shot.at(3, 1).attr, colourOf(Colour::Highlight));
  EXPECT_EQ(shot.at(4, 1).attr & Foreground, 7);
}

TEST_F(ViewColoursTest, BytesAreNotColoured) {
  const Shot shot = last("12 34\n", {Key::F4});
  EXPECT_EQ(row(shot, 1, 80), std::string(80, '.'));
}

}  // namespace
