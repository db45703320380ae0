#include "syntax/definitions_reader.h"

#include <gtest/gtest.h>

#include "syntax/coloured_text.h"

namespace {

constexpr unsigned char RedOnPlain = 0x14;  // on the background of PlainText
constexpr unsigned char GreenOnPlain = 0x12;

std::shared_ptr<const SyntaxDefinitions> read(const std::string& content,
                                              const wchar_t* name = L"a.c") {
  return readSyntax(content, name, PlainText);
}

// The rules of one section.
std::shared_ptr<const SyntaxDefinitions> rules(const std::string& content) {
  return read("[any:*]\n" + content);
}

TEST(DefinitionsReader, ASectionWhosePatternFitsTheNameGivesItsRules) {
  const std::string content =
      "[C:*.{c,h}]\nnumber:red\n"
      "[Makefile:*{akefile,.mk}]\nnumber:green\n";
  ASSERT_NE(read(content, L"A.H"), nullptr);
  EXPECT_EQ(read(content, L"a.c")->numbers.at(0).colour, RedOnPlain);
  EXPECT_EQ(read(content, L"GNUmakefile")->numbers.at(0).colour, GreenOnPlain);
  EXPECT_EQ(read(content, L"rules.mk")->numbers.at(0).colour, GreenOnPlain);
  EXPECT_EQ(read(content, L"a.cpp"), nullptr);
  EXPECT_EQ(read("", L"a.c"), nullptr);
}

TEST(DefinitionsReader, RulesStandOnlyUnderAHeadThatFits) {
  EXPECT_EQ(read("number:red\n"), nullptr);
  const std::string rule = "\nnumber:red\n";
  for (const char* head : {"[C]", "[C:*.h]", "[C:*.c", "[Colour classes]", "[", "[]", "[:]"}) {
    SCOPED_TRACE(head);
    EXPECT_EQ(read("[C:*]" + rule + head + rule)->numbers.size(), 1U);
  }
}

TEST(DefinitionsReader, SeveralSectionsThatFitAddUpInTheOrderOfTheFile) {
  const auto both = read("[A:*.c]\nwords:red:if\n[B:*.h]\nwords:blue:x\n[C:a.*]\nwords:green:if\n");
  ASSERT_EQ(both->wordLists.size(), 2U);
  EXPECT_EQ(both->wordLists[0].colour, RedOnPlain);
  EXPECT_EQ(both->wordLists[1].colour, GreenOnPlain);
}

TEST(DefinitionsReader, TheFirstMatchingElementOfTwoSectionsWins) {
  CSyntax engine;
  engine.use(read("[A:*.c]\nlinecomment:red:/\n[C:a.*]\nlinecomment:green://\n"));
  EXPECT_EQ(coloursOf(engine, L"a //"), "..44");
}

TEST(DefinitionsReader, AClassGivesItsColourWhateverItsCase) {
  const auto result = read(
      "[COLOUR classes]\n Comment : red on green \nComment: blue\n\nempty:\n"
      "[C:*]\nlinecomment:comment:#\nnumber(a):Empty\nnumber(b):\n");
  EXPECT_EQ(result->elements.at(0).colour, 0x24) << "the first of two classes of a name stays";
  EXPECT_EQ(result->numbers.at(0).colour, 0x10) << "an empty class is no class: a phrase";
  EXPECT_EQ(result->numbers.at(1).colour, PlainText);
}

TEST(DefinitionsReader, AClassThatNamesNoClassIsAColourExpression) {
  const auto result = rules("number:bright white on red\nnumber:on green\nnumber: gre");
  EXPECT_EQ(result->numbers.at(0).colour, 0x4F);
  EXPECT_EQ(result->numbers.at(1).colour, 0x2B);
  EXPECT_EQ(result->numbers.at(2).colour, GreenOnPlain);
}

TEST(DefinitionsReader, AClassCountsOnlyFromAboveTheRule) {
  const auto result = read("[C:*]\nnumber:red\n[Colour Classes]\nred:green\n[D:*]\nnumber:red\n");
  EXPECT_EQ(result->numbers.at(0).colour, RedOnPlain);
  EXPECT_EQ(result->numbers.at(1).colour, GreenOnPlain);
}

TEST(DefinitionsReader, WordCharactersAreAddedToLettersAndDigits) {
  const auto result = rules("wordchars:_-\nWORDCHARS:\xC3\xA4\n");
  for (wchar_t character : std::wstring(L"aAzZ059_-\x00E4")) {
    EXPECT_TRUE(result->wordCharacters[syntaxIndex(character)]) << static_cast<int>(character);
  }
  EXPECT_FALSE(result->wordCharacters[syntaxIndex(L'+')]);
  EXPECT_EQ(result->wordCharacters.count(), 65U);
}

TEST(DefinitionsReader, ATabIsNeverAWordCharacter) {
  EXPECT_FALSE(rules("wordchars:_\t-\n")->wordCharacters[syntaxIndex(L'\t')]);
}

TEST(DefinitionsReader, RulesThatLackAFieldAreDropped) {
  for (const char* line : {"blockcomment:C:/*", "blockcomment:C", "string:S:\"", "string:S",
                           "state:C:n:b", "state:C:n", "nonsense:C:a", "words", "# words:C:a:b",
                           "statechange:C", "linecomment:C", "words:C:"}) {
    SCOPED_TRACE(line);
    const auto result = rules(std::string(line) + "\n");
    EXPECT_TRUE(result->elements.empty());
    EXPECT_TRUE(result->changes.empty());
    EXPECT_TRUE(result->wordLists.empty());
  }
}

TEST(DefinitionsReader, RulesThatWouldNeverAdvanceAreDropped) {
  const auto result = rules(
      "linecomment:C:\nblockcomment:C::*/\nstring:S::\"\nstate:C:n::e\n"
      "statechange:C::push:n\nstatechange:C:  :push:n\n");
  EXPECT_TRUE(result->elements.empty());
  EXPECT_TRUE(result->changes.empty());
}

TEST(DefinitionsReader, WhatStandsBehindTheLastFieldIsIgnored) {
  const auto result =
      rules("blockcomment:C:a:b:c:d\nstring:S:(:):!:x\nstate:C:n:b:e:x\nsymbols:C:+:-\n");
  ASSERT_EQ(result->elements.size(), 3U);
  EXPECT_EQ(result->elements[0].end.length(), 1U);
  EXPECT_EQ(result->elements[1].escape, L'!');
  EXPECT_EQ(result->symbolLists.at(0).characters.count(), 1U);
}

TEST(DefinitionsReader, EachElementHasItsNameAndItsBounds) {
  const auto result = rules(
      "linecomment:C://\nblockcomment/l:C:a:b\nstring:S:<<:>>\nState/l:C:Code:{:}\nstate:C:x:[:\n");
  ASSERT_EQ(result->elements.size(), 5U);
  const char* const names[] = {"linecomment", "blockcomment", "string", "code", "x"};
  const LineBound bounds[] = {LineBound::Yes, LineBound::Yes, LineBound::No, LineBound::Yes,
                              LineBound::No};
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(result->elements[i].name, names[i]);
    EXPECT_EQ(result->elements[i].lineBound, bounds[i]);
  }
  EXPECT_EQ(result->elements[2].begin.length(), 1U) << "the first character of the field counts";
  EXPECT_TRUE(result->elements[4].end.empty());
}

