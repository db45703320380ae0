#include "tree/directory_total.h"

#include <gtest/gtest.h>

#include "support/as_user.h"
#include "support/temp_dir.h"
#include "tree/tree_changes.h"
#include "tree/tree_text.h"

namespace {

struct Watcher : TotalWatcher {
  void entered(const char* path) override { paths.push_back(path); }
  bool interrupted() override { return ++looks == endAt; }

  std::vector<std::string> paths;
  int looks = 0;
  int endAt = 0;
};

class DirectoryTotal : public ::testing::Test {
 protected:
  void SetUp() override {
    dir.makeDir("top");
    dir.makeDir("top/a");
    dir.makeDir("top/a/deep");
    dir.makeDir("top/b");
    dir.write("top/one", std::string(10, 'x'));
    dir.write("top/a/two", std::string(200, 'x'));
    dir.write("top/a/deep/three", std::string(3000, 'x'));
    dir.write("top/.hidden", std::string(40000, 'x'));
  }
  std::optional<int64_t> count() {
    return countDirectory(tree, dir.path("top"), counters, watcher);
  }
  int64_t sizeAt(const std::string& name) { return at(tree, dir.path(name))->size; }

  TempDir dir;
  CTree tree;
  TotalCounters counters;
  Watcher watcher;
};

TEST_F(DirectoryTotal, AddsUpTheFilesOfAllLevels) {
  EXPECT_EQ(count(), 43210);
  EXPECT_EQ(counters.bytes, 43210);
  EXPECT_EQ(counters.files, 4);
  EXPECT_EQ(counters.directories, 3);
  EXPECT_EQ(tree.root(), nullptr) << "a tree without a root stays so";
}

TEST_F(DirectoryTotal, LinksAreFilesWithoutBytes) {
  dir.write("big", std::string(1000000, 'x'));
  dir.link(dir.path("big"), "top/to-file");
  dir.link("..", "top/a/up");
  dir.link("nowhere", "top/dangling");
  EXPECT_EQ(count(), 43210);
  EXPECT_EQ(counters.files, 7);
  EXPECT_EQ(counters.directories, 3);
}

TEST_F(DirectoryTotal, TheTreeLearnsOfDirectoriesAndTheirBytes) {
  grow(tree, dir.path("top/b"));
  EXPECT_EQ(count(), 43210);
  EXPECT_EQ(sizeAt("top"), 43210);
  EXPECT_EQ(sizeAt("top/a"), 3200);
  EXPECT_EQ(sizeAt("top/a/deep"), 3000);
  EXPECT_EQ(sizeAt("top/b"), 0);
  EXPECT_EQ(knownSize(at(tree, dir.path("top"))), 43210);
  EXPECT_TRUE(tree.dirty);
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(DirectoryTotal, ALinkToADirectoryThatTheTreeHoldsIsKnownToBeEmpty) {
  dir.link("b", "top/linked");
  grow(tree, dir.path("top/linked"));
  EXPECT_EQ(count(), 43210);
  EXPECT_EQ(sizeAt("top/linked"), 0);
  EXPECT_EQ(knownSize(at(tree, dir.path("top"))), 43210);
}

TEST_F(DirectoryTotal, ADirectoryBehindALinkIsCountedAndIsNoneOfTheTrees) {
  dir.link("top", "linked");
  const TREENODE* linked = grow(tree, dir.path("linked"));
  EXPECT_EQ(countDirectory(tree, dir.path("linked/a"), counters, watcher), 3200);
  EXPECT_EQ(linked->child, nullptr);
}

TEST_F(DirectoryTotal, ADirectoryTooDeepForTheTreeIsCountedAllTheSame) {
  TREENODE* node = tree.makeRoot();
  while (node->level < CTree::DeepestLevel) node = tree.appendChild(node, L"d");
  EXPECT_EQ(count(), 43210);
}

TEST_F(DirectoryTotal, SaysWhereItIs) {
  ASSERT_TRUE(count());
  ASSERT_EQ(watcher.paths.size(), 4u);
  EXPECT_EQ(watcher.paths.front(), dir.path("top"));
}

TEST_F(DirectoryTotal, AnyLookMayEndIt) {
  grow(tree, dir.path("top"));
  ASSERT_TRUE(count());
  const int looks = watcher.looks;
  ASSERT_GT(looks, 3);
  for (int end = 1; end <= looks; ++end) {
    at(tree, dir.path("top"))->size = 77;
    watcher = Watcher();
    watcher.endAt = end;
    EXPECT_EQ(count(), std::nullopt) << end;
    EXPECT_EQ(sizeAt("top"), 77) << "an unfinished count is none";
    EXPECT_EQ(faultOf(tree), "");
  }
}

TEST_F(DirectoryTotal, WhatCantBeReadIsEmptyAndStaysUnknown) {
  grow(tree, dir.path("top/a/deep"));
  dir.openToAll();
  dir.chmod("top/a", 0);
  const int status = runAsUser([this] {
    EXPECT_EQ(count(), 40010);
    EXPECT_EQ(sizeAt("top/a"), TREENODE::Unknown);
    EXPECT_EQ(knownSize(at(tree, dir.path("top"))), TREENODE::Unknown);
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
