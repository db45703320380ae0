#include "foundation/wild_match.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"

namespace {
struct Row {
  const char* pattern;
  const char* text;
  bool matches;
};

// Rows that both forms answer alike.
void expectRows(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(wildMatch(row.pattern, row.text), row.matches) << row.pattern << " on " << row.text;
    EXPECT_EQ(wildMatch(fromUtf8(row.pattern).data(), fromUtf8(row.text).data()), row.matches)
        << "wide " << row.pattern << " on " << row.text;
  }
}
}  // namespace

TEST(WildMatch, LiteralsAreComparedWithoutCase) {
  expectRows({{"", "", true},
              {"", "a", false},
              {"a", "", false},
              {"ReadMe", "rEADmE", true},
              {"abc", "abcd", false},
              {"abcd", "abc", false}});
}

TEST(WildMatch, AQuestionMarkTakesExactlyOneCharacter) {
  expectRows({{"a?", "a", false},
              {"a?", "ab", true},
              {"?", "", false},
              {"??", "ab", true},
              {"?", "?", true},
              {"a?c", "a.c", true}});
}

TEST(WildMatch, AStarTakesAnyNumberOfCharacters) {
  expectRows({{"*", "", true},
              {"*", "abc", true},
              {"a*", "a", true},
              {"*a", "ba", true},
              {"*a", "ab", false},
              {"*a*", "xay", true},
              {"*.c", "a.b.c", true},
              {"**", "", true},
              {"a**b", "ab", true},
              {"*?", "", false},
              {"*?", "x", true},
              {"*ab*cd", "ababxcdcd", true},
              {"*ab*cd", "abc", false},
              {"a*b", "ab", true},
              {"*.*", "name", false}});
}

TEST(WildMatch, AnEndingIsComparedLikeTheRest) {
  expectRows({{"*.TXT", "a.txt", true},
              {"*.txt", ".txt", true},
              {"*.txt", "txt", false},
              {"*.txt", "a.txt~", false},
              {"*]", "a]", true},
              {"*}", "a}", true},
              {"*^-,", "x^-,", true},
              {"*.t*", "a.txt", true},
              {"*.[ch]", "a.h", true},
              {"*.{c,h}", "a.h", true},
              {"*.?", "a.h", true}});
}

TEST(WildMatch, AListTakesOneOfItsAlternatives) {
  expectRows({{"*.{c,h}", "A.H", true},
              {"*.{c,h}", "a.cc", false},
              {"{ab,cd}e", "cde", true},
              {"{ab,abc}d", "abcd", true},
              {"{a,ab}{c,bc}", "abc", true},
              {"{?x,[0-9]y}", "5y", true},
              {"{?x,[0-9]y}", "5x", true},
              {"{?x,[0-9]y}", "zy", false},
              {"{a}", "a", true},
              {"{[a,b],c}", ",", true},
              {"{[a,b],c}", "c", true},
              {"x{*,b}", "x*", true},
              {"x{*,b}", "xab", false},
              {"{a,b}*", "bcd", true}});
}

TEST(WildMatch, AnEmptyAlternativeTakesNothing) {
  expectRows({{"a{,b}", "a", true},
              {"a{,b}", "ab", true},
              {"a{b,,c}d", "ad", true},
              {"a{b,,c}d", "acd", true},
              {"a{b,c}", "a", false},
              {"a{b,}", "a", false},
              {"a{b,}", "ab", true},
              {"a{,b}", "ac", false}});
}

TEST(WildMatch, ABraceThatOpensNoListIsALiteral) {
  expectRows({{"{", "{", true},
              {"a{b", "a{b", true},
              {"{}", "{}", true},
              {"{}", "", false},
              {"{a,b}", "{a,b}", true},
              {"{a,b}", "{a,c}", false},
              {"}", "}", true},
              {"{a[}]", "a", false},
              {"{a[}]", "{a}", true}});
}

TEST(WildMatch, ASetTakesOneOfItsMembers) {
  expectRows({{"[abc]", "B", true},
              {"[abc]", "d", false},
              {"[abc]", "", false},
              {"[abc]x", "bx", true},
              {"[]", "a", false},
              {"[", "[", true},
              {"a[b", "A[B", true},
              {"[*]", "*", true},
              {"[*]", "a", false},
              {"[?]", "?", true},
              {"[?]", "a", false},
              {"]", "]", true}});
}

TEST(WildMatch, ASetHasRanges) {
  expectRows({{"[a-c]", "b", true},
              {"[a-c]", "B", true},
              {"[A-C]", "b", true},
              {"[a-c]", "d", false},
              {"[c-a]", "b", false},
              {"[0-9]", "5", true},
              {"[-9]", "5", true},
              {"[-9]", "A", false},
              {"[a-]", "z", true},
              {"[a-]", "1", false},
              {"[a-cx-z]", "y", true},
              {"[a-cx-z]", "m", false},
              {"[a-c-e]", "e", true},
              {"[a-c^-e]", "c", true},
              {"[c-a-d]", "d", true},
              {"[c-a-d]", "b", false},
              {"[!--]", "#", true}});
}

