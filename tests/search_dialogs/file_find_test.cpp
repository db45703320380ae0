#include "search_dialogs/file_find.h"

#include "console/clipboard.h"
#include "filecommands/command_test.h"
#include "foundation/break_state.h"
#include "language/association_set.h"
#include "options/options.h"
#include "search/find_run.h"
#include "search_dialogs/entry_list_box.h"
#include "search_dialogs/find_dialog.h"
#include "shell/logged_shell.h"
#include "support/exact_text.h"

namespace {

constexpr char FindTitle[] = "File Find";
constexpr char Complete[] = "Search Complete:";

// A search waits before it looks at that name, until it is let go.
class HeldSearch {
 public:
  explicit HeldSearch(const char* name) : name_(name) { System::setHook(onCall, this); }
  ~HeldSearch() {
    letGo();
    System::setHook(nullptr, nullptr);
  }
  HeldSearch(const HeldSearch&) = delete;
  HeldSearch& operator=(const HeldSearch&) = delete;
  void letGo() { open_.post(); }

 private:
  static int onCall(const char* call, const char* path, void* context) {
    auto* held = static_cast<HeldSearch*>(context);
    if (strcmp(call, "statAt") == 0 && held->name_ == path) held->open_.wait(WaitForever);
    return 0;
  }
  const std::string name_;
  EventSem open_;
};

class FileFindTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    GlobalOptions::FFRootSearch = false;
    GlobalOptions::FFRecurse = true;
    GlobalOptions::FFCase = false;
    GlobalOptions::FFWholeWord = false;
    GlobalOptions::FFMultiDrive = false;
    GlobalOptions::FFDriveList = "";
    GlobalOptions::Hidden = true;
    GlobalOptions::TimeMode = 24;
    panelPair().activeSide = 0;
    foundEntries().removeAll();
  }
  void find(const std::vector<Step>& steps, FindList list = FindList::New) {
    play(steps, [list] { fileFind(0, list); });
  }
  // The same with a search that waits until `before` has been played.
  void find(std::vector<Step> before, HeldSearch& held, const std::vector<Step>& after) {
    before.back().then = [&held] { held.letGo(); };
    before.insert(before.end(), after.begin(), after.end());
    find(before);
  }
  // Types a mask and perhaps a text, and finds.
  static Step search(const std::string& files) { return {FindTitle, {Key::Enter}, "", files}; }
  static std::vector<std::string> listed() {
    std::vector<std::string> names;
    for (int i = 0; i < foundEntries().count(); ++i) {
      names.push_back(bytePath(lastComponent(foundEntries().row(i).path())));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  void makeTree() {
    dir.makeDir("left/sub");
    file("left/one.txt", "some text here");
    file("left/two.txt", "nothing");
    file("left/sub/three.txt", "more Text");
  }
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(FileFindTest, TheDialogStandsAsItIsDesigned) {
  show();
  find({{FindTitle, {Key::Esc}, "find"}});
}

TEST_F(FileFindTest, EveryRowIsThereOnEachScreen) {
  struct Row {
    int columns, rows;
    const char* golden;
  };
  for (const Row& row : {Row{100, 43, "find_100x43"}, Row{132, 50, "find_132x50"}}) {
    console->setGeometry(row.columns, row.rows, Estring(), 0);
    fetchScreenSize();
    find({{FindTitle, {Key::Esc}, row.golden}});
  }
}

TEST_F(FileFindTest, WhatIsFoundIsListed) {
  makeTree();
  show();
  find({search("*.txt"), {Complete, {Key::Esc}}});
  EXPECT_EQ(listed(), (Names{"one.txt", "three.txt", "two.txt"}));
}

TEST_F(FileFindTest, AnEmptyFileTextDoesNothing) {
  makeTree();
  show();
  find({search("one*"), {Complete, {Key::Esc}}});
  find({{"one.txt",
         {Key::Tab, Key::End, Key::Backspace, Key::Backspace, Key::Backspace, Key::Backspace,
          Key::Enter},
         "find_nothing"},
        {FindTitle, {Key::Esc}}},
       FindList::Last);
  EXPECT_EQ(listed(), Names{"one.txt"});
}

TEST_F(FileFindTest, AContentSearchWithoutScanningLooksOnlyInTheStart) {
  makeTree();
  GlobalOptions::FFRecurse = false;
  show();
  find({{FindTitle, {Key::Tab}, "", "*"},
        {FindTitle, {Key::Enter}, "", "text"},
        {Complete, {Key::Esc}}});
  EXPECT_EQ(listed(), Names{"one.txt"});
  EXPECT_EQ(foundEntries().row(0).item->total, 5);
}

TEST_F(FileFindTest, ReopeningShowsTheLastResultsWithTheCursorThere) {
  makeTree();
  show();
  find({search("*.txt"), {Complete, {Key::Home, Key::Down, Key::Esc}}});
  const std::string second = bytePath(lastComponent(foundEntries().row(1).path()));
  find({{second, {Key::Enter}}}, FindList::Last);
  EXPECT_EQ(currentName(left()), second);
}

TEST_F(FileFindTest, OnlyFindForgetsWhatWasFoundBefore) {
  makeTree();
  show();
  find({search("*.txt"), {Complete, {Key::Home, Key::Down, Key::Esc}}});
  const std::string second = bytePath(lastComponent(foundEntries().row(1).path()));
  const Names before = listed();
  find({{FindTitle,
         {Key::ShiftTab, Key::Delete, Key::F3, Key::F5, Key::F6, Key::F8, Key::ShiftF8,
          Key::ctrl('r'), Key::Esc},
         "find_again"}});
  EXPECT_EQ(listed(), before);
  find({{FindTitle, {Key::ShiftTab, FindKey::GoTo}}});
  EXPECT_EQ(exact(left().path), exact(dir.wide("left"))) << "no result is shown to go to";
  find({{second, {Key::Enter}}}, FindList::Last);
  EXPECT_EQ(currentName(left()), second);
}

TEST_F(FileFindTest, GoToLeadsToTheFile) {
  makeTree();
  show();
  find({search("three*"), {Complete, {Key::Enter}}});
  EXPECT_EQ(exact(left().path), exact(dir.wide("left/sub")));
  EXPECT_EQ(currentName(left()), "three.txt");
}

TEST_F(FileFindTest, GoToADirectoryThatIsGoneIsTold) {
  makeTree();
  show();
  find({search("three*"), {Complete, {Key::Esc}}});
  std::filesystem::remove_all(dir.path("left/sub"));
  find({{"three.txt", {Key::Enter}}, {"Invalid directory", {Key::Enter}}}, FindList::Last);
  EXPECT_EQ(exact(left().path), exact(dir.wide("left")));
}

TEST_F(FileFindTest, DelTakesOffTheListAndLeavesTheDisk) {
  makeTree();
  show();
  find({search("*.txt"), {Complete, {Key::Home, Key::Delete, Key::Esc}}});
  EXPECT_EQ(foundEntries().count(), 2);
  EXPECT_TRUE(dir.exists("left/one.txt") && dir.exists("left/two.txt") &&
              dir.exists("left/sub/three.txt"));
}

TEST_F(FileFindTest, F8DeletesTheFileUnderTheCursor) {
  makeTree();
  show();
  find({search("one*"),
        {Complete, {Key::F8}},
        {"Do you wish to delete", {Key::Enter}},
        {" 0 matches use 0 bytes", {Key::Esc}}});
  EXPECT_FALSE(dir.exists("left/one.txt"));
  EXPECT_EQ(foundEntries().count(), 0);
}

TEST_F(FileFindTest, ADirectoryGoesWithTheResultsBelowIt) {
  makeTree();
  show();
  find({search("sub | three*"),
        {Complete, {Key::Home, Key::F8}},
        {"Do you wish to delete", {Key::Enter}},
        {"Type \"YES\"", {Key::Enter}, "", "YES"},
        {" 0 matches use 0 bytes", {Key::Esc}}});
  EXPECT_FALSE(dir.exists("left/sub"));
  EXPECT_EQ(foundEntries().count(), 0);
}

TEST_F(FileFindTest, ShiftF8DeletesAll) {
  makeTree();
  show();
  find({search("*.txt"),
        {Complete, {Key::CtrlF3, Key::ShiftF8}},
        {"Are you sure you wish to delete", {Key::Esc}, "find_delete_all"},
        {FindTitle, {Key::ShiftF8}},
        {"3 files?", {Key::Enter}},
        {" 0 matches use 0 bytes", {Key::Esc}}});
  EXPECT_EQ(foundEntries().count(), 0);
  EXPECT_EQ(contents(dir.path("left")).size(), 1U) << "the directory";
}

TEST_F(FileFindTest, AFileThatIsAnotherOneByNowIsKept) {
  makeTree();
  show();
  find({search("one*"), {Complete, {Key::Esc}}});
  file("left/other", "another");
  std::filesystem::rename(dir.path("left/other"), dir.path("left/one.txt"));
  find({{"one.txt", {Key::F8}}, {"File has changed", {Key::Enter}}, {FindTitle, {Key::Esc}}},
       FindList::Last);
  EXPECT_EQ(dir.read("left/one.txt"), "another");
  EXPECT_EQ(foundEntries().count(), 1);
}

TEST_F(FileFindTest, AfterMovingAllTheListIsEmpty) {
  makeTree();
  show();
  find({search("*.txt"),
        {Complete, {Key::F6}},
        {"Move 3 files to", {Key::Enter}},
        {" 0 matches use 0 bytes", {Key::Esc}}});
  EXPECT_EQ(foundEntries().count(), 0);
  EXPECT_TRUE(dir.exists("right/one.txt") && dir.exists("right/three.txt"));
}

TEST_F(FileFindTest, ATargetOfTheSameNameIsAskedForEvenAfterAll) {
  dir.makeDir("left/a");
  dir.makeDir("left/b");
  file("left/a/same", "from a");
  file("left/b/same", "from b");
  file("right/same", "of another");
  show();
  find({search("same"),
        {Complete, {Key::F5}},
        {"Copy 2 files to", {Key::Enter}},
        {"[ All ]", {Key::Code('a')}},
        {"(2 of 2)", {}},
        {"[ All ]", {Key::Esc}},
        {Complete, {Key::Esc}}});
  EXPECT_EQ(dir.read("right/same").substr(0, 5), "from ");
  EXPECT_EQ(foundEntries().count(), 2);
}

TEST_F(FileFindTest, AMovedLinkTakesItsResultAlong) {
  file("left/one.txt", "long text");
  symlink("one.txt", dir.path("left/two.txt").c_str());
  show();
  find({search("t*.txt"),
        {Complete, {Key::F6}},
        {"Move ", {Key::Enter}},
        {" 0 matches use 0 bytes", {Key::Esc}}});
  EXPECT_TRUE(dir.exists("left/one.txt"));
}

TEST_F(FileFindTest, WhatIsNotMovedIsListedAsItIsNow) {
  file("left/one.txt", "long");
  file("right/one.txt", "in the way");
  show();
  find({search("*.txt"), {Complete, {Key::Esc}}});
  file("left/one.txt", "longer now");
  find({{"one.txt", {Key::F6}},
        {"Move ", {Key::Enter}},
        {"[ Skip ]", {Key::Code('s')}},
        {" 10 ", {Key::Esc}}},
       FindList::Last);
  EXPECT_EQ(foundEntries().row(0).item->size, 10U);
}

TEST_F(FileFindTest, TheDrivesAreWhereTheSearchBegins) {
  makeTree();
  dir.makeDir("left/other");
  file("left/other/four.txt");
  GlobalOptions::FFMultiDrive = true;
  GlobalOptions::FFDriveList = "sub/;./other;sub/";
  show();
  find({search("*.txt"), {"2 matches", {Key::Esc}}});
  EXPECT_EQ(listed(), (Names{"four.txt", "three.txt"}));
}

TEST_F(FileFindTest, ALetterOfTheDrivesIsANameWithAColon) {
  makeTree();
  dir.makeDir("left/d:");
  file("left/d:/five.txt");
  GlobalOptions::FFMultiDrive = true;
  GlobalOptions::FFDriveList = "cd";
  show();
  std::filesystem::current_path(dir.path("left"));
  find({search("*.txt"), {"1 match uses", {Key::Esc}}});
  EXPECT_EQ(listed(), Names{"five.txt"});
}

TEST_F(FileFindTest, OnlyFindKeepsWhatIsTyped) {
  makeTree();
  show();
  find({search("one*"), {Complete, {Key::Esc}}});
  find({{FindTitle, {Key::Esc}, "", "forgotten"}});
  find({{"one*", {Key::Esc}}});
  EXPECT_EQ(GlobalOptions::FFDriveList, "");
}

TEST_F(FileFindTest, WhatIsGoneIsNotCopiedAndGoesOffTheList) {
  makeTree();
  show();
  find({search("*.txt"), {Complete, {Key::Esc}}});
  std::filesystem::remove(dir.path("left/one.txt"));
  find({{"one.txt", {Key::F5}}, {"Copy 2 files to", {Key::Esc}}, {FindTitle, {Key::Esc}}},
       FindList::Last);
  EXPECT_EQ(listed(), (Names{"three.txt", "two.txt"}));
  std::filesystem::remove_all(dir.path("left/sub"));
  std::filesystem::remove(dir.path("left/two.txt"));
  find({{"two.txt", {Key::F5, Key::Esc}}}, FindList::Last);
  EXPECT_EQ(listed(), Names{});
}

TEST_F(FileFindTest, AFileThatCannotBeLookedAtIsNotGone) {
  makeTree();
  show();
  find({search("one*"), {Complete, {Key::Esc}}});
  static std::string path;
  path = dir.path("left/one.txt");
  System::setHook([](const char* call, const char* name,
                     void*) { return strcmp(call, "lstat") == 0 && path == name ? EIO : 0; },
                  nullptr);
  find({{"one.txt", {Key::F8}}, {"Input/output error", {Key::Enter}}, {FindTitle, {Key::Esc}}},
       FindList::Last);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(listed(), Names{"one.txt"});
  EXPECT_TRUE(dir.exists("left/one.txt"));
}

TEST_F(FileFindTest, AFullListEndsTheSearchAndSaysSo) {
  makeTree();
  foundEntries().removeAll();
  foundEntries().setMostBytes(300);
  show();
  find({search("*.txt"),
        {"Too many matches", {Key::Enter}},
        {"Search Stopped:  1 match uses", {Key::Home, Key::Delete}},
        {"0 matches use", {Key::Esc}}});
  foundEntries().setMostBytes(FFEntryStore::MostBytes);
}

TEST_F(FileFindTest, BreakStopsTheSearch) {
  makeTree();
  dir.makeDir("left/sub/deeper");
  file("left/sub/deeper/gate.txt");
  file("left/sub/deeper/later.txt");
  show();
  HeldSearch held("gate.txt");
  Step search = FileFindTest::search("*.txt");
  Step stop = {"three.txt", {}};
  stop.then = [&held] {
    requestBreak();
    held.letGo();
  };
  find({search, stop, {"Search Stopped:", {Key::Esc}}});
  EXPECT_FALSE(breakRequested());
}

TEST_F(FileFindTest, TheBreakThatStoppedASearchEndsNothingElse) {
  makeTree();
  file("left/sub/gate.txt");
  show();
  HeldSearch held("gate.txt");
  Step stop = {"two.txt", {}};
  stop.then = [&held] {
    requestBreak();
    held.letGo();
  };
  find({search("*.txt"),
        stop,
        {"Search Stopped:", {Key::F5}},
        {" files to", {Key::Enter}},
        {"Search Stopped:", {Key::Esc}}});
  EXPECT_TRUE(dir.exists("right/one.txt") && dir.exists("right/two.txt"));
}

TEST_F(FileFindTest, AnAssociatedProgramHasTheScreenAndThePanelsComeBack) {
  makeTree();
  LoggedShell shell;
  AssociationSet& viewers = associationSets().viewers;
  viewers.addPair(L"*.txt", L"look");
  show();
  openWindows();
  Step look = {Complete, {}};
  look.then = [&] {
    const std::string before = screenText();
    queueKey(Key::F3);
    EXPECT_TRUE(waitUntil([&] { return shell.hasRun(); }));
    EXPECT_TRUE(waitUntil([&] { return screenText() == before; })) << before << screenText();
    queueKey(Key::Esc);
  };
  find({search("three*"), look});
  EXPECT_EQ(shell.take(), Names{"look " + dir.path("left/sub/three.txt")});
  viewers.clear();
}

TEST_F(FileFindTest, WithAltTheAssociationIsPassedOver) {
  makeTree();
  AssociationSet& editors = associationSets().editors;
  editors.addPair(L"*.txt", L"change");
  show();
  find({search("three*"),
        {Complete, {Key::AltF4}},
        {"more Text", {Key::Esc}},
        {Complete, {Key::Esc}}});
  editors.clear();
}

TEST_F(FileFindTest, TheListIsSortedByItsKeys) {
  file("left/b.txt", "1");
  file("left/a.txt", "22");
  show();
  find({search("*.txt"), {Complete, {Key::CtrlF3, Key::CtrlShiftJ, Key::Esc}}});
  EXPECT_EQ(exact(lastComponent(foundEntries().row(0).path())), L"a.txt");
  find({{"a.txt", {Key::Home, Key::CtrlF6, Key::Esc}}}, FindList::Last);
  EXPECT_EQ(exact(lastComponent(foundEntries().row(0).path())), L"a.txt") << "the largest first";
}

TEST_F(FileFindTest, ADotInADirectoryBeginsNoExtension) {
  dir.makeDir("left/x.b");
  file("left/x.b/plain");
  file("left/f.a");
  show();
  find({search("f.a | plain"), {Complete, {Key::CtrlF4, Key::Esc}}});
  EXPECT_EQ(exact(lastComponent(foundEntries().row(0).path())), L"plain");
}

TEST_F(FileFindTest, CtrlRReplacesInAllFoundFiles) {
  makeTree();
  show();
  find({{FindTitle, {Key::Tab}, "", "*"},
        {FindTitle, {Key::Enter}, "", "text"},
        {Complete, {Key::ctrl('r')}},
        {"Replace with:", {Key::Enter}, "replace_ask", "words"},
        {"Are you sure you want to replace", {Key::Enter}, "replace_sure"},
        {"Replaced 2 occurances in 2 files", {Key::Enter}},
        {FindTitle, {Key::Esc}}});
  EXPECT_EQ(dir.read("left/one.txt"), "some words here");
  EXPECT_EQ(dir.read("left/sub/three.txt"), "more words");
}

TEST_F(FileFindTest, OnlyEnterReplaces) {
  makeTree();
  show();
  find({{FindTitle, {Key::Tab}, "", "*"},
        {FindTitle, {Key::Enter}, "", "text"},
        {Complete, {Key::ctrl('r')}},
        {"Replace with:", {Key::Enter}, "", "words"},
        {"Are you sure you want to replace", {Key::Esc}},
        {"Replace with:", {Key::Esc}},
        {Complete, {Key::Esc}}});
  EXPECT_EQ(dir.read("left/one.txt"), "some text here");
}

TEST_F(FileFindTest, TheFirstFileThatFailsEndsTheReplacing) {
  makeTree();
  file("left/kept.txt", "a text");
  show();
  find({{FindTitle, {Key::Tab}, "", "*.txt"},
        {FindTitle, {Key::Enter}, "", "text"},
        {Complete, {Key::CtrlF3, Key::Esc}}});
  ASSERT_EQ(exact(lastComponent(foundEntries().row(0).path())), L"kept.txt");
  System::setHook(
      [](const char* call, const char* path, void*) {
        return strcmp(call, "openAt") == 0 && strstr(path, "one.txt.td@@@.tmp") ? EACCES : 0;
      },
      nullptr);
  find({{"kept.txt", {Key::ctrl('r')}},
        {"Replace with:", {Key::Enter}, "", "words"},
        {"in 3 files", {Key::Enter}},
        {"one.txt.td@@@.tmp", {Key::Enter}, "replace_failed"},
        {"Replaced 1 occurances in 1 files", {Key::Enter}, "replace_done"},
        {FindTitle, {Key::Esc}}},
       FindList::Last);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("left/kept.txt"), "a words");
  EXPECT_EQ(dir.read("left/one.txt"), "some text here");
  EXPECT_EQ(dir.read("left/sub/three.txt"), "more Text");
  EXPECT_FALSE(dir.exists("left/one.txt.td@@@.tmp"));
}

TEST_F(FileFindTest, AFileThatCouldNotBeOpenedIsPassedOver) {
  makeTree();
  show();
  System::setHook(
      [](const char* call, const char* path, void*) {
        return strcmp(call, "open") == 0 && strstr(path, "one.txt") ? EACCES : 0;
      },
      nullptr);
  find({{FindTitle, {Key::Tab}, "", "*.txt"},
        {FindTitle, {Key::Enter}, "", "text"},
        {Complete, {Key::ctrl('r')}},
        {"Replace with:", {Key::Enter}, "", "words"},
        {"in 2 files", {Key::Enter}},
        {"Replaced 1 occurances in 1 files", {Key::Enter}},
        {"Error opening", {Key::Esc}}});
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("left/one.txt"), "some text here");
  EXPECT_EQ(dir.read("left/sub/three.txt"), "more words");
}

