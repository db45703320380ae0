#include "panels/commands/quick_search.h"

#include "console/key_codes.h"
#include "panel_fixture.h"

namespace {

class QuickSearchTest : public PanelTest {
 protected:
  QuickSearchTest() : panel(left()) {
    GlobalOptions::StickyAlt = false;
    fill(panel, {"..", "docs/", "alpha", "beta", "Bella", "berlin", "gamma"});
  }
  void type(const std::string& text) {
    for (char character : text) EXPECT_EQ(Key::NoKey, quickSearchStep(panel, character));
  }

  Panel& panel;
};

}  // namespace

TEST_F(QuickSearchTest, EachCharacterNarrowsTheSearch) {
  type("b");
  EXPECT_EQ("beta", currentName(panel));
  type("e");
  EXPECT_EQ("beta", currentName(panel));
  type("r");
  EXPECT_EQ("berlin", currentName(panel));
  EXPECT_EQ("ber", bytes(panel.quickSearch));
}

TEST_F(QuickSearchTest, CaseIsFolded) {
  type("BEL");
  EXPECT_EQ("Bella", currentName(panel));
}

TEST_F(QuickSearchTest, AltLettersGoThroughTheirTable) {
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, AltB));
  EXPECT_EQ("b", bytes(panel.quickSearch));
  EXPECT_EQ("beta", currentName(panel));
}

TEST_F(QuickSearchTest, DirectoriesAndTheParentTakePart) {
  type("d");
  EXPECT_EQ("docs", currentName(panel));
  panel.quickSearch = L"";
  type(".");
  EXPECT_EQ("..", currentName(panel));
}

TEST_F(QuickSearchTest, APrefixThatNobodyHasKeepsTextAndCursor) {
  type("be");
  type("x");
  EXPECT_EQ("be", bytes(panel.quickSearch));
  EXPECT_EQ("beta", currentName(panel));
}

TEST_F(QuickSearchTest, NamesShorterThanTheTextDoNotMatch) {
  fill(panel, {"ab", "a"});
  panel.cursor = 1;
  EXPECT_EQ(0, findByPrefix(panel, L"ab", 0, 1));
  EXPECT_EQ(0, findByPrefix(panel, L"ab", 1, 1));
  EXPECT_EQ(-1, findByPrefix(panel, L"abc", 0, 1));
  fill(panel, {"a"});
  EXPECT_EQ(-1, findByPrefix(panel, L"a\u0100", 0, 1));  // its low byte is that of an end
}

TEST_F(QuickSearchTest, TheSearchWrapsOnceFromTheEndToTheStart) {
  panel.cursor = 6;
  type("a");
  EXPECT_EQ("alpha", currentName(panel));
  EXPECT_EQ(-1, findByPrefix(panel, L"zz", 6, 1));
}

TEST_F(QuickSearchTest, AStepGoesToTheNextMatchAndWraps) {
  type("be");
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltDown, 1));
  EXPECT_EQ("Bella", currentName(panel));
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltDown, 1));
  EXPECT_EQ("berlin", currentName(panel));
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltDown, 1));
  EXPECT_EQ("beta", currentName(panel));
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltUp, -1));
  EXPECT_EQ("berlin", currentName(panel));
  EXPECT_EQ("be", bytes(panel.quickSearch));
}

TEST_F(QuickSearchTest, AStepFromTheEndsWrapsInBothDirections) {
  fill(panel, {"b1", "x", "b2"});
  type("b");
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltUp, -1));
  EXPECT_EQ("b2", currentName(panel));
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltDown, 1));
  EXPECT_EQ("b1", currentName(panel));
}

TEST_F(QuickSearchTest, TheOnlyMatchIsItsOwnNext) {
  type("g");
  EXPECT_EQ(Key::NoKey, quickSearchStep(panel, Key::AltDown, 1));
  EXPECT_EQ("gamma", currentName(panel));
}

TEST_F(QuickSearchTest, TextThatTheCurrentNameDoesNotBeginWithStartsAnew) {
  type("be");
  panel.cursor = 6;
  type("a");
  EXPECT_EQ("a", bytes(panel.quickSearch));
  EXPECT_EQ("alpha", currentName(panel));
}

TEST_F(QuickSearchTest, AnEmptyListOrAPanelWithoutListDoesNothing) {
  panel.type = PanelType::Info;
  type("b");
  EXPECT_TRUE(panel.quickSearch.empty());
  panel.type = PanelType::Files;
  panel.showing = false;
  type("b");
  EXPECT_TRUE(panel.quickSearch.empty());
  panel.showing = true;
  panel.entries.clear();
  type("b");
  EXPECT_TRUE(panel.quickSearch.empty());
}

TEST_F(QuickSearchTest, TheTextHolds511Characters) {
  const std::string name(600, 'n');
  fill(panel, {name});
  for (int i = 0; i < 600; ++i) quickSearchStep(panel, 'n');
  EXPECT_EQ(511, panel.quickSearch.length());
}

TEST_F(QuickSearchTest, RemovingTheLastCharacterMovesNothing) {
  type("ber");
  removeLastSearchCharacter(panel);
  EXPECT_EQ("be", bytes(panel.quickSearch));
  EXPECT_EQ("berlin", currentName(panel));
  removeLastSearchCharacter(panel);
  removeLastSearchCharacter(panel);
  removeLastSearchCharacter(panel);
  EXPECT_TRUE(panel.quickSearch.empty());
}

TEST_F(QuickSearchTest, CompletionGoesAsFarAsAllMatchesAgree) {
  fill(panel, {"readme.txt", "README.md", "Readiness", "other"});
  type("r");
  completeSearch(panel);
  EXPECT_EQ("read", bytes(panel.quickSearch));
  type("m");
  completeSearch(panel);
  EXPECT_EQ("readme.", bytes(panel.quickSearch));
  type("t");
  completeSearch(panel);
  EXPECT_EQ("readme.txt", bytes(panel.quickSearch));
}

TEST_F(QuickSearchTest, CompletionNeedsATextAndAMatch) {
  completeSearch(panel);
  EXPECT_TRUE(panel.quickSearch.empty());
  panel.quickSearch = L"zz";
  completeSearch(panel);
  EXPECT_EQ("zz", bytes(panel.quickSearch));
}

TEST_F(QuickSearchTest, CompletionStopsWhereAShorterNameEnds) {
  fill(panel, {"abc", "ab", "abcd"});
  type("a");
  completeSearch(panel);
  EXPECT_EQ("ab", bytes(panel.quickSearch));
}
