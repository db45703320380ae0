#include "terminal/child_input.h"

#include <gtest/gtest.h>

#include "support/manual_clock.h"

namespace {
constexpr uint32_t SecondMs = 1000;
}

TEST(ChildInput, BreakTwiceWithinASecondAsksForTheEnd) {
  ManualClock clock;
  ChildInput input(-1, clock);
  input.breakPressed();
  EXPECT_FALSE(input.endAsked());
  clock.moveOn(SecondMs + 1);
  input.breakPressed();
  EXPECT_FALSE(input.endAsked());
  clock.moveOn(SecondMs);
  input.breakPressed();
  EXPECT_TRUE(input.endAsked());
  EXPECT_FALSE(input.closeAsked());
}

TEST(ChildInput, TheCloseButtonAsksForTheEndAndIsKept) {
  ChildInput input(-1);
  input.closePressed();
  EXPECT_TRUE(input.endAsked());
  EXPECT_TRUE(input.closeAsked());
}
