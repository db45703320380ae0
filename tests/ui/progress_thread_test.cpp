#include "ui/progress_thread.h"

#include "foundation/text_format.h"
#include "options/colours.h"
#include "ui/ui_test.h"

namespace {

class ProgressThreadTest : public UiTest {
 protected:
  static bool isShown(const std::wstring& text) { return findRow(text) >= 0; }
  static int findRow(const std::wstring& text) {
    for (int y = 0; y < console->rows(); ++y) {
      if (textAt(0, y, console->columns()).find(text) != std::wstring::npos) return y;
    }
    return -1;
  }
};

// Counts its draws; draws nothing.
class CountingProgress : public ProgressIndicatorThread {
 public:
  CountingProgress() { begin(); }
  ~CountingProgress() override { finish(); }
  int updates() const { return updates_; }

 protected:
  void update() override { ++updates_; }

 private:
  std::atomic<int> updates_{0};
};

}  // namespace

TEST_F(ProgressThreadTest, AnOperationOf900MillisecondsShowsNoWindow) {
  const std::vector<Cell> before = screen();
  std::atomic<int> files{5};
  {
    DirReadProgress progress(&files);
    sleepMs(900);
    EXPECT_EQ(screen(), before);
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, ALongerOperationOpensItsWindowAndClosesItAtTheEnd) {
  const std::vector<Cell> before = screen();
  const double start = clockSeconds();
  std::atomic<int> files{123};
  {
    DirReadProgress progress(&files);
    ASSERT_TRUE(waitUntil([] { return isShown(L"Files: 123"); }));
    EXPECT_GE(clockSeconds() - start, 0.99);
    EXPECT_EQ(textAt(22, 6, 1), L"\u2554");  // 35 by 6 cells: left (80-35)/2, top (25-6)/3
    EXPECT_EQ(textAt(56, 11, 1), L"\u255D");
    EXPECT_EQ(textAt(22 + 1 + 4, 6 + 1 + 1, 19), L"Reading directory: ");
    EXPECT_EQ(textAt(22 + 1 + 4, 6 + 1 + 2, 12), L"Files: 123  ");
    EXPECT_EQ(attrAt(27, 8), colourOf(Colour::Messages));
    files = 1234567;
    const std::wstring grouped = formatSize(1234567, 12).data();
    ASSERT_TRUE(waitUntil([&grouped] { return isShown(L"Files: " + grouped + L" "); }));
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, TheSpinnerTurns) {
  std::atomic<int> files{1};
  DirReadProgress progress(&files);
  std::wstring seen;
  ASSERT_TRUE(waitUntil([&seen] {
    const std::wstring now = textAt(22 + 1 + 23, 6 + 1 + 1, 1);
    if (isShown(L"Files:") && now != L" " && (seen.empty() || seen.back() != now[0])) seen += now;
    return seen.size() >= 5;
  }));
  EXPECT_EQ(seen.substr(0, 5), L"-\\|/-");
}

TEST_F(ProgressThreadTest, AFileReadShowsItsTitleAndABar) {
  const std::vector<Cell> before = screen();
  std::atomic<int64_t> position{250}, total{1000};
  {
    FileReadProgress progress(&position, &total, "Reading File");
    const std::wstring quarter = std::wstring(9, L'\u2588') + std::wstring(27, L'\u2591');
    ASSERT_TRUE(waitUntil([&quarter] { return isShown(quarter); }));
    EXPECT_EQ(textAt(20, 6, 1), L"\u2554");  // 40 by 5 cells
    EXPECT_EQ(textAt(59, 10, 1), L"\u255D");
    EXPECT_EQ(findRow(L"Reading File"), 7);
    EXPECT_EQ(textAt(21 + 13, 7, 12), L"Reading File");
    EXPECT_EQ(textAt(21 + 1, 9, 36), quarter);
    position = 1000;
    ASSERT_TRUE(waitUntil([] { return isShown(std::wstring(36, L'\u2588')); }));
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, ATotalBelowOneDrawsTheWindowAndLeavesTheBarEmpty) {
  std::atomic<int64_t> position{250}, total{0};
  FileReadProgress progress(&position, &total, "Reading File");
  EXPECT_TRUE(waitUntil([] { return isShown(std::wstring(36, L'\u2591')); }));
}

TEST_F(ProgressThreadTest, UpdatesComeFourTimesASecond) {
  CountingProgress progress;
  const double start = clockSeconds();
  ASSERT_TRUE(waitUntil([&progress] { return progress.updates() >= 4; }));
  EXPECT_GE(clockSeconds() - start, 1.0 + 3 * 0.25 - 0.02);
}

TEST_F(ProgressThreadTest, FinishingEndsTheDrawingAndMayBeRepeated) {
  const std::vector<Cell> before = screen();
  std::atomic<int> files{1};
  DirReadProgress progress(&files);
  ASSERT_TRUE(waitUntil([] { return isShown(L"Files:"); }));
  progress.finish();
  EXPECT_EQ(screen(), before);
  progress.finish();
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, TheWindowLeavesTheTextStateOfTheProgramAlone) {
  setTextPos(7, 8);
  std::atomic<int64_t> position{250}, total{1000};
  FileReadProgress progress(&position, &total, "Reading File");
  ASSERT_TRUE(waitUntil([] { return isShown(L"Reading File"); }));
  EXPECT_EQ(textState.textX, 7);
  EXPECT_EQ(textState.textY, 8);
}

TEST_F(ProgressThreadTest, ObjectsThatEndAtOnceNeverDraw) {
  for (int i = 0; i < 50; ++i) {
    CountingProgress progress;
    progress.finish();
    EXPECT_EQ(progress.updates(), 0);
  }
}