TEST(DefinitionsReader, TheDefaultEscapeHoldsForTheStringsBelowItUntilTheNext) {
  const auto result = read(
      "[A:*]\nstring:S:a:a\nescape:\\:\nstring:S:b:b\nstring:S:c:c:!\nstring:S:d:d:\n"
      "[B:*]\nstring:S:e:e\nescape:%\nstring:S:f:f\n");
  const wchar_t escapes[] = {0, L'\\', L'!', 0, L'\\', L'%'};
  ASSERT_EQ(result->elements.size(), 6U);
  for (size_t i = 0; i < 6; ++i) EXPECT_EQ(result->elements[i].escape, escapes[i]) << i;
}

TEST(DefinitionsReader, AnEscapeIsAWholeCharacter) {
  EXPECT_EQ(rules("string:S:\":\":\xC5\x9C\n")->elements.at(0).escape, 0x15C);
}

TEST(DefinitionsReader, AStateChangeHasItsActionAndTheFirstElementOfItsTarget) {
  const auto result = rules(
      "statechange:C:a:PUSH: Code \nstatechange:C:b:pop\nstatechange:C:c:jump:code\n"
      "statechange:C:\\::push:none\nstatechange:C: d \\\n :switch\n"
      "state:C:CODE:{:}\nstate:C:code:[:]\n");
  using Action = CSyntaxStateChange::Action;
  ASSERT_EQ(result->changes.size(), 5U);
  const Action actions[] = {Action::Push, Action::Pop, Action::Switch, Action::Push,
                            Action::Switch};
  for (size_t i = 0; i < 5; ++i) EXPECT_EQ(result->changes[i].action, actions[i]) << i;
  EXPECT_EQ(result->changes[0].target, &result->elements[0]);
  EXPECT_EQ(result->changes[2].target, &result->elements[0]);
  EXPECT_EQ(result->changes[3].target, nullptr);
  EXPECT_EQ(result->changes[4].text.length(), 1U);
}

TEST(DefinitionsReader, AStateListIsCutLikeEveryCommaList) {
  const auto result =
      rules("number(A,\"b,c\",a):red\nnumber(,a):red\nnumber():red\nnumber(a,,b):red\n");
  using Names = std::vector<std::string>;
  EXPECT_EQ(result->numbers.at(0).contexts.names(), (Names{"a", "b,c"}));
  EXPECT_FALSE(result->numbers.at(0).contexts.outside());
  EXPECT_TRUE(result->numbers.at(1).contexts.outside());
  EXPECT_TRUE(result->numbers.at(2).contexts.outside());
  EXPECT_TRUE(result->numbers.at(3).contexts.outside());
}

TEST(DefinitionsReader, ARuleInPiecesIsOneRule) {
  CSyntax engine = engineWith("words:white:if \\\n  else \\\n  for");
  EXPECT_EQ(coloursOf(engine, L"if else for x"), "77.7777.777..");
}

TEST(DefinitionsReader, ATrailingBackslashAtTheEndOfTheFileIsTheEnd) {
  CSyntax engine = engineWith("words:white:if else\\");
  EXPECT_EQ(coloursOf(engine, L"if else"), "77.7777");
}

TEST(DefinitionsReader, BytesThatAreNoTextMatchThemselves) {
  CSyntax engine = engineWith("linecomment:red:\xFF\xFE\nwordchars:\xE9\nwords:green:caf\xE9\n");
  EXPECT_EQ(coloursOf(engine, L"caf\xFFFFFFE9 \xFFFFFFFF\xFFFFFFFEx"), "2222.444");
}

TEST(DefinitionsReader, AnyBytesAreTaken) {
  std::string bytes = "[any:*]\n";
  for (int i = 0; i < 20000; ++i) bytes += static_cast<char>(i * 7919 >> 3);
  EXPECT_NE(read(bytes), nullptr);
  EXPECT_NE(read(std::string("[any:*]\0\nwords:a\0:b", 19) + "\n[x:*]\n"), nullptr);
}

}  // namespace
