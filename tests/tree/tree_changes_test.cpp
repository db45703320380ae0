#include "tree/tree_changes.h"

#include <gtest/gtest.h>

#include "tree/tree_text.h"

namespace {

class TreeChanges : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"/a/x/deep", "/a/y", "/b"}) grow(tree, name);
  }
  bool synchronised(const std::string& path, const std::vector<std::string>& names) {
    NameCollection list;
    for (const std::string& name : names) list.addCopy(decodeFileName(name.c_str()));
    return synchronise(tree, at(tree, path), list);
  }
  CTree tree;
};

TEST_F(TreeChanges, AMadeDirectoryIsTheLastChildOfItsParent) {
  tree.makeRoot();
  for (const char* name : {"/a/y", "/a/z"}) grow(tree, name);
  tree.dirty = false;
  TREENODE* node = addDirectory(tree, L"/a/b");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(textOf(tree), "/( a( y z b ) )");
  EXPECT_EQ(node->level, 2);
  EXPECT_EQ(node->size, TREENODE::Unknown);
  EXPECT_TRUE(tree.dirty);
  EXPECT_EQ(addDirectory(tree, L"/a/b"), node) << "once";
  EXPECT_EQ(addDirectory(tree, L"/unknown/b"), nullptr);
  EXPECT_EQ(textOf(tree), "/( a( y z b ) )");
}

TEST_F(TreeChanges, ARemovedDirectoryGoesWithAllBelowIt) {
  EXPECT_TRUE(removeDirectory(tree, L"/a/x"));
  EXPECT_EQ(textOf(tree), "/( a( y ) b )");
  EXPECT_TRUE(tree.dirty);
  EXPECT_FALSE(removeDirectory(tree, L"/a/x"));
  EXPECT_FALSE(removeDirectory(tree, L"/"));
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, ARenameInsideADirectoryTakesTheNodeOut) {
  EXPECT_TRUE(renameDirectory(tree, L"/a/x", L"/a/new"));
  EXPECT_EQ(textOf(tree), "/( a( y ) b )");
  EXPECT_TRUE(synchronised("/a", {"new", "y"}));
  tree.sort();
  EXPECT_EQ(textOf(tree), "/( a( new y ) b )") << "it is back once its parent was read";
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, ARenameThatChangesCaseAloneTakesTheNodeOutToo) {
  EXPECT_TRUE(renameDirectory(tree, L"/a/x", L"/a/X"));
  EXPECT_EQ(textOf(tree), "/( a( y ) b )");
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, AMoveOntoAKnownDirectoryHangsTheNodeIntoIt) {
  EXPECT_TRUE(renameDirectory(tree, L"/a", L"/b"));
  EXPECT_EQ(textOf(tree), "/( b( a( x( deep ) y ) ) )");
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, AMoveIntoAnUnknownDirectoryChangesTheNameAlone) {
  EXPECT_TRUE(renameDirectory(tree, L"/a/x", L"/elsewhere/moved"));
  EXPECT_EQ(textOf(tree), "/( a( moved( deep ) y ) b )");
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, AMoveOntoSomethingBelowItselfLeavesNoCircle) {
  EXPECT_TRUE(renameDirectory(tree, L"/a", L"/a/x/deep"));
  EXPECT_EQ(textOf(tree), "/( b )");
  EXPECT_FALSE(renameDirectory(tree, L"/a", L"/c"));
  EXPECT_FALSE(renameDirectory(tree, L"/", L"/c"));
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, SynchroniseTakesOutWhatHasGoneAndPutsNewOnesInFront) {
  EXPECT_TRUE(synchronised("/a", {"new", "y"}));
  EXPECT_EQ(textOf(tree), "/( a( new y ) b )");
  EXPECT_EQ(at(tree, "/a/new")->level, 2);
  EXPECT_TRUE(tree.dirty);
  EXPECT_EQ(faultOf(tree), "");
}

TEST_F(TreeChanges, SynchroniseOfWhatIsKnownChangesNothing) {
  at(tree, "/a/y")->size = 5;
  tree.dirty = false;
  const uint64_t before = tree.version();
  EXPECT_FALSE(synchronised("/a", {"x", "y"}));
  EXPECT_EQ(tree.version(), before);
  EXPECT_FALSE(tree.dirty);
  EXPECT_EQ(at(tree, "/a/y")->size, 5);
}

TEST_F(TreeChanges, NamesThatDifferInCaseAloneAreTwoDirectories) {
  EXPECT_TRUE(synchronised("/a", {"X", "x", "y"}));
  EXPECT_EQ(textOf(tree), "/( a( X x( deep ) y ) b )");
}

TEST_F(TreeChanges, SynchroniseAtTheDeepestLevelAddsNothing) {
  TREENODE* node = grow(tree, "/d");
  while (node->level < CTree::DeepestLevel) node = tree.appendChild(node, L"d");
  NameCollection names;
  names.addCopy(L"below");
  EXPECT_FALSE(synchronise(tree, node, names));
  EXPECT_EQ(node->child, nullptr);
}

TEST_F(TreeChanges, ASumNeedsEveryPart) {
  TREENODE* a = at(tree, "/a");
  a->size = 1000;
  sumUp(a, 10);
  EXPECT_EQ(a->size, 1000) << "a counted total isn't overwritten by a sum with unknown parts";
  at(tree, "/a/x")->size = 100;
  EXPECT_EQ(knownSize(a), TREENODE::Unknown);
  at(tree, "/a/y")->size = 7;
  EXPECT_EQ(knownSize(a), 1000);
  sumUp(a, 10);
  EXPECT_EQ(knownSize(a), 117);
  addDirectory(tree, L"/a/new");
  EXPECT_EQ(knownSize(a), TREENODE::Unknown);
}

TEST_F(TreeChanges, FiftyThousandSubdirectoriesAreSynchronisedWithoutAStepForEachOther) {
  constexpr int many = 50'000;
  NameCollection all;
  all.unsorted = true;
  NameCollection half;
  half.unsorted = true;
  for (int i = 0; i < many; ++i) {
    const Westring name = decodeFileName(("directory-" + std::to_string(i)).c_str());
    all.addCopy(name);
    if (i % 2) half.addCopy(name);
  }
  all.sort();
  half.sort();
  EXPECT_TRUE(synchronise(tree, at(tree, "/b"), half));
  EXPECT_TRUE(synchronise(tree, at(tree, "/b"), all));
  EXPECT_FALSE(synchronise(tree, at(tree, "/b"), all));
  tree.sort();
  int count = 0;
  for (TREENODE* node = at(tree, "/b")->child; node; node = node->next) ++count;
  EXPECT_EQ(count, many);
  EXPECT_TRUE(synchronise(tree, at(tree, "/b"), half));
  EXPECT_EQ(faultOf(tree), "");
}

}  // namespace