TEST(WildMatch, AClassWithCaretAtTheStartTakesAllOthers) {
  expectRows({{"[^a]", "a", false},
              {"[^a]", "A", false},
              {"[^a]", "b", true},
              {"[^]", "x", true},
              {"[^a-c]", "b", false},
              {"[^a-c]", "d", true}});
}

TEST(WildMatch, AClassWithCaretTogglesNegation) {
  expectRows({{"[a-c^b]", "b", false},
              {"[a-c^b]", "a", true},
              {"[a-z^q]", "Q", false},
              {"[a-z^q^q]", "q", true},
              {"[^a-z^q]", "q", true},
              {"[^^q]", "q", true}});
}

TEST(WildMatch, TheByteFormTakesAMinusBehindAHighByteAsMember) {
  EXPECT_TRUE(wildMatch("[\xE4-z]", "-"));
  EXPECT_TRUE(wildMatch("[\xE4-z]", "z"));
  EXPECT_TRUE(wildMatch("[\xE4-z]", "\xE4"));
  EXPECT_FALSE(wildMatch("[\xE4-z]", "\xF0"));
  EXPECT_TRUE(wildMatch("[a-\xE4]", "\xD0"));
  EXPECT_FALSE(wildMatch("[a-\xE4]", "\xF0"));
  EXPECT_TRUE(wildMatch("[a-]", "\xFF"));
}

TEST(WildMatch, TheWideFormFoldsByTheTable) {
  EXPECT_TRUE(wildMatch(L"\u00C4*", L"\u00E4pfel"));
  EXPECT_TRUE(wildMatch(L"\u0416", L"\u0436"));
  EXPECT_FALSE(wildMatch(L"\uFF21", L"\uFF41"));
  EXPECT_TRUE(wildMatch(L"[\u00C0-\u00C6]", L"\u00E4"));
  EXPECT_TRUE(wildMatch(L"[\u00FF]", L"\u00FF"));
  EXPECT_TRUE(wildMatch(L"[\u0178]", L"\u00FF"));
  EXPECT_TRUE(wildMatch(L"[\u0131]", L"i"));
  EXPECT_TRUE(wildMatch(L"[a-\u4E00]", L"z"));
}

TEST(WildMatch, AWideSetLooksAtTheLowByteOfTheCharacter) {
  EXPECT_TRUE(wildMatch(L"[a]", L"\u0161"));
  EXPECT_TRUE(wildMatch(L"[A]", L"\u0141"));
  EXPECT_FALSE(wildMatch(L"[\u0141]", L"\u0141"));
  wchar_t rawByte[] = {static_cast<wchar_t>(static_cast<signed char>(0xE4)), 0};
  EXPECT_TRUE(wildMatch(L"[\u00C4]", rawByte));
}

TEST(WildMatch, MembersBeyondTheTableAreDropped) {
  EXPECT_FALSE(wildMatch(L"[\U0001F600]", L"\U0001F600"));
  EXPECT_TRUE(wildMatch(L"[\U0001F600a]", L"a"));
  EXPECT_TRUE(wildMatch(L"[a-\U0001F600]", L"b"));
  EXPECT_FALSE(wildMatch(L"[\U0001F600-\U0001F64F]", L"\U0001F601"));
  wchar_t negative[] = {L'[', -1, L'-', -1, L'x', L']', 0};
  EXPECT_TRUE(wildMatch(negative, L"X"));
  wchar_t text[] = {static_cast<wchar_t>(0x80000000), 0};
  EXPECT_FALSE(wildMatch(negative, text));
  EXPECT_TRUE(wildMatch(L"?", text));
}

TEST(WildMatch, APatternMadeToBeSlowEndsSoon) {
  std::string text(255, 'a');
  std::string stars;
  std::string lists;
  for (int i = 0; i < 60; ++i) {
    stars += "*a";
    lists += "{a,aa,aaa}";
  }
  EXPECT_FALSE(wildMatch((stars + "b").c_str(), text.c_str()));
  EXPECT_TRUE(wildMatch((stars + "*").c_str(), text.c_str()));
  EXPECT_FALSE(wildMatch((lists + "b").c_str(), text.c_str()));
  EXPECT_FALSE(wildMatch((std::string(200, '{') + "a,b}" + stars + "b").c_str(), text.c_str()));
  std::string path(4095, 'a');
  EXPECT_FALSE(wildMatch((stars + "b").c_str(), path.c_str()));
}
