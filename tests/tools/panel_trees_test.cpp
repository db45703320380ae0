#include "tools/panel_trees.h"

#include <gtest/gtest.h>

#include "console/input.h"
#include "foundation/system.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/selection.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "support/fault_hook.h"
#include "tools/tools_test.h"
#include "tree/tree_changes.h"

namespace {

class PanelTreesTest : public ToolsTest {
 protected:
  // A tree "/( a( x( deep ) y ) b )" in the file, shown on the left.
  void showTree() {
    saveLines("0/\n1a\n2x\n3deep\n2y\n1b\n");
    openWindows();
    setStyle(0, PanelStyle::Tree);
  }
  void cursorToLine(const std::string& name) {
    for (int i = 0; i < left().count(); ++i) {
      if (toUtf8(left().entries[i]->name()).data() == name) left().cursor = i - left().top;
    }
  }
};

// Lets a scan see nothing but the way to one directory and what is in it.
class OnlyBelow {
 public:
  OnlyBelow(const TempDir& path, const TempDir& home) : path_(path.path()), home_(home.path()) {
    System::setHook(decide, this);
  }
  ~OnlyBelow() { System::setHook(nullptr, nullptr); }

 private:
  static int decide(const char* call, const char* path, void* self) {
    if (std::string(call) != "openAt" || path[0] != '/') return 0;
    const std::string wanted = static_cast<OnlyBelow*>(self)->path_;
    const std::string asked = path;
    if (asked.starts_with(static_cast<OnlyBelow*>(self)->home_)) return 0;
    const bool onTheWay = asked == "/" || (wanted + "/").starts_with(asked + "/");
    return onTheWay || asked.starts_with(wanted + "/") ? 0 : EACCES;
  }
  std::string path_;
  std::string home_;  // where the tree is written
};

// Esc is looked for by the clock, and this one stands still unless somebody moves it.
class MovingClock : public ManualClock {
 public:
  int64_t nanoseconds() const override {
    const_cast<MovingClock*>(this)->moveOn(50);
    return ManualClock::nanoseconds();
  }
};

class InterruptedScan : public PanelTreesTest {
 protected:
  void SetUp() override {
    PanelTreesTest::SetUp();
    directoryTree().connect(moving);
    openWindows();
  }
  MovingClock movingClock;
  PanelTrees moving{movingClock};
};

TEST_F(PanelTreesTest, APanelInAnArchiveShowsTheTreeOfTheArchive) {
  const ArchivesAreOpened opener;
  saveLines("0/\n1somewhere\n");
  leftDir.write("pack.zip", zipArchive({{"docs/en/a", ""}, {"docs/b", ""}, {"src/c", "123"}}));
  openWindows();
  ASSERT_TRUE(goToPath(left(), leftDir.wide("pack.zip/docs")));
  setStyle(0, PanelStyle::Tree);
  readDirectory(left());
  std::vector<std::string> names;
  for (const entry* item : left().entries) names.push_back(bytes(item->name()));
  EXPECT_EQ(names, (std::vector<std::string>{leftDir.path("pack.zip"), "docs", "en", "src"}));
  trees.select(left(), leftDir.wide("pack.zip/docs/en"));
  EXPECT_EQ(bytes(treeDirectory(left())), leftDir.path("pack.zip/docs/en"));
  cursorToLine("docs");
  trees.collapse(left(), TreeReach::Line);
  EXPECT_EQ(left().count(), 3);
  trees.save();
  EXPECT_EQ(savedLines(), "0/\n1somewhere\n") << "it is never saved";
}

TEST_F(PanelTreesTest, TheTreeOfAnArchiveOutlivesItForAsLongAsItShows) {
  const ArchivesAreOpened opener;
  saveLines("0/\n1somewhere\n");
  leftDir.write("pack.zip", zipArchive({{"docs/a", ""}}));
  openWindows();
  ASSERT_TRUE(goToPath(left(), leftDir.wide("pack.zip")));
  setStyle(0, PanelStyle::Tree);
  readDirectory(left());
  cursorToLine("docs");
  ASSERT_TRUE(changeDirectory(left(), leftDir.wide()));
  EXPECT_EQ(left().archive, nullptr);
  EXPECT_EQ(bytes(treeDirectory(left())), leftDir.path("pack.zip/docs"));
  readDirectory(left());
  EXPECT_EQ(bytes(left().entries[0]->name()), "/");
}

TEST_F(PanelTreesTest, APanelOfTheTreeStyleShowsTheSavedTree) {
  showTree();
  EXPECT_EQ(listed(left()), (std::vector<std::string>{"/", "a", "x", "deep", "y", "b"}));
  EXPECT_TRUE(shows(" TREE "));
  expectGolden("tree_panel");
}

TEST_F(PanelTreesTest, PlusAndMinusOpenAndCloseTheLineAndKeepTheCursor) {
  showTree();
  cursorToLine("a");
  trees.collapse(left(), TreeReach::Line);
  EXPECT_EQ(listed(left()), (std::vector<std::string>{"/", "a", "b"}));
  EXPECT_EQ(currentName(left()), "a");
  drawPanel(left());
  EXPECT_TRUE(shows("├+a"));
  trees.expand(left(), TreeReach::Line);
  EXPECT_EQ(listed(left()).size(), 6u);
  cursorToLine("/");
  trees.collapse(left(), TreeReach::Subtree);
  EXPECT_EQ(listed(left()), (std::vector<std::string>{"/", "a", "b"})) << "the root stays open";
  trees.expand(left(), TreeReach::Subtree);
  EXPECT_EQ(listed(left()).size(), 6u);
}

TEST_F(PanelTreesTest, TheCursorFollowsTheOtherPanelAndOpensTheWayThere) {
  showTree();
  cursorToLine("/");
  trees.collapse(left(), TreeReach::Subtree);
  trees.select(left(), L"/a/x/deep");
  EXPECT_EQ(currentName(left()), "deep");
  EXPECT_EQ(bytes(treeDirectory(left())), "/a/x/deep");
  trees.select(left(), L"/unknown");
  EXPECT_EQ(currentName(left()), "deep") << "an unknown directory leaves the cursor";
}

TEST_F(PanelTreesTest, ADirectoryThatWasReadIsSynchronised) {
  leftDir.makeDir("new");
  knowOnly(leftDir.path("gone"));
  ASSERT_TRUE(goToPath(right(), leftDir.wide()));
  EXPECT_EQ(at(trees.tree(), leftDir.path("gone")), nullptr);
  EXPECT_NE(at(trees.tree(), leftDir.path("new")), nullptr);
  EXPECT_EQ(faultOf(trees.tree()), "");
}

TEST_F(PanelTreesTest, ALinkStaysALeafWhenAPanelIsBehindIt) {
  leftDir.makeDir("real");
  leftDir.makeDir("real/sub");
  leftDir.link("real", "linked");
  knowOnly(leftDir.path("linked"));
  ASSERT_TRUE(goToPath(right(), leftDir.wide("linked")));
  const TREENODE* linked = at(trees.tree(), leftDir.path("linked"));
  ASSERT_NE(linked, nullptr);
  EXPECT_EQ(linked->child, nullptr);
  EXPECT_EQ(linked->size, TREENODE::Unknown);
  trees.made(right(), leftDir.wide("linked/sub"));
  EXPECT_EQ(linked->child, nullptr);
}

TEST_F(PanelTreesTest, AFileSystemOfTheKernelStaysALeafWhenAPanelHasReadIt) {
  knowOnly("/proc/left_from_before");
  ASSERT_TRUE(goToPath(right(), L"/proc"));
  ASSERT_NE(at(trees.tree(), "/proc"), nullptr);
  EXPECT_EQ(at(trees.tree(), "/proc")->child, nullptr);
}

TEST_F(PanelTreesTest, TheFirstScreenDoesntWaitForTheTreeAndWhatItReadCounts) {
  leftDir.makeDir("new");
  knowOnly(leftDir.path("gone"));
  PanelTrees fresh(clock);
  directoryTree().connect(fresh);
  int opened = 0;
  System::setHook(
      [](const char* call, const char* path, void* context) {
        const bool file = std::string(path).ends_with("tdtree.dat");
        if (file && std::string(call) == "open") ++*static_cast<int*>(context);
        return 0;
      },
      &opened);
  left().path = leftDir.wide();
  readListing(left());
  EXPECT_GT(fresh.saveWhileWaiting(), 0) << "it is asked again when the screen is complete";
  EXPECT_EQ(opened, 0);
  EXPECT_EQ(fresh.saveWhileWaiting(), NoLimit);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(opened, 1);
  EXPECT_NE(at(fresh.tree(), leftDir.path("new")), nullptr);
  EXPECT_EQ(at(fresh.tree(), leftDir.path("gone")), nullptr);
  EXPECT_NE(savedLines().find("new\n"), std::string::npos);
}

// Esc would end the load, but these keys are for the program.
TEST_F(PanelTreesTest, ALoadThatNobodyAskedForLeavesTheKeysAlone) {
  std::string lines = "0/\n";
  for (int i = 0; i < 5000; ++i) lines += "1directory" + std::to_string(i) + "\n";
  saveLines(lines);
  class TickingClock : public ManualClock {
   public:
    int64_t nanoseconds() const override {
      const_cast<TickingClock*>(this)->moveOn(50);
      return ManualClock::nanoseconds();
    }
  } ticking;
  PanelTrees fresh(ticking);
  queueKey(Key::F10);
  EXPECT_NE(at(fresh.tree(), "/directory4999"), nullptr);
  EXPECT_EQ(console->eventCount(), 1);
  drainEvents();
}

TEST_F(InterruptedScan, ALoadThatTheUserEndedIsntMadeAgainForEachChange) {
  std::string lines = "0/\n";
  for (int i = 0; i < 100'000; ++i) lines += "1directory" + std::to_string(i) + "\n";
  saveLines(lines);
  queueKey(Key::Esc);
  moving.made(left(), L"/new");
  EXPECT_EQ(console->eventCount(), 0);
  EXPECT_EQ(moving.tree().root(), nullptr);
  FaultHook counting;
  moving.removed(L"/directory1");
  EXPECT_EQ(counting.calls("open"), 0);
  setStyle(0, PanelStyle::Tree);
  EXPECT_EQ(left().count(), 100'001) << "who wants to see it has it loaded";
}

TEST_F(PanelTreesTest, LinesOfATreeThatChangedAreStillReadable) {
  knowOnly(leftDir.path("gone/below"));
  openWindows();
  setStyle(0, PanelStyle::Tree);
  cursorToLine("below");
  ASSERT_EQ(bytes(treeDirectory(left())), leftDir.path("gone/below"));
  ASSERT_TRUE(goToPath(right(), rightDir.wide()));
  trees.removed(leftDir.wide("gone"));
  trees.removed(leftDir.wide());
  EXPECT_EQ(bytes(treeDirectory(left())), leftDir.path("gone/below"));
  drawPanel(left());
  readDirectory(left());
  EXPECT_EQ(entryNamed(left(), "below"), nullptr);
  EXPECT_EQ(faultOf(trees.tree()), "");
}

TEST_F(PanelTreesTest, AReadThatBreaksOffTellsTheTreeNothing) {
  leftDir.makeDir("one");
  leftDir.makeDir("two");
  knowOnly(leftDir.path("known"));
  int names = 0;
  System::setHook(
      [](const char* call, const char*, void* context) {
        const bool name = std::string(call) == "readDirectory";
        return name && ++*static_cast<int*>(context) == 4 ? EIO : 0;
      },
      &names);
  left().path = leftDir.wide();
  readListing(left());
  System::setHook(nullptr, nullptr);
  ASSERT_GE(names, 4);
  EXPECT_NE(at(trees.tree(), leftDir.path("known")), nullptr);
  readListing(left());
  EXPECT_EQ(at(trees.tree(), leftDir.path("known")), nullptr);
}

TEST_F(PanelTreesTest, WhatCommandsChangeIsSavedAtOnce) {
  knowOnly("/a/b");
  trees.made(left(), L"/a/new");
  trees.save();
  EXPECT_EQ(savedLines(), "0/\n1a\n2b\n2new\n");
  trees.removed(L"/a/b");
  trees.save();
  EXPECT_EQ(savedLines(), "0/\n1a\n2new\n");
  trees.renamed(left(), L"/a/new", L"/a/newer");
  trees.save();
  EXPECT_EQ(savedLines(), "0/\n1a\n");
}

TEST_F(PanelTreesTest, WhatPanelsReadIsSavedTogetherAtMostOnceInTwoSeconds) {
  knowOnly(leftDir.path("gone"));
  EXPECT_EQ(trees.saveWhileWaiting(), NoLimit) << "nothing has changed";
  left().path = leftDir.wide();
  readListing(left());
  const std::string before = savedLines();
  EXPECT_EQ(trees.saveWhileWaiting(), NoLimit);
  EXPECT_NE(savedLines(), before);
  leftDir.makeDir("new");
  readListing(left());
  const std::string saved = savedLines();
  EXPECT_EQ(trees.saveWhileWaiting(), 2000);
  clock.moveOn(1500);
  EXPECT_EQ(trees.saveWhileWaiting(), 500);
  EXPECT_EQ(savedLines(), saved);
  clock.moveOn(500);
  EXPECT_EQ(trees.saveWhileWaiting(), NoLimit);
  EXPECT_NE(savedLines().find("new\n"), std::string::npos);
}

TEST_F(PanelTreesTest, AFileThatCantBeWrittenIsToldOnceAndTriedAgainWithTheNextChange) {
  knowOnly("/a/b");
  trees.made(left(), L"/a/new");
  const std::string before = savedLines();
  {
    FaultHook fault("sync", ENOSPC);
    Beside user([this] {
      EXPECT_TRUE(waitToShow("Error writing tree data file:"));
      EXPECT_TRUE(shows("No space left on device"));
      EXPECT_TRUE(shows("tdtree.dat"));
      queueKey(Key::Enter);
    });
    EXPECT_EQ(trees.saveWhileWaiting(), NoLimit);
  }
  {
    FaultHook fault("sync", ENOSPC);
    queueKey(Key::Enter);
    trees.save();  // as before each command that runs
    EXPECT_EQ(getKey(nullptr, 0), Key::Enter) << "no box has taken it";
  }
  EXPECT_EQ(savedLines(), before);
  clock.moveOn(5000);
  EXPECT_EQ(trees.saveWhileWaiting(), NoLimit);
  EXPECT_EQ(savedLines(), before) << "not before there is more to write";
  trees.made(left(), L"/a/more");
  EXPECT_EQ(trees.saveWhileWaiting(), NoLimit);
  EXPECT_EQ(savedLines(), "0/\n1a\n2b\n2more\n2new\n");
}

TEST_F(PanelTreesTest, TotalsAreGivenWhereEveryPartIsKnown) {
  knowOnly("/a/b");
  CTree& tree = trees.tree();
  at(tree, "/a")->size = 500;
  EXPECT_EQ(trees.totalOf(left(), L"/a"), std::nullopt);
  at(tree, "/a/b")->size = 300;
  EXPECT_EQ(trees.totalOf(left(), L"/a"), 500);
  EXPECT_EQ(trees.totalOf(left(), L"/unknown"), std::nullopt);
}

TEST_F(PanelTreesTest, RetainedTotalsShowAfterTheNextRead) {
  leftDir.makeDir("counted");
  leftDir.makeDir("unknown");
  leftDir.link("counted", "linked");
  knowOnly(leftDir.path("counted"));
  left().path = leftDir.wide();
  GlobalOptions::RetainCount = true;
  readListing(left());
  at(trees.tree(), leftDir.path("counted"))->size = 4321;
  at(trees.tree(), leftDir.path("linked"))->size = 0;
  readListing(left());
  GlobalOptions::RetainCount = false;
  EXPECT_EQ(entryNamed(left(), "counted")->size, 4321u);
  EXPECT_EQ(entryNamed(left(), "counted")->level, 1);
  EXPECT_EQ(entryNamed(left(), "unknown")->level, 0);
  EXPECT_EQ(entryNamed(left(), "linked")->level, 0);
}

TEST_F(PanelTreesTest, ADirectoryIsFoundByItsWholeNameFirstAndThenByItsBeginning) {
  saveLines("0/\n1docs-old\n1home\n2Docs\n1usr\n2share\n3docs\n");
  left().path = L"/";
  EXPECT_EQ(bytes(trees.find(left(), L"docs")), "/home/Docs");
  left().path = L"/usr";
  EXPECT_EQ(bytes(trees.find(left(), L"docs")), "/usr/share/docs") << "from where the panel is";
  EXPECT_EQ(bytes(trees.find(left(), L"docs-")), "/docs-old");
  EXPECT_EQ(bytes(trees.find(left(), L"nowhere")), "");
  EXPECT_EQ(bytes(trees.find(left(), L"")), "");
}

TEST_F(PanelTreesTest, WithoutATreeNothingIsFoundOrSaved) {
  trees.made(left(), L"/a");
  trees.removed(L"/a");
  trees.renamed(left(), L"/a", L"/b");
  trees.save();
  EXPECT_EQ(bytes(trees.find(left(), L"a")), "");
  EXPECT_EQ(trees.totalOf(left(), L"/a"), std::nullopt);
  EXPECT_FALSE(home.exists(".tdx"));
}

TEST_F(PanelTreesTest, CommandsInATreePanelActOnItsLineAndLeaveTheCursorThere) {
  for (const char* name : {"one", "two", "two/below"}) leftDir.makeDir(name);
  knowOnly(leftDir.path("one"));
  addDirectory(trees.tree(), leftDir.wide("two"));
  addDirectory(trees.tree(), leftDir.wide("two/below"));
  openWindows();
  ASSERT_TRUE(goToPath(right(), leftDir.wide()));
  setStyle(0, PanelStyle::Tree);
  trees.select(left(), leftDir.wide("two"));
  leftDir.makeDir("a");
  trees.made(left(), leftDir.wide("a"));
  panelRefresh();
  EXPECT_EQ(bytes(treeDirectory(left())), leftDir.path("two"));
  EXPECT_NE(entryNamed(left(), "a"), nullptr);
  trees.removed(leftDir.wide("two"));
  panelRefresh();
  EXPECT_EQ(entryNamed(left(), "below"), nullptr);
  EXPECT_NE(left().currentEntry(), nullptr);
}

TEST_F(PanelTreesTest, TwoTreePanelsShareTheTree) {
  showTree();
  setStyle(1, PanelStyle::Tree);
  cursorToLine("a");
  trees.collapse(left(), TreeReach::Line);
  trees.removed(L"/b");
  EXPECT_EQ(bytes(trees.pathOf(right(), 5)), "/b") << "its lines are those of before";
  readDirectory(left());
  EXPECT_EQ(bytes(trees.pathOf(right(), 5)), "/b");
  readDirectory(right());
  EXPECT_EQ(listed(right()), (std::vector<std::string>{"/", "a"}));
  swapPanels();
  EXPECT_EQ(listed(left()), (std::vector<std::string>{"/", "a"}));
}

// ---- looking through the disk

TEST_F(PanelTreesTest, TheFirstTreePanelLooksThroughTheDiskAndSavesIt) {
  leftDir.makeDir("found");
  OnlyBelow only(leftDir, home);
  openWindows();
  setStyle(0, PanelStyle::Tree);
  EXPECT_NE(at(trees.tree(), leftDir.path("found")), nullptr);
  EXPECT_NE(savedLines().find("found\n"), std::string::npos);
  EXPECT_FALSE(shows("Scanning"));
}

TEST_F(PanelTreesTest, AForeignFileMeansAScanThatWritesOverIt) {
  home.makeDir(".tdx");
  home.write(".tdx/tdtree.dat", "\x01" + std::string(7, '\0') + "0/\n1theirs\n");
  leftDir.makeDir("found");
  OnlyBelow only(leftDir, home);
  openWindows();
  setStyle(0, PanelStyle::Tree);
  EXPECT_EQ(at(trees.tree(), "/theirs"), nullptr);
  EXPECT_EQ(home.read(".tdx/tdtree.dat").substr(0, 8), std::string(8, '\0'));
  EXPECT_NE(savedLines().find("found\n"), std::string::npos);
}

TEST_F(InterruptedScan, EscLeavesAnEmptyPanelAndNoQuestionAgain) {
  OnlyBelow only(leftDir, home);
  queueKey(Key::Esc);
  setStyle(0, PanelStyle::Tree);
  EXPECT_EQ(left().count(), 0);
  EXPECT_EQ(moving.tree().root(), nullptr);
  EXPECT_FALSE(home.exists(".tdx"));
  EXPECT_TRUE(shows("Directory is empty"));
  readDirectory(left());
  EXPECT_EQ(moving.tree().root(), nullptr) << "who ended a scan isn't given another one unasked";
  left().rescanTree = true;
  readDirectory(left());
  EXPECT_GT(left().count(), 2);
}

TEST_F(InterruptedScan, EscInARescanBringsTheSavedTreeBack) {
  knowOnly(leftDir.path("known"));
  setStyle(0, PanelStyle::Tree);
  const size_t lines = listed(left()).size();
  OnlyBelow only(leftDir, home);
  queueKey(Key::Esc);
  left().rescanTree = true;
  readDirectory(left());
  EXPECT_EQ(listed(left()).size(), lines);
  EXPECT_TRUE(moving.tree().loaded);
}

TEST_F(InterruptedScan, EscClosesTheTreeWindowWithoutAWord) {
  OnlyBelow only(leftDir, home);
  queueKey(Key::Esc);
  EXPECT_EQ(bytes(moving.choose(left(), TreeWindowUse::Command)), "");
  EXPECT_FALSE(shows("Directory Tree"));
}

TEST_F(PanelTreesTest, FiftyThousandSubdirectoriesAreShownAndFollowed) {
  std::string lines = "0/\n1many\n";
  for (int i = 0; i < 50'000; ++i) lines += "2directory" + std::to_string(i) + "\n";
  saveLines(lines + "1z\n");
  openWindows();
  setStyle(0, PanelStyle::Tree);
  EXPECT_EQ(left().count(), 50'003);
  trees.select(left(), L"/z");
  drawPanel(left());
  EXPECT_TRUE(shows("└─z"));
  trees.select(left(), L"/many");
  trees.collapse(left(), TreeReach::Line);
  EXPECT_EQ(left().count(), 3);
}

TEST_F(PanelTreesTest, ADeepLineIsScrolledSoThatEightCellsOfTheNameRemain) {
  std::string lines = "0/\n";
  for (char level = '1'; level < 'p'; ++level) lines += level + std::string("directory\n");
  saveLines(lines);
  openWindows();
  setStyle(0, PanelStyle::Tree);
  ASSERT_EQ(left().count(), 64);
  left().top = 45;
  drawPanel(left());
  const std::string row = rowText(left().window->originY());
  EXPECT_NE(row.find("└─directo"), std::string::npos) << row;
}

}  // namespace
