#include "ui/progress_thread.h"

#include "foundation/text_format.h"
#include "options/colours.h"
#include "support/manual_clock.h"
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
  explicit CountingProgress(CClock& clock) : ProgressIndicatorThread(clock) { begin(); }
  ~CountingProgress() override { finish(); }
  int updates() const { return updates_; }

 protected:
  void update() override { ++updates_; }

 private:
  std::atomic<int> updates_{0};
};

constexpr uint32_t FirstMs = 1000, NextMs = 250;

}  // namespace

TEST_F(ProgressThreadTest, AnOperationOfLessThanASecondShowsNoWindow) {
  const std::vector<Cell> before = screen();
  std::atomic<int> files{5};
  ManualClock clock;
  {
    DirReadProgress progress(&files, clock);
    clock.letPass(900);
    EXPECT_EQ(screen(), before);
    clock.letPass(99);
    EXPECT_EQ(screen(), before);
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, ALongerOperationOpensItsWindowAndClosesItAtTheEnd) {
  const std::vector<Cell> before = screen();
  std::atomic<int> files{123};
  ManualClock clock;
  {
    DirReadProgress progress(&files, clock);
    clock.letPass(FirstMs);
    ASSERT_TRUE(waitUntil([] { return isShown(L"Files: 123"); }));
    EXPECT_EQ(textAt(22, 6, 1), L"\u2554");  // 35 by 6 cells: left (80-35)/2, top (25-6)/3
    EXPECT_EQ(textAt(56, 11, 1), L"\u255D");
    EXPECT_EQ(textAt(22 + 1 + 4, 6 + 1 + 1, 19), L"Reading directory: ");
    EXPECT_EQ(textAt(22 + 1 + 4, 6 + 1 + 2, 12), L"Files: 123  ");
    EXPECT_EQ(attrAt(27, 8), colourOf(Colour::Messages));
    files = 1234567;
    clock.letPass(NextMs);
    const std::wstring grouped = formatSize(1234567, 12).data();
    ASSERT_TRUE(waitUntil([&grouped] { return isShown(L"Files: " + grouped + L" "); }));
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, TheSpinnerTurns) {
  std::atomic<int> files{1};
  ManualClock clock;
  DirReadProgress progress(&files, clock);
  std::wstring seen;
  for (uint32_t wait = FirstMs; seen.size() < 5; wait = NextMs) {
    clock.letPass(wait);
    clock.waitForWaiter();
    seen += textAt(22 + 1 + 23, 6 + 1 + 1, 1);
  }
  EXPECT_EQ(seen, L"-\\|/-");
}

TEST_F(ProgressThreadTest, AFileReadShowsItsTitleAndABar) {
  const std::vector<Cell> before = screen();
  std::atomic<int64_t> position{250}, total{1000};
  {
    ManualClock clock;
    FileReadProgress progress(&position, &total, "Reading File", clock);
    clock.letPass(FirstMs);
    const std::wstring quarter = std::wstring(9, L'\u2588') + std::wstring(27, L'\u2591');
    ASSERT_TRUE(waitUntil([&quarter] { return isShown(quarter); }));
    EXPECT_EQ(textAt(20, 6, 1), L"\u2554");  // 40 by 5 cells
    EXPECT_EQ(textAt(59, 10, 1), L"\u255D");
    EXPECT_EQ(findRow(L"Reading File"), 7);
    EXPECT_EQ(textAt(21 + 13, 7, 12), L"Reading File");
    EXPECT_EQ(textAt(21 + 1, 9, 36), quarter);
    position = 1000;
    clock.letPass(NextMs);
    ASSERT_TRUE(waitUntil([] { return isShown(std::wstring(36, L'\u2588')); }));
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, ATotalBelowOneDrawsTheWindowAndLeavesTheBarEmpty) {
  std::atomic<int64_t> position{250}, total{0};
  ManualClock clock;
  FileReadProgress progress(&position, &total, "Reading File", clock);
  clock.letPass(FirstMs);
  EXPECT_TRUE(waitUntil([] { return isShown(std::wstring(36, L'\u2591')); }));
}

TEST_F(ProgressThreadTest, UpdatesComeFourTimesASecondOnceTheFirstIsOver) {
  ManualClock clock;
  CountingProgress progress(clock);
  clock.letPass(FirstMs - 1);
  EXPECT_EQ(progress.updates(), 0);
  clock.letPass(1);
  for (int updates = 1; updates < 4; ++updates) {
    ASSERT_TRUE(clock.waitForWaiter());
    EXPECT_EQ(progress.updates(), updates);
    clock.letPass(NextMs - 1);
    EXPECT_EQ(progress.updates(), updates);
    clock.letPass(1);
  }
}

TEST_F(ProgressThreadTest, FinishingEndsTheDrawingAndMayBeRepeated) {
  const std::vector<Cell> before = screen();
  std::atomic<int> files{1};
  ManualClock clock;
  DirReadProgress progress(&files, clock);
  clock.letPass(FirstMs);
  ASSERT_TRUE(waitUntil([] { return isShown(L"Files:"); }));
  progress.finish();
  EXPECT_EQ(screen(), before);
  progress.finish();
  EXPECT_EQ(screen(), before);
}

TEST_F(ProgressThreadTest, TheWindowLeavesTheTextStateOfTheProgramAlone) {
  setTextPos(7, 8);
  std::atomic<int64_t> position{250}, total{1000};
  ManualClock clock;
  FileReadProgress progress(&position, &total, "Reading File", clock);
  clock.letPass(FirstMs);
  ASSERT_TRUE(waitUntil([] { return isShown(L"Reading File"); }));
  EXPECT_EQ(textState.textX, 7);
  EXPECT_EQ(textState.textY, 8);
}

TEST_F(ProgressThreadTest, ObjectsThatEndAtOnceNeverDraw) {
  for (int i = 0; i < 50; ++i) {
    CountingProgress progress(systemClock());
    progress.finish();
    EXPECT_EQ(progress.updates(), 0);
  }
}
