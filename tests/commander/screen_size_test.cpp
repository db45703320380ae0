#include "commander/screen_size.h"

#include <gtest/gtest.h>

namespace {

struct Row {
  int size;
  int configured;
  int next;
};

TEST(ScreenSize, LinesGoFrom25To50AndBackWithTheConfiguredOnesAsAThirdChoice) {
  const Row rows[] = {{25, 0, 50},  {25, 25, 50}, {25, 40, 40}, {25, 60, 50}, {50, 0, 25},
                      {50, 50, 25}, {50, 60, 60}, {60, 60, 25}, {40, 40, 50}, {30, 0, 50}};
  for (const Row& row : rows) {
    EXPECT_EQ(nextLines(row.size, row.configured), row.next) << row.size << ", " << row.configured;
  }
}

TEST(ScreenSize, ColumnsGoFrom80To132ThenToTheConfiguredOnes) {
  const Row rows[] = {{80, 0, 132},    {80, 100, 132}, {132, 0, 80},   {132, 132, 80},
                      {132, 100, 100}, {132, 70, 80},  {100, 100, 80}, {100, 0, 80}};
  for (const Row& row : rows) {
    EXPECT_EQ(nextColumns(row.size, row.configured), row.next)
        << row.size << ", " << row.configured;
  }
}

}  // namespace
