#include "tree/tree.h"

#include <gtest/gtest.h>

#include <memory>

#include "options/options.h"
#include "tree/tree_set.h"
#include "tree/tree_text.h"

namespace {

std::string path(const TREENODE* node) {
  return node ? bytesOf(pathOfNode(node)) : "none";
}

TEST(Tree, ANewNodeIsOpenAsTheSettingSaysAndItsSizeUnknown) {
  CTree tree;
  TREENODE* root = tree.makeRoot();
  EXPECT_EQ(root->level, 0);
  EXPECT_TRUE(root->expanded);
  EXPECT_EQ(root->size, TREENODE::Unknown);
  EXPECT_TRUE(tree.appendChild(root, L"open")->expanded);
  GlobalOptions::ExpandedTrees = false;
  TREENODE* closed = tree.appendChild(root, L"closed");
  EXPECT_FALSE(closed->expanded);
  EXPECT_TRUE(tree.makeRoot()->expanded) << "the root always is";
  GlobalOptions::ExpandedTrees = true;
  EXPECT_EQ(closed->size, TREENODE::Unknown);
}

TEST(Tree, ChildrenComeWhereTheyArePut) {
  CTree tree;
  TREENODE* root = tree.makeRoot();
  tree.appendChild(root, L"b");
  tree.appendChild(root, L"c");
  tree.prependChild(root, L"a");
  tree.appendChild(at(tree, "/b"), L"x");
  EXPECT_EQ(textOf(tree), "/( a b( x ) c )");
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, APathIsFoundByWholeComponents) {
  CTree tree;
  grow(tree, "/usr/share/doc");
  grow(tree, "/usr2");
  EXPECT_EQ(path(at(tree, "/")), "/");
  EXPECT_EQ(path(at(tree, "/usr")), "/usr");
  EXPECT_EQ(path(at(tree, "/usr/")), "/usr") << "a slash at the end is taken away";
  EXPECT_EQ(path(at(tree, "/usr/share/doc")), "/usr/share/doc");
  EXPECT_EQ(path(at(tree, "/us")), "none");
  EXPECT_EQ(path(at(tree, "/usr/sha")), "none");
  EXPECT_EQ(path(at(tree, "/usr/share/doc/more")), "none");
  EXPECT_EQ(path(at(tree, "usr")), "none") << "a relative path is none of the tree";
  EXPECT_EQ(path(at(tree, "")), "none");
}

TEST(Tree, CaseCountsUnlessItIsFolded) {
  CTree tree;
  grow(tree, "/Home/Anna");
  grow(tree, "/home");
  EXPECT_EQ(path(at(tree, "/HOME/anna")), "none");
  EXPECT_EQ(path(tree.find(L"/HOME/anna", FoldCase::Yes)), "/Home/Anna");
  EXPECT_EQ(path(tree.find(L"/home", FoldCase::Yes)), "/home") << "the exact name goes first";
}

TEST(Tree, ATreeOfAnArchiveHasItsPathAsTheRoot) {
  CTree tree;
  TREENODE* root = tree.makeRoot();
  tree.rename(root, L"/tmp/a.zip");
  TREENODE* node = tree.appendChild(root, L"inner");
  EXPECT_EQ(path(node), "/tmp/a.zip/inner");
  EXPECT_EQ(tree.find(L"/tmp/a.zip/inner"), node);
  EXPECT_EQ(tree.find(L"/tmp/a.zip"), root);
  EXPECT_EQ(tree.find(L"/tmp/a.zipper"), nullptr);
}

TEST(Tree, WhatIsTakenOutStaysReadableUntilItIsFreed) {
  CTree tree;
  TREENODE* deep = grow(tree, "/a/b/c");
  grow(tree, "/d");
  const uint64_t before = tree.version();
  tree.remove(at(tree, "/a"));
  EXPECT_GT(tree.version(), before);
  EXPECT_EQ(textOf(tree), "/( d )");
  EXPECT_EQ(at(tree, "/a"), nullptr);
  EXPECT_EQ(at(tree, "/a/b/c"), nullptr);
  EXPECT_EQ(path(deep), "/a/b/c");
  tree.freeRemoved();
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, FirstMiddleAndLastChildGo) {
  CTree tree;
  for (const char* name : {"/a", "/b", "/c", "/d"}) grow(tree, name);
  tree.remove(at(tree, "/b"));
  tree.remove(at(tree, "/d"));
  tree.remove(at(tree, "/a"));
  tree.appendChild(tree.root(), L"e");
  EXPECT_EQ(textOf(tree), "/( c e )");
  tree.remove(at(tree, "/e"));
  tree.remove(at(tree, "/c"));
  tree.appendChild(tree.root(), L"f");
  EXPECT_EQ(textOf(tree), "/( f )");
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, NodesAtTheDeepestLevelGetNoChildren) {
  CTree tree;
  TREENODE* node = tree.makeRoot();
  for (int i = 0; i < CTree::DeepestLevel; ++i) {
    node = tree.appendChild(node, L"d");
    ASSERT_NE(node, nullptr);
  }
  EXPECT_EQ(node->level, CTree::DeepestLevel);
  EXPECT_EQ(tree.appendChild(node, L"d"), nullptr);
  EXPECT_EQ(tree.prependChild(node, L"d"), nullptr);
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, WhatComesToLieTooDeepByAMoveGoes) {
  CTree tree;
  TREENODE* deepest = grow(tree, "/x");
  for (int i = 0; i < CTree::DeepestLevel - 2; ++i) deepest = tree.appendChild(deepest, L"d");
  TREENODE* moved = grow(tree, "/m/n/o");
  ASSERT_EQ(deepest->level, CTree::DeepestLevel - 1);
  tree.moveInto(at(tree, "/m"), deepest);
  EXPECT_EQ(faultOf(tree), "");
  EXPECT_EQ(textOf(deepest), "d( m )");
  tree.moveInto(grow(tree, "/y"), deepest->child);
  EXPECT_EQ(textOf(deepest), "d( m )");
  EXPECT_EQ(bytesOf(moved->name), "o");
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, SortsByTheExactNameAtEveryNode) {
  CTree tree;
  for (const char* name : {"/b", "/B", "/a/z", "/a/y", "/a/x", "/ä", "/_", "/\xFF"})
    grow(tree, name);
  tree.sort();
  EXPECT_EQ(textOf(tree), "/( \xFF B _ a( x y z ) b ä )");
  EXPECT_EQ(faultOf(tree), "");
  tree.appendChild(tree.root(), L"last");
  EXPECT_EQ(textOf(tree), "/( \xFF B _ a( x y z ) b ä last )");
}

TEST(Tree, RenamingANodeMovesItInTheIndex) {
  CTree tree;
  grow(tree, "/a/x");
  tree.rename(at(tree, "/a"), L"b");
  EXPECT_EQ(at(tree, "/a"), nullptr);
  EXPECT_EQ(path(at(tree, "/b/x")), "/b/x");
  EXPECT_EQ(faultOf(tree), "");
}

TEST(Tree, ExpandReachesEverythingBelowAndTheRootStaysOpen) {
  CTree tree;
  grow(tree, "/a/b/c");
  expandSubtree(tree.root(), Branch::Closed);
  EXPECT_TRUE(tree.root()->expanded);
  EXPECT_FALSE(at(tree, "/a")->expanded);
  EXPECT_FALSE(at(tree, "/a/b/c")->expanded);
  expandSubtree(at(tree, "/a"), Branch::Open);
  EXPECT_TRUE(at(tree, "/a/b/c")->expanded);
}

TEST(Tree, ShowingANodeOpensAllAboveIt) {
  CTree tree;
  grow(tree, "/a/b/c");
  expandSubtree(tree.root(), Branch::Closed);
  showNode(at(tree, "/a/b/c"));
  EXPECT_TRUE(at(tree, "/a")->expanded);
  EXPECT_TRUE(at(tree, "/a/b")->expanded);
  EXPECT_FALSE(at(tree, "/a/b/c")->expanded);
}

TEST(TreeSearch, GoesFromTheStartNodeItselfAndWrapsAround) {
  CTree tree;
  for (const char* name : {"/data/docs", "/home/Documents", "/usr/share/doc", "/var"}) {
    grow(tree, name);
  }
  auto next = [&tree](const char* start, const wchar_t* prefix) {
    return path(findNextByPrefix(tree.root(), at(tree, start), prefix));
  };
  EXPECT_EQ(next("/", L"do"), "/data/docs");
  EXPECT_EQ(next("/data/docs", L"do"), "/data/docs") << "the start node counts";
  EXPECT_EQ(next("/home", L"DO"), "/home/Documents");
  EXPECT_EQ(next("/usr", L"doc"), "/usr/share/doc");
  EXPECT_EQ(next("/var", L"doc"), "/data/docs") << "from the beginning again";
  EXPECT_EQ(next("/var", L"nothing"), "none");
  EXPECT_EQ(path(findNextByPrefix(tree.root(), nullptr, L"v")), "/var");
}

TEST(TreeSearch, WalksNoFurtherThanItsSubtree) {
  CTree tree;
  grow(tree, "/a/b");
  grow(tree, "/c");
  TREENODE* a = at(tree, "/a");
  EXPECT_EQ(path(nextInSubtree(a, a)), "/a/b");
  EXPECT_EQ(nextInSubtree(at(tree, "/a/b"), a), nullptr);
  EXPECT_EQ(nextBeside(a, a), nullptr);
  EXPECT_EQ(path(nextInSubtree(at(tree, "/a/b"), tree.root())), "/c");
}

TEST(TreeSet, KeysAreVolumesWhereBothAreKnownAndDrivesOtherwise) {
  CTreeSet set;
  CTree& disk = set.treeOf({L'/', 0});
  EXPECT_EQ(&set.treeOf({L'/', 0}), &disk);
  EXPECT_EQ(&set.treeOf({L'/', 5}), &disk) << "an unknown volume leaves the drive";
  CTreeSet volumes;
  CTree& first = volumes.treeOf({L'/', 7});
  EXPECT_NE(&volumes.treeOf({L'/', 8}), &first);
  EXPECT_EQ(&volumes.treeOf({L'd', 7}), &first);
  EXPECT_EQ(volumes.count(), 2);
}

TEST(TreeSet, ATreeInItIsNotPrivate) {
  CTreeSet set;
  auto tree = std::make_unique<CTree>();
  tree->isPrivate = true;
  ASSERT_EQ(set.add(tree.get()), tree.get());
  EXPECT_FALSE(tree.release()->isPrivate);
  auto twin = std::make_unique<CTree>();
  EXPECT_EQ(set.add(twin.get()), nullptr) << "it stays the caller's";
}

// ---- sizes at which a step for each other child would not end

constexpr int ManyChildren = 50'000;

Westring numbered(int i) {
  return decodeFileName(("directory-" + std::to_string(i)).c_str());
}

TEST(LargeTree, ChildrenAreAddedFoundSortedAndRemovedWithoutAStepForEachOther) {
  CTree tree;
  TREENODE* root = tree.makeRoot();
  for (int i = 0; i < ManyChildren; ++i) tree.appendChild(root, numbered(i * 7919 % ManyChildren));
  tree.sort();
  int found = 0;
  for (int i = 0; i < ManyChildren; ++i) found += tree.childOf(root, numbered(i).data()) != nullptr;
  EXPECT_EQ(found, ManyChildren);
  for (int i = 0; i < ManyChildren; i += 2) {
    tree.remove(tree.childOf(root, numbered(i).data()));
  }
  EXPECT_EQ(faultOf(tree), "");
  int left = 0;
  for (TREENODE* node = root->child; node; node = node->next) ++left;
  EXPECT_EQ(left, ManyChildren / 2);
}

}  // namespace
