#include "language/macro_expansion.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "language/environment.h"
#include "language/shell_test_support.h"
#include "options/options.h"

namespace {

struct FakePanel {
  Westring path;
  Westring current;
  bool archive = false;
  std::vector<EntryPtr> entries;

  entry* add(const wchar_t* name, bool tagged) {
    entries.emplace_back(newEntry(name));
    entries.back()->tagged = tagged ? 1 : 0;
    return entries.back().get();
  }
};

class FakeContext : public MacroContext {
 public:
  FakeContext() {
    panels[0].path = L"/this dir";
    panels[0].current = L"cur.txt";
    panels[1].path = L"/other";
    panels[1].current = L"far.c";
  }

  Westring path(MacroPanel which) override { return panel(which).path; }
  Westring currentName(MacroPanel which) override { return panel(which).current; }
  int entryCount(MacroPanel which) override {
    return static_cast<int>(panel(which).entries.size());
  }
  entry* entryAt(MacroPanel which, int index) override {
    return panel(which).entries[static_cast<size_t>(index)].get();
  }
  bool inArchive(MacroPanel which) override { return panel(which).archive; }
  std::optional<Westring> extract(MacroPanel which, const Westring& name) override {
    if (extractFails) return std::nullopt;
    return (which == MacroPanel::This ? L"/tmp/this/" : L"/tmp/other/") + name;
  }
  std::optional<Westring> ask(const Westring& title) override {
    titles.push_back(toUtf8(title).data());
    return answer;
  }
  std::optional<Westring> writeList(const std::vector<Westring>& lines) override {
    ++lists;
    listed.clear();
    for (const Westring& line : lines) listed.push_back(toUtf8(line).data());
    if (listFails) return std::nullopt;
    return Westring(L"/tmp/TD#1.0");
  }

  FakePanel& panel(MacroPanel which) { return panels[which == MacroPanel::This ? 0 : 1]; }

  FakePanel panels[2];
  std::optional<Westring> answer = Westring(L"an answer");
  bool extractFails = false;
  bool listFails = false;
  int lists = 0;
  std::vector<std::string> titles;
  std::vector<std::string> listed;
};

class Macros : public ::testing::Test {
 protected:
  // The result in front where it isn't 0.
  std::string expand(const wchar_t* text, const wchar_t* file = L"",
                     MacroMode mode = MacroMode::Command) {
    Westring line(text);
    MacroResult result = expandCommand(line, file, context, mode);
    std::string shown = toUtf8(line).data();
    if (result == MacroResult::Failed) return "-1 " + shown;
    if (result == MacroResult::OncePerTagged) return "1 " + shown;
    return shown;
  }
  Westring expanded(const wchar_t* text, const wchar_t* file) {
    Westring line(text);
    EXPECT_NE(expandCommand(line, file, context, MacroMode::Command), MacroResult::Failed);
    return line;
  }
  std::string program(const wchar_t* text, const wchar_t* file) {
    return expand(text, file, MacroMode::Program);
  }
  std::string dry(const wchar_t* text, const wchar_t* file = L"") {
    return expand(text, file, MacroMode::DryRun);
  }

  FakeContext context;
};

struct Row {
  const wchar_t* text;
  const char* result;
};

}  // namespace