TEST_F(FileFindTest, TheViewerOpensAtTheText) {
  file("left/long", std::string(5000, '\n') + "a needle");
  show();
  find({{FindTitle, {Key::Tab}, "", "*"},
        {FindTitle, {Key::Enter}, "", "needle"},
        {Complete, {Key::F3}},
        {"a needle", {Key::Esc}},
        {Complete, {Key::Esc}}});
}

TEST_F(FileFindTest, EscDuringASearchStopsItAndKeepsWhatWasFound) {
  makeTree();
  dir.makeDir("left/sub/deeper");
  file("left/sub/deeper/gate.txt");
  show();
  HeldSearch held("gate.txt");
  find({search("*.txt"), {"three.txt", {Key::Esc}}, {"Waiting for file system", {}}}, held,
       {{"Search Stopped:", {Key::Esc}}});
  EXPECT_EQ(listed(), (Names{"one.txt", "three.txt", "two.txt"}));
}

TEST_F(FileFindTest, DuringASearchF8WorksAndShiftF8IsRefused) {
  makeTree();
  file("left/sub/gate.txt");
  show();
  HeldSearch held("gate.txt");
  find({search("*.txt"),
        {"two.txt", {Key::Home, Key::CtrlF3, Key::Home, Key::ShiftF8, Key::F8}},
        {"Do you wish to delete", {Key::Enter}},
        {"Waiting for file system", {}}},
       held, {{"3 matches", {Key::Esc}}});
  EXPECT_FALSE(dir.exists("left/one.txt"));
  EXPECT_TRUE(dir.exists("left/two.txt"));
  EXPECT_EQ(listed(), (Names{"gate.txt", "three.txt", "two.txt"}));
}

