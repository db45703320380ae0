#include "syntax/definition_lines.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> linesOf(const std::string& content) {
  DefinitionLines lines(content);
  std::vector<std::string> result;
  for (std::string_view line; lines.next(line);) result.emplace_back(line);
  return result;
}

using Lines = std::vector<std::string>;

TEST(DefinitionLines, ALineIsTrimmedAtBothEnds) {
  EXPECT_EQ(linesOf("  a b\t\r\n\v\nc"), (Lines{"a b", "", "c"}));
}

TEST(DefinitionLines, AByteOrderMarkIsNoPartOfTheFirstLine) {
  EXPECT_EQ(linesOf("\xEF\xBB\xBF[C:*.c]\n"), (Lines{"[C:*.c]"}));
}

TEST(DefinitionLines, ABackslashAtTheEndTakesTheNextLineAsItStands) {
  EXPECT_EQ(linesOf("words:k:a \\\n  b\nc"), (Lines{"words:k:a   b", "c"}));
  EXPECT_EQ(linesOf("a\\\r\n b\r\nc"), (Lines{"a b", "c"}));
}

TEST(DefinitionLines, TheResultIsTestedAgain) {
  EXPECT_EQ(linesOf("a\\\nb\\\nc\nd"), (Lines{"abc", "d"}));
  // The blank behind the second backslash isn't trimmed: that line goes on nowhere.
  EXPECT_EQ(linesOf("a\\\nb\\ \nc"), (Lines{"ab\\ ", "c"}));
  // An empty line shows the first of two backslashes again.
  EXPECT_EQ(linesOf("a\\\\\n\nb\nc"), (Lines{"ab", "c"}));
}

TEST(DefinitionLines, ABackslashAtTheEndOfTheFileJoinsNothing) {
  EXPECT_EQ(linesOf("a\\"), (Lines{"a"}));
  EXPECT_EQ(linesOf("a\\\n"), (Lines{"a"}));
  EXPECT_EQ(linesOf("a\\\nb\\"), (Lines{"ab"}));
}

TEST(DefinitionLines, ALineLongerThanTheLimitIsPassedOverAsAWhole) {
  const std::string longest(DefinitionLines::LongestLine, 'x');
  EXPECT_EQ(linesOf("a\n" + longest + "\nb"), (Lines{"a", longest, "b"}));
  EXPECT_EQ(linesOf("a\n" + longest + "x\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf("a\ny\\\n" + longest + "\\\nz\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf(longest + "x"), Lines{});
}

TEST(DefinitionLines, ALineOfMoreThanAThousandBytesIsOneLine) {
  const std::string words = "words:k:" + std::string(3000, 'w');
  EXPECT_EQ(linesOf(words), (Lines{words}));
}

struct RuleCase {
  const char* line;
  const char* keyword;
  const char* states;
  const char* flags;
  const char* className;
  const char* fields;
  bool hasFields;
};

TEST(DefinitionLines, ARuleIsCutIntoItsParts) {
  constexpr RuleCase Cases[] = {
      {"words(code,str)/i:Keyword:if else", "words", "code,str", "i", "Keyword", "if else", true},
      {"words : Keyword:if", "words", "", "", "Keyword", "if", true},
      {"number:Number", "number", "", "", "Number", "", false},
      {"blockcomment/il:C:", "blockcomment", "", "il", "C", "", true},
      {"words():K:a", "words", "", "", "K", "a", true},
      {"words(a)b:K:a", "words(a)b", "", "", "K", "a", true},
      {"words(a:K:a", "words(a", "", "", "K", "a", true},
      {"words((a)):K:a", "words", "(a)", "", "K", "a", true},
      {"state/l(a):K:s:b:e", "state", "", "l(a)", "K", "s:b:e", true},
      {":K:a", "", "", "", "K", "a", true},
      {"words:", "words", "", "", "", "", false},
      {"words::a", "words", "", "", "", "a", true},
  };
  for (const RuleCase& row : Cases) {
    SCOPED_TRACE(row.line);
    RuleLine rule;
    ASSERT_TRUE(splitRule(row.line, rule));
    EXPECT_EQ(rule.keyword, row.keyword);
    EXPECT_EQ(rule.states, row.states);
    EXPECT_EQ(rule.flags, row.flags);
    EXPECT_EQ(rule.className, row.className);
    EXPECT_EQ(rule.fields, row.fields);
    EXPECT_EQ(rule.hasFields, row.hasFields);
  }
}

TEST(DefinitionLines, ALineWithoutAColonIsNoRule) {
  RuleLine rule;
  EXPECT_FALSE(splitRule("words", rule));
  EXPECT_FALSE(splitRule("", rule));
}

TEST(DefinitionLines, AFieldEndsAtTheNextColonWhateverStandsBeforeIt) {
  std::string_view fields = " a\\:b::c";
  EXPECT_EQ(cutField(fields), " a\\");
  EXPECT_EQ(cutField(fields), "b");
  EXPECT_EQ(cutField(fields), "");
  EXPECT_EQ(cutField(fields), "c");
  EXPECT_EQ(cutField(fields), "");
}

TEST(DefinitionLines, ABackslashProtectsTheNextCharacterOfAProtectedField) {
  std::string_view fields = " \\: : \\\\\\\" :a\\";
  EXPECT_EQ(cutProtectedField(fields), ":");
  EXPECT_EQ(cutProtectedField(fields), "\\\"");
  EXPECT_EQ(cutProtectedField(fields), "a\\");
  EXPECT_EQ(cutProtectedField(fields), "");
}

}  // namespace
