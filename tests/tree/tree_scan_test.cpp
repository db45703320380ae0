#include "tree/tree_scan.h"

#include <gtest/gtest.h>

#include "support/as_user.h"
#include "support/deep_tree.h"
#include "support/fault_hook.h"
#include "support/mounts.h"
#include "support/temp_dir.h"
#include "tree/tree_text.h"

namespace {

struct CountsOfScan : ScanWatcher {
  void counted(int64_t count) override { counts.push_back(count); }
  bool interrupted() override { return ++looks == endAt; }

  std::vector<int64_t> counts;
  int looks = 0;
  int endAt = 0;  // the look that ends the scan
};

class TreeScan : public ::testing::Test {
 protected:
  ScanEnd scan() { return scanTree(tree, watcher, dir.path()); }
  std::string scanned() {
    if (scan() != ScanEnd::Whole) return "interrupted";
    tree.sort();
    return textOf(tree);
  }
  TempDir dir;
  CTree tree;
  CountsOfScan watcher;
};

TEST_F(TreeScan, TakesDirectoriesAlone) {
  dir.makeDir("a");
  dir.makeDir("a/.hidden");
  dir.makeDir("b");
  dir.write("file", "");
  dir.write("a/file", "");
  EXPECT_EQ(scanned(), "/( a( .hidden ) b )");
  EXPECT_TRUE(tree.loaded);
  EXPECT_TRUE(tree.root()->expanded);
  EXPECT_EQ(at(tree, "/a/.hidden")->level, 2);
  EXPECT_EQ(at(tree, "/a/.hidden")->size, TREENODE::Unknown);
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeScan, ALinkToADirectoryIsALeafAndOthersAreNothing) {
  dir.makeDir("real");
  dir.makeDir("real/inner");
  dir.link("real", "linked");
  dir.link("nowhere", "dangling");
  dir.write("file", "");
  dir.link("file", "to-file");
  EXPECT_EQ(scanned(), "/( linked real( inner ) )");
}

TEST_F(TreeScan, ALinkThatLeadsUpMakesNoCircle) {
  dir.makeDir("a");
  dir.link("..", "a/up");
  EXPECT_EQ(scanned(), "/( a( up ) )");
}

TEST_F(TreeScan, WhatIsMountedIsGoneInto) {
  for (const char* name : {"real", "real/inner", "top", "top/mount"}) dir.makeDir(name);
  const int status = runInChild([this] {
    const bool mounted = bindMount(dir.path("real"), dir.path("top/mount"));
    EXPECT_EQ(scanned(), mounted ? "/( real( inner ) top( mount( inner ) ) )"
                                 : "/( real( inner ) top( mount ) )");
  });
  EXPECT_EQ(status, 0);
}

TEST_F(TreeScan, CountsEveryNameFromOneOn) {
  dir.makeDir("a");
  dir.makeDir("b");
  ASSERT_EQ(scan(), ScanEnd::Whole);
  ASSERT_FALSE(watcher.counts.empty());
  EXPECT_EQ(watcher.counts.front(), 1);
  EXPECT_EQ(watcher.counts.back(), 1 + 4 + 2 + 2) << "with the two dots of each directory";
}

TEST_F(TreeScan, AnyLookMayEndItAndLeavesNoRoot) {
  for (const char* name : {"a", "a/b", "a/c", "d"}) dir.makeDir(name);
  ASSERT_EQ(scan(), ScanEnd::Whole);
  const int looks = watcher.looks;
  ASSERT_GT(looks, 5);
  for (int end = 1; end <= looks; ++end) {
    watcher = CountsOfScan();
    watcher.endAt = end;
    EXPECT_EQ(scan(), ScanEnd::Interrupted) << end;
    EXPECT_EQ(watcher.looks, end) << "nothing is asked afterwards";
    EXPECT_EQ(tree.root(), nullptr) << end;
    EXPECT_FALSE(tree.loaded);
  }
}

TEST_F(TreeScan, ADirectoryThatCantBeReadIsEmpty) {
  for (const char* name : {"a", "a/b", "c", "c/d"}) dir.makeDir(name);
  int opened = 0;
  System::setHook(
      [](const char* call, const char* path, void* given) {
        if (std::string(call) != "openAt") return 0;
        ++*static_cast<int*>(given);
        return std::string(path).ends_with("/a") ? EACCES : 0;
      },
      &opened);
  const std::string text = scanned();
  System::setHook(nullptr, nullptr);
  EXPECT_GT(opened, 2);
  EXPECT_EQ(text, "/( a c( d ) )");
}

TEST_F(TreeScan, EveryCallThatFailsLeavesAWholeTree) {
  for (const char* name : {"a", "a/b", "c", "c/d"}) dir.makeDir(name);
  int calls;
  {
    FaultHook counting;
    ASSERT_EQ(scan(), ScanEnd::Whole);
    calls = counting.calls();
  }
  ASSERT_GT(calls, 10);
  for (int number = 1; number <= calls; ++number) {
    FaultHook fault(number, EIO);
    EXPECT_EQ(scan(), ScanEnd::Whole) << number;
    EXPECT_EQ(faultOf(tree), "") << number;
  }
}

TEST_F(TreeScan, DirectoriesBelowTheDeepestLevelAreLeftOut) {
  makeDeepTree(dir.path("deep"), 80, "d");
  ASSERT_EQ(scan(), ScanEnd::Whole);
  int deepest = 0;
  for (TREENODE* node = tree.root(); node; node = nextInSubtree(node, tree.root())) {
    deepest = std::max<int>(deepest, node->level);
  }
  EXPECT_EQ(deepest, CTree::DeepestLevel);
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeScan, PathsLongerThanTheSystemTakesEndTheWay) {
  const std::string name(200, 'n');
  makeDeepTree(dir.path("deep"), 40, name);
  ASSERT_EQ(scan(), ScanEnd::Whole);
  EXPECT_NE(at(tree, "/deep/" + name), nullptr);
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeScan, NamesThatAreNoTextAreKept) {
  dir.makeDir("raw\xFF\xC3name");
  ASSERT_EQ(scan(), ScanEnd::Whole);
  EXPECT_EQ(textOf(tree), "/( raw\xFF\xC3name )");
}

TEST(TreeScanOfTheSystem, FileSystemsOfTheKernelAreLeaves) {
  CTree tree;
  CountsOfScan watcher;
  ASSERT_EQ(scanTree(tree, watcher, "/proc"), ScanEnd::Whole);
  EXPECT_EQ(textOf(tree), "/");
}

}  // namespace