TEST_F(FileFindTest, ASearchTellsWhereItIs) {
  for (int i = 0; i < 2000; ++i) file("left/f" + std::to_string(i), "");
  show();
  static EventSem go;  // each look takes its time until then
  System::setHook(
      [](const char* call, const char*, void*) {
        constexpr uint32_t LookMs = 20;
        if (strcmp(call, "statAt") == 0 && go.wait(LookMs) == 0) go.post();
        return 0;
      },
      nullptr);
  const std::string where = dir.path("left");
  Step dark = {"           " + where, {}};
  dark.then = [] { go.post(); };
  find({search("f*"), {"Searching: " + where, {}}, dark, {Complete, {Key::Esc}}});
  System::setHook(nullptr, nullptr);
}

TEST_F(FileFindTest, ASearchThatHangsSaysSoByItself) {
  makeTree();
  file("left/sub/gate.txt");
  show();
  HeldSearch held("gate.txt");
  find({search("*.txt"), {"Waiting for file system", {}}}, held, {{Complete, {Key::Esc}}});
}

TEST_F(FileFindTest, ASecondEscLeavesASearchThatHangs) {
  makeTree();
  file("left/sub/gate.txt");
  show();
  static EventSem open, through;  // longer than the dialog
  System::setHook(
      [](const char* call, const char* path, void*) {
        if (strcmp(call, "statAt") != 0 || strcmp(path, "gate.txt") != 0) return 0;
        open.wait(WaitForever);
        through.post();
        return 0;
      },
      nullptr);
  find({search("*.txt"), {"Waiting for file system", {Key::Esc, Key::Esc}}});
  const Names names = listed();
  open.post();
  through.wait(WaitForever);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(listed(), names);
}

