#include "editor/document/text_rules.h"

#include <gtest/gtest.h>

#include "document/document_support.h"

namespace {
class TextRules : public testing::Test {
 protected:
  void load(const std::string& bytes) { ASSERT_TRUE(document.load(bytes, Utf8)); }
  // The text after the indents of the lines have been changed.
  std::string indented(int64_t first, int64_t behind, int delta, int tabWidth = 8) {
    if (const auto change = indentChange(document, first, behind, delta, tabWidth))
      document.replace(change->from, change->to, change->text);
    return writtenBytes(document);
  }
  Document document;
};
}  // namespace

TEST_F(TextRules, ABriefStepToTheRightEndsBehindTheWord) {
  load("ab  cd_1 .\nx");
  EXPECT_EQ(wordRightPlace(document, {0, 0}, WordRight::Brief), (TextPlace{0, 2}));
  EXPECT_EQ(wordRightPlace(document, {0, 2}, WordRight::Brief), (TextPlace{0, 8}));
  EXPECT_EQ(wordRightPlace(document, {0, 8}, WordRight::Brief), (TextPlace{0, 10}));
  EXPECT_EQ(wordRightPlace(document, {0, 10}, WordRight::Brief), (TextPlace{1, 0}));
  EXPECT_EQ(wordRightPlace(document, {1, 1}, WordRight::Brief), (TextPlace{1, 1}));
}

TEST_F(TextRules, TheOtherStepToTheRightEndsAtTheNextWord) {
  load("ab  cd\nx");
  EXPECT_EQ(wordRightPlace(document, {0, 0}, WordRight::NextStart), (TextPlace{0, 4}));
  EXPECT_EQ(wordRightPlace(document, {0, 4}, WordRight::NextStart), (TextPlace{1, 0}));
  load(" ab c");
  EXPECT_EQ(wordRightPlace(document, {0, 0}, WordRight::NextStart), (TextPlace{0, 4}));
}

TEST_F(TextRules, AWordOfOneLetterAtTheStartOfALineIsJumpedOver) {
  load("up\na b\nab c");
  EXPECT_EQ(wordLeftPlace(document, {1, 1}), (TextPlace{0, 2}));
  EXPECT_EQ(wordLeftPlace(document, {1, 2}), (TextPlace{0, 2}));
  EXPECT_EQ(wordLeftPlace(document, {1, 3}), (TextPlace{1, 2}));
  EXPECT_EQ(wordLeftPlace(document, {2, 3}), (TextPlace{2, 0}));
  EXPECT_EQ(wordLeftPlace(document, {1, 0}), (TextPlace{0, 2}));
  EXPECT_EQ(wordLeftPlace(document, {0, 1}), (TextPlace{0, 0}));
}

TEST_F(TextRules, DeletingTheWordToTheLeftStaysInTheLine) {
  load("up\na b");
  EXPECT_EQ(deleteWordStart(document, {1, 2}), (TextPlace{1, 0}));
  EXPECT_EQ(deleteWordStart(document, {1, 3}), (TextPlace{1, 2}));
}

TEST_F(TextRules, TheWordAtAPlaceIsTheOneThereOrTheOneThatEndsThere) {
  load("ab, cd");
  const auto inside = wordAt(document, {0, 1});
  ASSERT_TRUE(inside);
  EXPECT_EQ(inside->from, (TextPlace{0, 0}));
  EXPECT_EQ(inside->to, (TextPlace{0, 2}));
  EXPECT_EQ(wordAt(document, {0, 2})->to, (TextPlace{0, 2}));
  EXPECT_EQ(wordAt(document, {0, 6})->from, (TextPlace{0, 4}));
  EXPECT_FALSE(wordAt(document, {0, 3}));
}

TEST_F(TextRules, ABracketFindsItsPartnerAcrossLines) {
  load("f(a, (b)\n{<c>}) )");
  EXPECT_EQ(matchingBracket(document, {0, 1}), (TextPlace{1, 5}));
  EXPECT_EQ(matchingBracket(document, {1, 5}), (TextPlace{0, 1}));
  EXPECT_EQ(matchingBracket(document, {1, 1}), (TextPlace{1, 3}));
  EXPECT_FALSE(matchingBracket(document, {1, 7}));
  EXPECT_FALSE(matchingBracket(document, {0, 0}));
  EXPECT_FALSE(matchingBracket(document, {1, 8}));
}

TEST_F(TextRules, OnlyTheLowByteOfABracketCounts) {
  load("(\xC4\xA9");  // U+0129
  EXPECT_EQ(matchingBracket(document, {0, 0}), (TextPlace{0, 1}));
}

TEST_F(TextRules, AnIndentComesFromTheNearestLineThatHoldsText) {
  load("\t x\n  \n   y");
  EXPECT_EQ(leadingIndent(document, {1, 2}), L"\t ");
  EXPECT_EQ(leadingIndent(document, {2, 4}), L"   ");
  EXPECT_EQ(leadingIndent(document, {2, 3}), L"\t ");
  load("  ");
  EXPECT_EQ(leadingIndent(document, {0, 2}), std::nullopt);
}

TEST_F(TextRules, ALineThatCannotMoveLeftStaysWhileOthersMove) {
  load("  a\n b\n\tc\n \t\n");
  EXPECT_EQ(indented(0, 5, -2), "a\n b\n      c\n \t\n");
}

TEST_F(TextRules, AnIndentOfTabsBecomesSpaces) {
  load("\t\tx\r\ny\n");
  EXPECT_EQ(indented(0, 1, 1, 4), "         x\r\ny\n");
}

TEST_F(TextRules, AnIndentKeepsEachLineEnd) {
  load("a\rb\r\nc\n");
  EXPECT_EQ(indented(0, 3, 1), " a\r b\r\n c\n");
}

TEST_F(TextRules, AnIndentThatWouldMakeALineTooLongIsLeftAlone) {
  load(std::string(65535, 'x') + "\n" + std::string(65534, 'y'));
  EXPECT_EQ(indented(0, 2, 1), std::string(65535, 'x') + "\n " + std::string(65534, 'y'));
  EXPECT_EQ(indentStep(0), 1);
  EXPECT_EQ(indentStep(101), 100);
}

TEST_F(TextRules, ALineTakesNoMoreThanItsLimit) {
  load(std::string(65534, 'x'));
  EXPECT_TRUE(fitsLine(document, {0, 3}, {0, 3}, spanOf(L"a")));
  EXPECT_FALSE(fitsLine(document, {0, 3}, {0, 3}, spanOf(L"ab")));
  EXPECT_FALSE(fitsLine(document, {0, 3}, {0, 3}, spanOf(L"ab\n")));
  EXPECT_TRUE(fitsLine(document, {0, 3}, {0, 4}, spanOf(L"ab\n")));
}
