#include "syntax/state_store.h"

#include <gtest/gtest.h>

#include "syntax/coloured_text.h"

namespace {

constexpr int64_t Step = CSyntaxStateStore::Distance;

// Something open, to be told from nothing.
CContextStack openState() {
  CSyntax engine = engineWith("blockcomment:red:(:)");
  engine.skip(L"(");
  return engine.state();
}

TEST(StateStore, KnowsThatNothingIsOpenAtTheBeginning) {
  CSyntaxStateStore store;
  EXPECT_EQ(store.count(), 1);
  const SyntaxStart start = store.startFor(0);
  EXPECT_EQ(start.position, 0);
  EXPECT_TRUE(start.stack.empty());
  EXPECT_EQ(start.states, SyntaxStart::States::Certain);
}

TEST(StateStore, TheNearestRecordThatIsNotBehindThePlaceIsTheStart) {
  CSyntaxStateStore store;
  const CContextStack open = openState();
  store.remember(3 * Step, open);
  store.remember(Step, open);
  EXPECT_EQ(store.startFor(Step - 1).position, 0);
  EXPECT_EQ(store.startFor(Step).position, Step);
  EXPECT_EQ(store.startFor(3 * Step - 1).position, Step);
  const SyntaxStart start = store.startFor(4 * Step);
  EXPECT_EQ(start.position, 3 * Step);
  EXPECT_TRUE(start.stack == open);
}

TEST(StateStore, ARecordForAKnownPlaceIsLeftOut) {
  CSyntaxStateStore store;
  store.remember(Step, openState());
  store.remember(Step, CContextStack());
  EXPECT_EQ(store.count(), 2);
  EXPECT_FALSE(store.startFor(Step).stack.empty());
}

TEST(StateStore, RecordsStandAtLeastTheirDistanceApart) {
  CSyntaxStateStore store;
  store.remember(Step - 1, openState());
  EXPECT_EQ(store.count(), 1);
  store.remember(2 * Step, openState());
  store.remember(2 * Step - 1, openState());
  store.remember(Step + 1, openState());
  store.remember(3 * Step - 1, openState());
  EXPECT_EQ(store.count(), 2);
  store.remember(Step, openState());
  store.remember(3 * Step, openState());
  EXPECT_EQ(store.count(), 4);
}

TEST(StateStore, AFileOfShortLinesNeedsNoMoreThanARecordEachFewThousandBytes) {
  CSyntaxStateStore store;
  constexpr int64_t Size = 64 * 1024 * 1024;
  constexpr int64_t Line = 113;
  for (int64_t at = Line; at < Size; at += Line) store.remember(at, CContextStack());
  EXPECT_LE(store.count(), Size / Step);
  EXPECT_GT(store.count(), Size / (Step + Line) - 1);
}

TEST(StateStore, AWalkThatIsTooLongIsGuessedFromNearby) {
  CSyntaxStateStore store;
  store.remember(Step, openState());
  const int64_t far = Step + CSyntaxStateStore::LongestWalk;
  EXPECT_EQ(store.startFor(far).position, Step);
  EXPECT_EQ(store.startFor(far).states, SyntaxStart::States::Certain);
  const SyntaxStart start = store.startFor(far + 1);
  EXPECT_EQ(start.states, SyntaxStart::States::Guessed);
  EXPECT_EQ(start.position, far + 1 - CSyntaxStateStore::GuessedWalk);
  EXPECT_TRUE(start.stack.empty());
}

TEST(StateStore, PositionsMayPassThirtyTwoBits) {
  CSyntaxStateStore store;
  const int64_t far = 10'000'000'000;
  store.remember(far, openState());
  EXPECT_EQ(store.startFor(far + 5).position, far);
  EXPECT_EQ(store.startFor(far - 1).states, SyntaxStart::States::Guessed);
}

TEST(StateStore, AResetLeavesTheBeginningOnly) {
  CSyntaxStateStore store;
  store.remember(Step, openState());
  store.reset();
  EXPECT_EQ(store.count(), 1);
  EXPECT_EQ(store.startFor(2 * Step).position, 0);
}

}  // namespace
