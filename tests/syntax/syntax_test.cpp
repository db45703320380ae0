#include "syntax/syntax.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "options/colours.h"
#include "options/options.h"
#include "syntax/coloured_text.h"
#include "syntax/definitions_reader.h"

namespace {

// The colours of some lines, one after the other.
std::vector<std::string> coloursOfLines(CSyntax& engine, const std::vector<std::wstring>& lines) {
  std::vector<std::string> result;
  for (const std::wstring& line : lines) result.push_back(coloursOf(engine, line));
  return result;
}

using ColourLines = std::vector<std::string>;

TEST(Syntax, WithoutDefinitionsAllTextHasTheDefaultColour) {
  CSyntax engine;
  EXPECT_FALSE(engine.active());
  CellString cells;
  engine.colour(L"int\ta", cells);
  ASSERT_EQ(cells.length(), 9);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(cells[i].attr, colourOf(Colour::FileViewer));
}

TEST(Syntax, SwitchedOffItColoursNothingAndKeepsItsState) {
  CSyntax engine = engineWith("blockcomment:red:(:)");
  engine.skip(L"(");
  const CContextStack state = engine.state();
  engine.off();
  EXPECT_FALSE(engine.active());
  CellString cells;
  engine.colour(L"a)", cells);
  EXPECT_EQ(cells[0].attr, colourOf(Colour::FileViewer));
  engine.skip(L")");
  EXPECT_TRUE(engine.state() == state);
}

// One line by rules, as a sentence says.
struct LineOfRules {
  const char* sentence;
  const char* rules;
  const wchar_t* line;
  const char* colours;
};

constexpr LineOfRules LinesOfRules[] = {
    {"WordsNumbersSymbolsAndCommentsHaveTheirColours",
     "words:white:if else\nnumber:red\nsymbols:yellow:+-\nlinecomment:green://", L"if x+12 // if",
     "77..644.22222"},
    {"AWordRuleInAStateHoldsThereOnlyAndItsFlagIgnoresCase",
     "state::code:{:}\nwords(code)/i:white:begin", L"begin {begin BEGIN} Begin",
     ".......77777.77777......."},
    {"ARuleWithoutAStateListHoldsOutsideOnly",
     "state::code:{:}\nwords:white:if\nwords(,code):red:or", L"if or {if or} if",
     "77.44.....44..77"},
    {"TheFirstListThatHoldsAWordAndIsActiveGivesItsColour",
     "words(x):red:a\nwords:green:a b\nwords:white:a b c", L"a b c d", "2.2.7.."},
    {"TheLastNumberRuleAndTheLastSymbolListWin",
     "number:red\nnumber:green\nnumber(x):white\n"
     "symbols:red:+-\nsymbols:green:+\nsymbols(x):white:+",
     L"12+-", "2224"},
    {"ARunThatStartsWithADigitIsANumberAndNeverAWord", "words:white:1st st\nnumber:red",
     L"1st st s1", "444.77..."},
    {"WithoutANumberRuleSuchARunIsPlain", "words:white:1st st", L"1st st", "....77"},
    {"AWordIsTheWholeRunOfWordCharacters", "wordchars:_-\nwords:white:if do-it",
     L"iff _if do-it if", "........77777.77"},
    {"ABeginTextIsLookedForWhereARunStartsNotInsideIt", "linecomment:red:else", L"xelse elsex",
     "......44444"},
    {"AboveTheTableTheLowByteTellsOfWordsAndSymbols", "words:white:\xC5\x81x\nsymbols:red:+",
     L"\x0141x \x012B+", "77.44"},
    {"TheSameLowByteDoesNotMakeItTheSameWord", "words:white:\xC5\x81x", L"Ax", ".."},
    {"ABeginTextIsComparedWhole", "linecomment:red:\xE2\x80\x94", L"\x2014x", "44"},
    {"TheLowByteOfABeginTextBeginsNothing", "linecomment:red:\xE2\x80\x94", L"\x0014x", ".."},
    {"BeginAndEndMayIgnoreCase", "blockcomment/i:red:Rem:Mer", L"rEM x MER x", "444444444.."},
    {"SoMayTextsAboveAscii", "linecomment/i:green:\xC3\xA4", L"\x00C4x", "22"},
    {"WithoutTheFlagCaseCounts", "blockcomment:red:Rem:Mer", L"rem x", "....."},
    {"TheFirstElementInTheFileWinsAtAPlace", "string:green:\":\"\nblockcomment:red:\"\"\":\"\"\"",
     L"\"\"\"a\"", "22222"},
    {"TheLongerBeginTextWinsWhenItComesFirst", "blockcomment:red:\"\"\":\"\"\"\nstring:green:\":\"",
     L"\"\"\"a\"", "44444"},
    {"ElementsAreTriedBeforeStateChanges", "statechange:red:/:push:none\nlinecomment:green://",
     L"/a//a", "4.222"},
};

void PrintTo(const LineOfRules& line, std::ostream* out) {
  *out << line.rules << "\n";
}

class SyntaxOfALine : public testing::TestWithParam<LineOfRules> {};

TEST_P(SyntaxOfALine, HasItsColours) {
  CSyntax engine = engineWith(GetParam().rules);
  EXPECT_EQ(coloursOf(engine, GetParam().line), GetParam().colours);
}

INSTANTIATE_TEST_SUITE_P(Rules, SyntaxOfALine, testing::ValuesIn(LinesOfRules),
                         [](const auto& each) { return std::string(each.param.sentence); });

TEST(Syntax, TheLineReplacesWhatWasInTheCells) {
  CSyntax engine = engineWith("number:red");
  CellString cells(L"old text that was longer than the new", 7);
  engine.colour(L"12", cells);
  EXPECT_EQ(cells.length(), 2);
  engine.colour(L"", cells);
  EXPECT_EQ(cells.length(), 0);
}

TEST(Syntax, WhatBeginsIsNotAskedForItsEndAtTheSamePlace) {
  CSyntax engine = engineWith("blockcomment:red:%:%");
  EXPECT_EQ(coloursOf(engine, L"%a%b"), "444.");
  EXPECT_EQ(coloursOf(engine, L"%%b"), "44.");
  EXPECT_TRUE(engine.state().empty());
}

TEST(Syntax, ABlockGoesOnUntilItsEndOnALaterLine) {
  CSyntax engine = engineWith("blockcomment:red:/*:*/");
  EXPECT_EQ(coloursOfLines(engine, {L"a /* b", L"", L"c", L"d */ e"}),
            (ColourLines{"..4444", "", "4", "4444.."}));
}

TEST(Syntax, AStringThatIsNotClosedRunsOn) {
  CSyntax engine = engineWith("string:green:\":\"");
  EXPECT_EQ(coloursOfLines(engine, {L"\"a", L"b\"c"}), (ColourLines{"22", "22."}));
}

TEST(Syntax, AnEscapeProtectsTheClosingQuote) {
  CSyntax engine = engineWith("escape:\\:\nstring:green:\":\"");
  EXPECT_EQ(coloursOf(engine, L"\"a\\\"b\"c"), "222222.");
  EXPECT_EQ(coloursOf(engine, L"\"\\\\\"c"), "2222.");
}

TEST(Syntax, AnEscapeAtTheEndOfALineProtectsNothing) {
  CSyntax engine = engineWith("string:green:\":\":\\:");
  EXPECT_EQ(coloursOfLines(engine, {L"\"a\\", L"\"b"}), (ColourLines{"222", "2."}));
}

TEST(Syntax, AProtectedCharacterGoesOutAsItIs) {
  CSyntax engine = engineWith("string:green:\":\":\\:");
  CellString cells;
  engine.colour(L"\"\\\x07\x07\\\t.", cells);
  EXPECT_EQ(cells[2].ch, 7);
  EXPECT_EQ(cells[3].ch, L' ');
  // But for a tab, or the cells behind it would leave their columns.
  EXPECT_EQ(cells.length(), 9);
  EXPECT_EQ(cells[8].ch, L'.');
}

TEST(Syntax, AStateWithoutAnEndStaysOpenUntilAChangeEndsIt) {
  CSyntax engine = engineWith("state:green:code:<<:\nstatechange(code):red:>>:pop");
  EXPECT_EQ(coloursOfLines(engine, {L"<<a", L"b>>c"}), (ColourLines{"222", "244."}));
}

TEST(Syntax, AChangeSwitchesOrPushesToTheFirstElementOfThatName) {
  CSyntax engine = engineWith(
      "state(none):green:tag:#:>\n"
      "state(none):white:text:#:.\n"
      "statechange:red:<:push:tag\n"
      "statechange(tag):red:/:switch:TEXT\n");
  EXPECT_EQ(coloursOf(engine, L"a<b/c.d<e>f"), ".42477.422.");
}

TEST(Syntax, AChangeToATargetThatIsNotThereOnlyColoursItsText) {
  CSyntax engine = engineWith("statechange:red:and:push:none");
  EXPECT_EQ(coloursOf(engine, L"and and"), "444.444");
  EXPECT_TRUE(engine.state().empty());
}

TEST(Syntax, APopOutsideAllStatesDoesNothing) {
  CSyntax engine = engineWith("statechange:red:):pop\nstatechange:red:|:switch:none");
  EXPECT_EQ(coloursOf(engine, L"a)|)"), ".444");
}

TEST(Syntax, ARuleLooksAtTheInnermostElementOnly) {
  CSyntax engine =
      engineWith("state(,a,b):green:a:(:)\nstate(a):white:b:[:]\nnumber(a):red\nnumber:yellow");
  EXPECT_EQ(coloursOf(engine, L"1(1[1](1)1)1"), "624777242426");
}

TEST(Syntax, NestedCommentsCount) {
  CSyntax engine = engineWith("blockcomment(,blockcomment):red:(*:*)");
  EXPECT_EQ(coloursOf(engine, L"(*(*a*)b*)c"), "4444444444.");
}

TEST(Syntax, ALineCommentEndsWithItsLine) {
  CSyntax engine = engineWith("linecomment:red:#\nnumber:green");
  EXPECT_EQ(coloursOfLines(engine, {L"1#1", L"1"}), (ColourLines{"244", "2"}));
}

TEST(Syntax, ALineCommentInAStateClosesTheStateToo) {
  CSyntax engine =
      engineWith("state(,code):green:code:{:}\nlinecomment(code):red:#\nnumber(code):white");
  engine.skip(L"{{{");
  EXPECT_EQ(engine.state().depth(), 3);
  engine.skip(L"# }");
  EXPECT_EQ(engine.state().depth(), 2);
}

TEST(Syntax, LineBoundElementsGoTogetherWithOneThatIsNot) {
  CSyntax engine = engineWith("state(,a,b):green:a:(:)\nstate(,a,b)/l:red:b:[:]");
  engine.skip(L"((([[");
  EXPECT_EQ(engine.state().depth(), 2);
  engine.skip(L"[");
  EXPECT_EQ(engine.state().depth(), 1);
  engine.skip(L"");
  EXPECT_EQ(engine.state().depth(), 1) << "the top isn't bound to the line";
}

TEST(Syntax, AtTheEndOfALineNothingIsTakenFromAnEmptyStack) {
  CSyntax engine = engineWith("linecomment:red:#");
  engine.skip(L"a");
  engine.skip(L"#");
  engine.skip(L"");
  EXPECT_TRUE(engine.state().empty());
}

TEST(Syntax, TabsGoToTheNextStopOfTheCells) {
  CSyntax engine = engineWith("number:red\nlinecomment:green:#");
  const ColouredLine line = colourLine(engine, L"12\t3\t#\ta");
  EXPECT_EQ(line.shown, "12      3       #       a");
  EXPECT_EQ(line.colours, "44......4.......222222222");
  GlobalOptions::TabWidth = 4;
  EXPECT_EQ(colourLine(engine, L"12\t3").shown, "12  3");
  GlobalOptions::TabWidth = 8;
}

TEST(Syntax, CharactersWithoutAPictureShowAsTheScreenShowsThem) {
  CSyntax engine = engineWith("number:red");
  CellString cells;
  engine.colour(std::wstring_view(L"\x01\x07\x08\x7F\x85\xFFFFFFE9\0z", 8), cells);
  const std::wstring wanted = L"\x263A  \x2302\x2302\x00E9 z";
  ASSERT_EQ(cells.length(), static_cast<int>(wanted.size()));
  for (int i = 0; i < cells.length(); ++i) EXPECT_EQ(cells[i].ch, wanted[static_cast<size_t>(i)]);
}

TEST(Syntax, SkippingALineLeavesTheStateOfColouringIt) {
  const std::string rules =
      "state(,code,str):green:code:{:}\nstring(code):red:\":\":\\:\nlinecomment(code):white:#\n"
      "wordchars:_\nwords:red:a_b\nnumber:green\nstatechange(code):red:end:pop\n";
  CSyntax coloured = engineWith(rules);
  CSyntax skipped = coloured;
  CellString cells;
  for (const wchar_t* line : {L"{ a_b", L"{\"x\\\" {", L"} \" end {{", L"# }", L"1 end", L"}"}) {
    coloured.colour(line, cells);
    skipped.skip(line);
    EXPECT_TRUE(coloured.state() == skipped.state());
    EXPECT_EQ(coloured.state().depth(), skipped.state().depth());
  }
}

TEST(Syntax, TheFirstCellsAloneAreThoseOfTheWholeLine) {
  CSyntax whole =
      engineWith("wordchars:_\nwords:white:if\nstring:red:\":\":\\ \nblockcomment:green:(:)");
  CSyntax part = whole;
  const std::wstring line = L"if a_b \"x\\\"y\" 12\tif (if (";
  CellString all;
  CellString some;
  whole.colour(line, all);
  for (int cells = 0; cells <= all.length() + 1; ++cells) {
    part.reset();
    part.colour(line, some, cells);
    ASSERT_GE(some.length(), std::min(cells, all.length()));
    for (int i = 0; i < some.length(); ++i) ASSERT_EQ(some[i], all[i]) << cells << " " << i;
    EXPECT_TRUE(part.state() == whole.state()) << cells;
  }
}

TEST(Syntax, OfALongLineTheFirstCellsAreAllThatIsMade) {
  for (CSyntax engine : {CSyntax(), engineWith("words:white:if")}) {
    CellString cells;
    engine.colour(std::wstring(3 * CSyntax::ColouredCharacters, L'+'), cells, 100);
    EXPECT_EQ(cells.length(), 100);
  }
}

TEST(Syntax, ALineThatAsksForTooManyWordsHasTheStateOfOneThatIsSkipped) {
  std::string rules = "blockcomment:red:(:)\n";
  for (int i = 0; i < 70000; ++i) rules += "words:white:w\n";
  CSyntax coloured = engineWith(rules);
  CSyntax skipped = coloured;
  coloursOf(coloured, L"a b c (");
  skipped.skip(L"a b c (");
  EXPECT_TRUE(coloured.state() == skipped.state());
}

TEST(Syntax, AStateThatWasKeptIsTakenUpAgain) {
  CSyntax engine = engineWith("blockcomment:red:/*:*/");
  engine.skip(L"/*");
  const CContextStack inside = engine.state();
  engine.skip(L"*/");
  EXPECT_EQ(coloursOf(engine, L"a"), ".");
  engine.setState(inside);
  EXPECT_EQ(coloursOf(engine, L"a"), "4");
  engine.reset();
  EXPECT_EQ(coloursOf(engine, L"a"), ".");
}

TEST(Syntax, AStateOfFormerDefinitionsCountsAsEmpty) {
  CSyntax engine = engineWith("blockcomment:red:/*:*/");
  engine.skip(L"/*");
  const CContextStack former = engine.state();
  engine.use(readSyntax("[any:*]\nblockcomment:red:/*:*/", L"a", PlainText));
  EXPECT_TRUE(engine.state().empty());
  engine.setState(former);
  EXPECT_TRUE(engine.state().empty());
  EXPECT_EQ(coloursOf(engine, L"a"), ".");
}

TEST(Syntax, ColoursStopAfterTheLimitAndTheStateThereIsTheLines) {
  CSyntax engine = engineWith("blockcomment:red:(:)\nnumber:green");
  std::wstring line(CSyntax::ColouredCharacters - 1, L' ');
  line += L"1)1(";
  const std::string colours = coloursOf(engine, line);
  EXPECT_EQ(colours.substr(CSyntax::ColouredCharacters - 2), ".2...");
  EXPECT_TRUE(engine.state().empty());

  line[0] = L'(';
  EXPECT_EQ(coloursOf(engine, line).substr(CSyntax::ColouredCharacters - 2), "44...");
  EXPECT_EQ(engine.state().depth(), 1);
  engine.reset();
  engine.skip(line);
  EXPECT_EQ(engine.state().depth(), 1);
}

TEST(Syntax, ALineBeyondTheLimitStillEndsWhatIsBoundToIt) {
  CSyntax engine = engineWith("linecomment:red:#");
  engine.skip(L"#" + std::wstring(CSyntax::ColouredCharacters * 2, L'x'));
  EXPECT_TRUE(engine.state().empty());
}

// Each of the rules would have to be tried at each character.
TEST(Syntax, ALineOfManyRulesEndsInTheDefaultColourInsteadOfTakingMinutes) {
  std::string rules = "linecomment:green:#\n";
  for (int i = 0; i < 100000; ++i)
    rules += "statechange:red:a" + std::to_string(i) + ":push:none\n";
  CSyntax engine = engineWith(rules);
  const std::string colours = coloursOf(engine, L"#\ta5b" + std::wstring(60000, L'-'));
  EXPECT_EQ(colours.find_first_not_of('2'), std::string::npos)
      << "rules that aren't tried cost nothing";
  std::wstring line = L"a5 ";
  while (line.size() < 60000) line += L"ab";
  const std::string tried = coloursOf(engine, line + L"a5");
  EXPECT_EQ(tried.substr(0, 3), "44.");
  EXPECT_EQ(tried.substr(tried.size() - 2), "..");
}

TEST(Syntax, ALongTextIsNotComparedAtEachPlaceForEver) {
  const std::string text(40000, '-');
  CSyntax engine = engineWith("blockcomment:red:(:" + text + "b\nlinecomment:green:" + text + "b");
  const std::string begun = coloursOf(engine, std::wstring(65000, L'-') + L"(");
  EXPECT_EQ(begun.find_first_not_of('.'), std::string::npos);
  const std::string ended = coloursOf(engine, L"(" + std::wstring(65000, L'-'));
  EXPECT_EQ(ended.front(), '4');
  EXPECT_EQ(ended.back(), '.');
  EXPECT_EQ(engine.state().depth(), 1);
}

TEST(Syntax, PushesBeyondTheDeepestStackAreIgnored) {
  CSyntax engine = engineWith("state(,a):red:a:(:)");
  const std::wstring line(40000, L'(');
  engine.skip(line);
  EXPECT_EQ(engine.state().depth(), 40000);
  CellString cells;
  engine.colour(line, cells);
  EXPECT_EQ(engine.state().depth(), CContextStack::Deepest);
  EXPECT_EQ(coloursOf(engine, L"())"), "444");
  EXPECT_EQ(engine.state().depth(), CContextStack::Deepest - 2);
}

}  // namespace
