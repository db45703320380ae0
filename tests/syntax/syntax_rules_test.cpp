#include "syntax/syntax_rules.h"

#include <gtest/gtest.h>

namespace {

bool holds(const WordCollection& words, std::wstring_view word) {
  return words.holds(word, WordHash::of(word));
}

TEST(WordCollection, HoldsWhatWasAdded) {
  WordCollection words;
  EXPECT_FALSE(holds(words, L"if"));
  words.add(L"if");
  words.add(L"if");
  EXPECT_TRUE(holds(words, L"if"));
  EXPECT_FALSE(holds(words, L"IF"));
  EXPECT_FALSE(holds(words, L"i"));
  EXPECT_FALSE(holds(words, L"iff"));
  EXPECT_FALSE(holds(words, L""));
}

TEST(WordCollection, IgnoresTheCaseOfAsciiLettersWhenItIsToldSo) {
  WordCollection words(SyntaxCase::Ignored);
  words.add(L"Begin");
  EXPECT_TRUE(holds(words, L"bEGIN"));
  words.add(L"\x00C4");
  EXPECT_FALSE(holds(words, L"\x00E4"));
}

TEST(WordCollection, FindsEachOfThousandsOfWords) {
  WordCollection words;
  constexpr int Count = 5000;
  for (int i = 0; i < Count; ++i) words.add(L"word" + std::to_wstring(i));
  for (int i = 0; i < Count; ++i) EXPECT_TRUE(holds(words, L"word" + std::to_wstring(i)));
  EXPECT_FALSE(holds(words, L"word" + std::to_wstring(Count)));
}

TEST(SyntaxText, StandsWhereAllOfItStands) {
  const SyntaxText text(L"ab", SyntaxCase::Exact);
  EXPECT_TRUE(text.standsAt(L"xab", 1));
  EXPECT_FALSE(text.standsAt(L"xab", 0));
  EXPECT_FALSE(text.standsAt(L"xa", 1));
  EXPECT_FALSE(text.standsAt(L"xAb", 1));
  EXPECT_FALSE(SyntaxText().standsAt(L"x", 0));
}

TEST(SyntaxText, IgnoresCaseByTheTableOfNames) {
  const SyntaxText text(L"\x00E4r", SyntaxCase::Ignored);
  EXPECT_TRUE(text.standsAt(L"\x00C4R", 0));
}

}  // namespace
