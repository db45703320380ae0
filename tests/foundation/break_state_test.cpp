#include "foundation/break_state.h"

#include <gtest/gtest.h>

namespace {

TEST(BreakState, ARequestCountsOnlyWhileAnOperationListens) {
  requestBreak();
  EXPECT_FALSE(breakRequested());
  {
    const BreakScope scope;
    EXPECT_EQ(breakState.load(), BreakState::Armed);
    requestBreak();
    EXPECT_TRUE(breakRequested());
  }
  EXPECT_EQ(breakState.load(), BreakState::Idle);
}

TEST(BreakState, AnInnerScopeNeverLosesTheRequest) {
  const BreakScope outer;
  {
    const BreakScope inner;
    requestBreak();
  }
  EXPECT_TRUE(breakRequested());
}

TEST(BreakState, AnInnerScopeKeepsTheOuterOneArmed) {
  const BreakScope outer;
  { const BreakScope inner; }
  EXPECT_EQ(breakState.load(), BreakState::Armed);
  requestBreak();
  { const BreakScope second; }
  EXPECT_TRUE(breakRequested());
}

}  // namespace