TEST_F(Macros, EachLetterHasItsMeaning) {
  const Row rows[] = {
      {L"a !f b", "a /this\\ dir/a\\ b.txt b"},
      {L"!F", "/other/far.c"},
      {L"!p", "/this\\ dir"},
      {L"!P", "/other"},
      {L"!s", "/this\\ dir/"},
      {L"!S", "/other/"},
      {L"!n", ""},
      {L"x!n", "x"},
      {L"!t", "1 a\\ b.txt"},
      {L"!tx", "1 a\\ b"},
      {L"!txt", "1 a\\ bt"},
      {L"!x", "a\\ b"},
      {L"!x.bak", "a\\ b.bak"},
      {L"!!", "!"},
      {L"!!f", "!f"},
      {L"!", "a\\ b.txt"},
      {L"less !", "less a\\ b.txt"},
      {L"! -l", "a\\ b.txt -l"},
      {L"!,!", "a\\ b.txt,a\\ b.txt"},
      {L"!q", "a\\ b.txtq"},
      {L"!l", "a\\ b.txt"},
      {L"!L", ""},
      {L"!i", "an answer"},
      {L"!@", "/tmp/TD\\#1.0"},
      {L"", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(expand(row.text, L"a b.txt"), row.result) << toUtf8(row.text).data();
  }
}

TEST_F(Macros, EachLetterMeansTheSameToAProgramButListsAreTheFile) {
  context.panels[0].add(L"tagged", true);
  context.panels[1].add(L"tagged", true);
  const Row rows[] = {
      {L"less !f", "less /this\\ dir/a\\ b.txt"},
      {L"less !F", "less /other/far.c"},
      {L"less !p", "less /this\\ dir"},
      {L"less !P", "less /other"},
      {L"less !s", "less /this\\ dir/"},
      {L"less !S", "less /other/"},
      {L"less !n", "less "},
      {L"less !t", "1 less a\\ b.txt"},
      {L"less !tx", "1 less a\\ b"},
      {L"less !x", "less a\\ b"},
      {L"less !!", "less !"},
      {L"less !", "less a\\ b.txt"},
      {L"less !q", "less a\\ b.txtq"},
      {L"less !i", "less an answer"},
      {L"less !@", "less /tmp/TD\\#1.0"},
      {L"less !l", "less a\\ b.txt"},
      {L"less !L", "less "},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(program(row.text, L"a b.txt"), row.result) << toUtf8(row.text).data();
  }
  EXPECT_EQ(context.panels[0].entries[0]->tagged, 1);
  EXPECT_EQ(context.panels[1].entries[0]->tagged, 1);
}

TEST_F(Macros, NeighboursMakeASingleWord) {
  EXPECT_EQ(expand(L"!s!t", L"a b"), "1 /this\\ dir/a\\ b");
  EXPECT_EQ(expand(L"!S!x.o", L"a b.c"), "/other/a\\ b.o");
  EXPECT_EQ(expand(L"!p!!", L"a"), "/this\\ dir!");
  EXPECT_EQ(expand(L"!p!s!x!n!t", L"-a b"), "1 /this\\ dir/this\\ dir/-a\\ b-a\\ b");
  EXPECT_EQ(expand(L"!x!i!x", L"a;b"), "a\\;ban answera\\;b");
  EXPECT_EQ(outputOfShell(L"printf '<%s>' " + expanded(L"!S!t!s!x", L"a \n$b.c")),
            "</other/a \n$b.c/this dir/a \n$b>");
}

TEST_F(Macros, AListBehindAnotherMacroIsAWordOfItsOwn) {
  context.panels[0].add(L"a b", true);
  context.panels[0].add(L"c", true);
  EXPECT_EQ(expand(L"mv !P!l!S"), "mv /other a\\ b c/other/");
}

TEST_F(Macros, WithoutAFileTheCurrentEntryIsMeant) {
  EXPECT_EQ(expand(L"less !"), "less cur.txt");
  EXPECT_EQ(expand(L"!f"), "/this\\ dir/cur.txt");
  EXPECT_EQ(expand(L"!x"), "cur");
}

TEST_F(Macros, OnAnEmptyPanelTheNameIsEmpty) {
  context.panels[0].current = L"";
  context.panels[1].current = L"";
  EXPECT_EQ(expand(L"rm !"), "rm ");
  EXPECT_EQ(expand(L"rm -r !f"), "rm -r ") << "never the directory itself";
  EXPECT_EQ(expand(L"rm -r !F"), "rm -r ");
  EXPECT_EQ(expand(L"rm !x !t"), "1 rm  ");
}

TEST_F(Macros, AProgramWithoutMacrosGetsTheFile) {
  EXPECT_EQ(program(L"less", L"a b.txt"), "less a\\ b.txt");
  EXPECT_EQ(program(L"", L"a b.txt"), "a\\ b.txt");
  EXPECT_EQ(program(L"less -N", L"x"), "less -N x");
}

TEST_F(Macros, AProgramWithAnyMacroGetsNoFileAdded) {
  EXPECT_EQ(program(L"make!n", L"a"), "make");
  EXPECT_EQ(program(L"echo !!", L"a"), "echo !");
  EXPECT_EQ(program(L"edit ! &", L"a"), "edit a &");
}

TEST_F(Macros, OnlyTheProgramModeAddsTheFile) {
  EXPECT_EQ(expand(L"less", L"a"), "less");
  EXPECT_EQ(dry(L"less", L"a"), "less");
}

TEST_F(Macros, TheLeadCharacterIsAnOption) {
  GlobalOptions::CmdChar = '#';
  const Row rows[] = {
      {L"#f #F", "/this\\ dir/a\\ b.txt /other/far.c"},
      {L"#p #P #s #S", "/this\\ dir /other /this\\ dir/ /other/"},
      {L"#n#x.bak", "a\\ b.bak"},
      {L"#t", "1 a\\ b.txt"},
      {L"#tx", "1 a\\ b"},
      {L"#l#L", "a\\ b.txt"},
      {L"#i\"Title\"", "an answer"},
      {L"#@", "/tmp/TD\\#1.0"},
      {L"##", "#"},
      {L"less # !f !! !", "less a\\ b.txt !f !! !"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(expand(row.text, L"a b.txt"), row.result) << toUtf8(row.text).data();
  }
  EXPECT_EQ(program(L"less !", L"a"), "less ! a");
  EXPECT_EQ(dry(L"less #f !t ##t", L"a"), "less #f !t ##t");
  EXPECT_EQ(dry(L"less #t", L"a"), "1 less #t");
  GlobalOptions::CmdChar = '!';
}

TEST_F(Macros, AnEmptiedLeadCharacterStandsForItsDefault) {
  GlobalOptions::CmdChar = 0;
  EXPECT_EQ(expand(L"less !x", L"a.c"), "less a");
  EXPECT_EQ(program(L"less", L"a"), "less a");
  GlobalOptions::CmdChar = '!';
}

TEST_F(Macros, TextOfTheUserIsNeverQuoted) {
  EXPECT_EQ(expand(L"a; b | c > 'd' && \"e\" * ~ `f`"), "a; b | c > 'd' && \"e\" * ~ `f`");
  context.answer = Westring(L"x; y $(z)");
  EXPECT_EQ(expand(L"run !i"), "run x; y $(z)");
}

TEST_F(Macros, ALeadingDashInANameIsNoOption) {
  EXPECT_EQ(expand(L"rm !", L"-rf"), "rm ./-rf");
  EXPECT_EQ(expand(L"rm !s!t", L"-rf"), "1 rm /this\\ dir/-rf");
  EXPECT_EQ(expand(L"rm !x", L"-r.c"), "rm ./-r");
}

TEST_F(Macros, AFileNameNeverBecomesACommand) {
  for (const std::string& name : hostileNames()) {
    const Westring file = decodeFileName(name.c_str());
    context.panels[0].entries.clear();
    context.panels[0].add(file.data(), true);
    for (const wchar_t* pattern :
         {L"printf '<%s>' x!", L"printf '<%s>' 'x!'", L"printf '<%s>' \"x!\""}) {
      Westring line(pattern);
      ASSERT_EQ(expandCommand(line, file, context, MacroMode::Command), MacroResult::Done);
      EXPECT_EQ(outputOfShell(line), "<x" + name + ">") << toUtf8(line).data();
    }
    Westring line(L"printf '<%s>'!l");
    ASSERT_EQ(expandCommand(line, file, context, MacroMode::Command), MacroResult::Done);
    EXPECT_EQ(outputOfShell(line), "<" + std::string(name[0] == '-' ? "./" : "") + name + ">");
  }
}

TEST_F(Macros, APathWithASlashIsTakenAsItIs) {
  EXPECT_EQ(expand(L"!f", L"/abs/x"), "/abs/x");
  EXPECT_EQ(expand(L"!f", L"sub/x"), "/this\\ dir/sub/x");
  EXPECT_EQ(expand(L"!x", L"/a.d/x"), "/a.d/x");
}

TEST_F(Macros, TheRootHasOneSlash) {
  context.panels[0].path = L"/";
  EXPECT_EQ(expand(L"!p !s !f", L"x"), "/ / /x");
}

TEST_F(Macros, AMemberOfAnArchiveIsExtracted) {
  context.panels[0].archive = true;
  EXPECT_EQ(expand(L"less !", L"a b"), "less /tmp/this/a\\ b");
  EXPECT_EQ(expand(L"less !f", L"a b"), "less /tmp/this/a\\ b");
  EXPECT_EQ(expand(L"less !F"), "less /other/far.c");
  context.panels[1].archive = true;
  EXPECT_EQ(expand(L"less !F"), "less /tmp/other/far.c");
  EXPECT_EQ(expand(L"less !", L"/tmp/x"), "less /tmp/x") << "a path isn't a member's name";
  EXPECT_EQ(expand(L"echo !x !t !p", L"a.b"), "1 echo a a.b /this\\ dir")
      << "names alone stay names";
}

TEST_F(Macros, AFailedExtractionEndsTheExpansion) {
  context.panels[0].archive = true;
  context.extractFails = true;
  EXPECT_EQ(expand(L"less !f", L"a"), "-1 less !f");
  EXPECT_EQ(expand(L"less !", L"a"), "-1 less !");
  EXPECT_EQ(expand(L"less !F", L"a"), "less /other/far.c");
  EXPECT_EQ(program(L"less", L"a"), "-1 less") << "the text stays as it was";
  EXPECT_EQ(dry(L"less !f", L"a"), "less !f") << "a dry run extracts nothing";
}

TEST_F(Macros, AQuestionHasItsTitle) {
  EXPECT_EQ(expand(L"a !i\"Which one?\" b"), "a an answer b");
  EXPECT_EQ(expand(L"a !i b"), "a an answer b");
  EXPECT_EQ(expand(L"!i\"\""), "an answer");
  EXPECT_EQ(expand(L"!i\"open"), "an answer");
  EXPECT_EQ(context.titles, (std::vector<std::string>{"Which one?", "?", "", "open"}));
}

TEST_F(Macros, ACancelledQuestionEndsTheExpansion) {
  context.answer = std::nullopt;
  EXPECT_EQ(expand(L"a !i"), "-1 a !i");
  EXPECT_EQ(dry(L"a !i"), "-1 a !i");
}

TEST_F(Macros, ADryRunOnlyAsks) {
  context.panels[0].add(L"x", true);
  EXPECT_EQ(dry(L"cp !f !F !l !L !p !P !s !S !n !x !! ! !, !@ $HOME !", L"a"),
            "cp !f !F !l !L !p !P !s !S !n !x !! ! !, !@ $HOME !");
  EXPECT_EQ(context.lists, 0);
  EXPECT_EQ(context.panels[0].entries[0]->tagged, 1);
  EXPECT_EQ(dry(L"a !t"), "1 a !t");
  EXPECT_EQ(dry(L"a !tx"), "1 a !tx");
  EXPECT_EQ(dry(L"a !!t"), "a !!t") << "a doubled lead character is no macro";
  EXPECT_EQ(dry(L"a !i\"T\" b"), "a an answer b");
  EXPECT_EQ(context.titles, std::vector<std::string>{"T"});
}

TEST_F(Macros, AnAnswerIsNotLookedAtForMacros) {
  context.answer = Westring(L"50!f !!");
  EXPECT_EQ(expand(L"echo !i", L"a"), "echo 50!f !!");
  Westring line(L"echo !i");
  ASSERT_EQ(expandCommand(line, L"a", context, MacroMode::DryRun), MacroResult::Done);
  ASSERT_EQ(expandCommand(line, L"a", context, MacroMode::Command), MacroResult::Done);
  EXPECT_STREQ(toUtf8(line).data(), "echo 50!f !!");
}

TEST_F(Macros, ATaggedListTakesTheTags) {
  entry* first = context.panels[0].add(L"a b", true);
  entry* second = context.panels[0].add(L"c", false);
  entry* third = context.panels[0].add(L"-d", true);
  EXPECT_EQ(expand(L"rm !l x"), "rm  a\\ b ./-d x");
  EXPECT_EQ(first->tagged, 0);
  EXPECT_EQ(first->wasTagged, 1);
  EXPECT_EQ(second->wasTagged, 0);
  EXPECT_EQ(third->tagged, 0);
  EXPECT_EQ(third->wasTagged, 1);
}

TEST_F(Macros, TheOtherPanelsListHasItsPath) {
  entry* item = context.panels[1].add(L"-a", true);
  context.panels[1].add(L"b", true);
  context.panels[0].add(L"c", true);
  EXPECT_EQ(expand(L"rm !L"), "rm  /other/-a /other/b");
  EXPECT_EQ(item->wasTagged, 1);
  EXPECT_EQ(context.panels[0].entries[0]->tagged, 1);
}

TEST_F(Macros, WithoutTagsAListIsTheCurrentNameOrNothing) {
  context.panels[0].add(L"a", false);
  EXPECT_EQ(expand(L"rm !l", L"a b"), "rm a\\ b");
  EXPECT_EQ(expand(L"rm !L", L"a b"), "rm ");
}

TEST_F(Macros, OutsideCommandModeAListIsTheCurrentName) {
  entry* item = context.panels[0].add(L"x", true);
  context.panels[1].add(L"y", true);
  EXPECT_EQ(program(L"less !l", L"a b"), "less a\\ b");
  EXPECT_EQ(program(L"less !L", L"a b"), "less ");
  EXPECT_EQ(item->tagged, 1);
}

TEST_F(Macros, WhatDoesNotFitStaysTaggedForTheNextRun) {
  for (int i = 0; i < 200; ++i) {
    std::wstring name = std::wstring(50, L'n') + std::to_wstring(i);
    context.panels[0].add(name.c_str(), true);
  }
  int tagged = 200;
  int runs = 0;
  while (tagged > 0) {
    const std::string line = expand(L"rm !l --end of the template");
    EXPECT_LE(line.size(), static_cast<size_t>(MaxListedLine));
    int left = 0;
    for (const EntryPtr& item : context.panels[0].entries) left += item->tagged;
    ASSERT_LT(left, tagged) << "each run takes some";
    if (runs == 0) {
      EXPECT_GT(left, 150);
    }
    tagged = left;
    ++runs;
  }
  EXPECT_GE(runs, 200 * 54 / 1000);
  for (const EntryPtr& item : context.panels[0].entries) EXPECT_EQ(item->wasTagged, 1);
}

TEST_F(Macros, TheOtherPanelsListCountsItsPathsToTheLimit) {
  context.panels[1].path = Westring(L"/") + Westring(L'd', 98);
  for (int i = 0; i < 20; ++i) context.panels[1].add(std::wstring(99, L'n').c_str(), true);
  // " /ddd.../nnn..." takes 200 characters, and "rm " stands ahead of the first one.
  EXPECT_EQ(expand(L"rm !L").size(), 3u + 4 * 200);
  int left = 0;
  for (const EntryPtr& item : context.panels[1].entries) left += item->tagged;
  EXPECT_EQ(left, 16);
}

TEST_F(Macros, QuotingCountsToTheLimit) {
  for (int i = 0; i < 20; ++i) context.panels[0].add(std::wstring(99, L'$').c_str(), true);
  EXPECT_EQ(expand(L"rm !l").size(), 3u + 5 * 199);
}

TEST_F(Macros, TheListFillsTheLineToItsLimitExactly) {
  // "rm " and " b" leave 1000 - 5 characters, a name and its blank take 100.
  for (int i = 0; i < 20; ++i) context.panels[0].add(std::wstring(99, L'n').c_str(), true);
  EXPECT_EQ(expand(L"rm !l b").size(), 905u);
  for (const EntryPtr& item : context.panels[0].entries) item->tagged = 1;
  EXPECT_EQ(expand(std::wstring(98, L'x').append(L"!lyz").c_str()).size(), 1000u);
}

TEST_F(Macros, ANameTooLongForAnyLineIsStillReached) {
  context.panels[1].path = Westring(L'd', 1500);
  context.panels[1].add(L"a", true);
  context.panels[1].add(L"b", true);
  EXPECT_EQ(expand(L"rm !L"), "rm  " + std::string(1500, 'd') + "/a");
  EXPECT_EQ(expand(L"rm !L"), "rm  " + std::string(1500, 'd') + "/b");
}

TEST_F(Macros, AListFileHoldsTheTaggedNamesQuoted) {
  context.panels[0].add(L"a b", true);
  context.panels[0].add(L"c", false);
  entry* last = context.panels[0].add(L"-d", true);
  EXPECT_EQ(expand(L"tar -T !@"), "tar -T /tmp/TD\\#1.0");
  EXPECT_EQ(context.listed, (std::vector<std::string>{"a\\ b", "./-d"}));
  EXPECT_EQ(last->tagged, 1) << "the tags stay";
}

TEST_F(Macros, AListFileWithoutTagsHoldsTheName) {
  expand(L"tar -T !@", L"x y");
  EXPECT_EQ(context.listed, std::vector<std::string>{"x\\ y"});
}

TEST_F(Macros, AFailedListFileEndsTheExpansion) {
  context.listFails = true;
  EXPECT_EQ(expand(L"tar -T !@", L"x"), "-1 tar -T !@");
}

TEST_F(Macros, VariablesAreReplacedAtTheEnd) {
  sessionEnvironment().set("TD_DIR", "/where");
  EXPECT_EQ(expand(L"cp ! $td_dir/x $NONE", L"a"), "cp a /where/x $NONE");
  EXPECT_EQ(expand(L"cp !", L"$TD_DIR"), "cp \\$TD_DIR") << "a name is no variable";
  EXPECT_EQ(expand(L"cp '!'", L"$TD_DIR"), "cp ''\\$'TD_DIR'");
  EXPECT_EQ(dry(L"cp $TD_DIR"), "cp $TD_DIR");
  sessionEnvironment().set("TD_DIR", nullptr);
}

TEST_F(Macros, ANameThatCanNotBeQuotedSafelyEndsTheExpansion) {
  EXPECT_EQ(expand(L"echo $(ls !)", L"a\nb"), "-1 echo $(ls !)");
  EXPECT_EQ(expand(L"echo $(ls !)", L"a b"), "echo $(ls a\\ b)");
}

TEST(WithoutExtension, CutsAtTheLastDotOfTheName) {
  struct Row {
    const wchar_t* name;
    const char* result;
  };
  const Row rows[] = {{L"a.txt", "a"},       {L"a.tar.gz", "a.tar"},    {L"a", "a"},
                      {L"a.", "a"},          {L".profile", ".profile"}, {L".a.txt", ".a"},
                      {L"..", ".."},         {L"...", "..."},           {L"", ""},
                      {L"/a.b/c", "/a.b/c"}, {L"/a.b/c.d", "/a.b/c"},   {L"/a/.b", "/a/.b"}};
  for (const Row& row : rows) {
    EXPECT_STREQ(toUtf8(withoutExtension(row.name)).data(), row.result);
  }
}