TEST_F(FileFindTest, WithoutResultsTheKeysDoNothing) {
  show();
  find({search("nothing like this"),
        {Complete,
         {Key::F3, Key::F4, Key::F5, Key::F6, Key::F8, Key::ShiftF8, Key::ctrl('r'), Key::Delete,
          Key::Esc}}});
}

TEST(FindSummary, OneMatchAndManyAreTold) {
  EXPECT_EQ(exact(findSummary(FindState::Complete, 1, 5)),
            L"Search Complete: 1 match uses 5 bytes");
  EXPECT_EQ(exact(findSummary(FindState::Stopped, 0, 0)),
            L"Search Stopped:  0 matches use 0 bytes");
}

TEST(FoundLine, HasItsColumns) {
  const EntryPtr item(newEntry(L"/some/path"));
  item->size = 1234;
  item->date = (2020 - 1980) << 9 | 6 << 5 | 15;
  item->total = FoundMark::NoText;
  EXPECT_EQ(exact(foundLine(*item, 46)).find(L"/some/path"), 28U);
  item->attributes = Attribute::Hidden;
  EXPECT_EQ(exact(foundLine(*item, 46))[27], 0x2591);
  item->total = FoundMark::NotOpened;
  EXPECT_EQ(exact(foundLine(*item, 46)), L"Error opening               /some/path");
}
