#include "fileops/progress.h"

#include <cstdint>

#include "fileops/fileops_test.h"

namespace {

std::string bytes(const Westring& text) {
  return toUtf8(text).data();
}

}  // namespace

TEST(ProgressText, TheBarIsFilledInProportionAndNeverBeyond) {
  EXPECT_EQ(filledCells(36, 0, 100), 0);
  EXPECT_EQ(filledCells(36, 50, 100), 18);
  EXPECT_EQ(filledCells(36, 99, 100), 35);
  EXPECT_EQ(filledCells(36, 100, 100), 36);
  EXPECT_EQ(filledCells(36, 500, 100), 36);
  EXPECT_EQ(filledCells(36, 5, 0), 0);
  EXPECT_EQ(filledCells(36, INT64_MAX / 2, INT64_MAX), 18);
  EXPECT_EQ(bytes(progressBar(4, 3)), "███░");
}

TEST(ProgressText, StatisticsShowTimeSpeedAndTimeLeft) {
  EXPECT_EQ(bytes(progressStatistics(10, 1000, 3000)), "Time: 0:10  BPS:     100  ETA: 0:20");
  EXPECT_EQ(bytes(progressStatistics(75.9, 759, 759)), "Time: 1:15  BPS:      10  ETA: 0:00");
  EXPECT_EQ(bytes(progressStatistics(1, 20000000, 40000000)),
            "Time: 0:01  BPS:  19531K  ETA: 0:01");
}

TEST(ProgressText, BeforeTheFirstByteEverythingIsZero) {
  EXPECT_EQ(bytes(progressStatistics(0, 0, 100)), "Time: 0:00  BPS:       0  ETA: 0:00");
  EXPECT_EQ(bytes(progressStatistics(3, 0, 100)), "Time: 0:03  BPS:       0  ETA: 0:00");
}

TEST(ProgressText, TheTimeLeftIsNeverNegative) {
  EXPECT_EQ(bytes(progressStatistics(2, 500, 0)), "Time: 0:02  BPS:     250  ETA: 0:00");
  EXPECT_EQ(bytes(progressStatistics(2, 500, 100)), "Time: 0:02  BPS:     250  ETA: 0:00");
  EXPECT_EQ(bytes(progressStatistics(-5, 500, 100)), "Time: 0:00  BPS:       0  ETA: 0:00");
}

TEST(ProgressText, TheWindowIsAsWideAsItsWidestText) {
  EXPECT_EQ(progressWidth(L"/a", L"/b", L""), 38);
  EXPECT_EQ(progressWidth(Westring(L'x', 41), L"/b", L""), 44);
  EXPECT_EQ(progressWidth(L"", Westring(L'x', 70), L""), 72);
}

TEST(ProgressText, ACopyShortensInTheMiddleAndAMoveKeepsTheEnd) {
  const Westring path = Westring(L"/first/") + Westring(L'm', 100) + L"/last";
  EXPECT_EQ(progressPath(path, PathCut::Middle).length(), 70);
  EXPECT_EQ(bytes(left(progressPath(path, PathCut::Middle), 10)), "/first/...");
  EXPECT_EQ(progressPath(path, PathCut::Front).length(), 72);
  EXPECT_EQ(bytes(right(progressPath(path, PathCut::Front), 5)), "/last");
}

TEST(ProgressText, TheCountIsShownForMoreThanOneItem) {
  EXPECT_EQ(bytes(progressCount(1, 1)), "");
  EXPECT_EQ(bytes(progressCount(3, 7)), "(3 of 7)");
}
