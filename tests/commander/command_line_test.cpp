#include "commander/command_line.h"

#include <gtest/gtest.h>

#include "foundation/names.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "options/options.h"

namespace {

using Direction = CommandLine::Direction;

std::string shown(const CommandLine& line) {
  return toUtf8(line.text()).data();
}

CommandLine lineWith(const wchar_t* text) {
  CommandLine line;
  line.setText(text);
  return line;
}

void fillHistory(std::initializer_list<const wchar_t*> commands) {
  commandHistory().clear();
  for (const wchar_t* command : commands) addCommand(command);
}

TEST(CommandLine, CharactersGoInAtTheCursor) {
  CommandLine line = lineWith(L"ac");
  line.moveLeft();
  EXPECT_TRUE(line.insert(L'b'));
  EXPECT_EQ(shown(line), "abc");
  EXPECT_EQ(line.cursor(), 2);
}

TEST(CommandLine, TakesNoMoreThan511Characters) {
  CommandLine line = lineWith(Westring(L'x', 510).data());
  EXPECT_FALSE(line.insert(Westring(L"ab")));
  EXPECT_TRUE(line.insert(L'a'));
  EXPECT_FALSE(line.insert(L'b'));
  EXPECT_EQ(line.text().length(), 511);
}

TEST(CommandLine, DeleteAtTheEndDoesNothing) {
  CommandLine line = lineWith(L"ab");
  line.deleteCharacter();
  EXPECT_EQ(shown(line), "ab");
  line.moveHome();
  line.deleteCharacter();
  EXPECT_EQ(shown(line), "b");
  line.backspace();
  EXPECT_EQ(shown(line), "b");
}

TEST(CommandLine, WordsAreDeletedToEitherSide) {
  CommandLine line = lineWith(L"copy one two");
  line.deleteWordLeft();
  EXPECT_EQ(shown(line), "copy one ");
  line.moveHome();
  GlobalOptions::BriefWordRight = true;
  line.deleteWordRight();
  EXPECT_EQ(shown(line), " one ");
}

TEST(CommandLine, WordRightStopsWhereTheOptionSays) {
  CommandLine line = lineWith(L"one two");
  line.moveHome();
  GlobalOptions::BriefWordRight = true;
  line.moveWordRight();
  EXPECT_EQ(line.cursor(), 3);
  line.moveHome();
  GlobalOptions::BriefWordRight = false;
  line.moveWordRight();
  EXPECT_EQ(line.cursor(), 4);
  GlobalOptions::BriefWordRight = true;
}

TEST(CommandLine, SteppingBackPastTheOldestBringsTheUnfinishedLine) {
  fillHistory({L"first", L"second"});
  CommandLine line = lineWith(L"half");
  line.stepHistory(Direction::Older);
  EXPECT_EQ(shown(line), "second");
  line.stepHistory(Direction::Older);
  EXPECT_EQ(shown(line), "first");
  line.stepHistory(Direction::Older);
  EXPECT_EQ(shown(line), "half");
}

TEST(CommandLine, SteppingForwardFromTheUnfinishedLineWrapsToTheOldest) {
  fillHistory({L"first", L"second"});
  CommandLine line = lineWith(L"half");
  line.stepHistory(Direction::Newer);
  EXPECT_EQ(shown(line), "first");
  line.stepHistory(Direction::Newer);
  EXPECT_EQ(shown(line), "second");
  line.stepHistory(Direction::Newer);
  EXPECT_EQ(shown(line), "half");
}

TEST(CommandLine, SteppingThroughAnEmptyHistoryChangesNothing) {
  fillHistory({});
  CommandLine line = lineWith(L"half");
  line.stepHistory(Direction::Older);
  EXPECT_EQ(shown(line), "half");
}

TEST(CommandLine, APrefixFindsTheNewestLineThatBeginsWithItAndTheCursorStays) {
  fillHistory({L"make all", L"ls", L"MAKE clean"});
  CommandLine line = lineWith(L"ma");
  line.completeFromHistory(Direction::Older);
  EXPECT_EQ(shown(line), "MAKE clean");
  EXPECT_EQ(line.cursor(), 2);
  line.completeFromHistory(Direction::Older);
  EXPECT_EQ(shown(line), "make all");
  line.completeFromHistory(Direction::Older);
  EXPECT_EQ(shown(line), "MAKE clean");
}

TEST(CommandLine, APrefixSearchedForwardsFindsTheOldestFirst) {
  fillHistory({L"make all", L"ls", L"make clean"});
  CommandLine line = lineWith(L"ma");
  line.completeFromHistory(Direction::Newer);
  EXPECT_EQ(shown(line), "make all");
}

TEST(CommandLine, APrefixThatNothingBeginsWithLeavesTheLine) {
  fillHistory({L"make all"});
  CommandLine line = lineWith(L"xy");
  line.completeFromHistory(Direction::Older);
  EXPECT_EQ(shown(line), "xy");
}

TEST(CommandLine, TheVisiblePartFollowsTheCursor) {
  CommandLine line = lineWith(Westring(L'x', 200).data());
  int scroll = line.scrollFor(60);
  EXPECT_LT(line.cursor() - scroll, 60);
  line.moveHome();
  EXPECT_EQ(line.scrollFor(60), 0);
}

TEST(CommandLine, AShortenedLineScrollsBackSoThatFortyCharactersShow) {
  CommandLine line = lineWith(Westring(L'x', 100).data());
  line.scrollFor(60);
  for (int i = 0; i < 50; ++i) line.backspace();
  EXPECT_EQ(line.scrollFor(60), 10);
}

}  // namespace
