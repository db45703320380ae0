#include "tree/tree_lines.h"

#include <gtest/gtest.h>

#include "tree/tree_text.h"

namespace {

// Each line as its level, the bits of its branches from slot 0 on, and a + where children hide.
std::vector<std::string> linesOf(const CTree& tree) {
  std::vector<std::string> result;
  for (const TreeLine& line : linesOfTree(tree.root())) {
    std::string text = bytesOf(line.node->name) + " " + std::to_string(line.level) + " ";
    for (int slot = 0; slot < line.level; ++slot) text += line.goesOn(slot) ? '|' : '.';
    result.push_back(text + (line.childrenHidden ? "+" : ""));
  }
  return result;
}

TEST(TreeLines, ABranchGoesOnWhileASiblingFollows) {
  CTree tree;
  for (const char* name : {"/a/b/c", "/a/d", "/e/f"}) grow(tree, name);
  EXPECT_EQ(linesOf(tree), (std::vector<std::string>{"/ 0 ", "a 1 |", "b 2 ||", "c 3 ||.", "d 2 |.",
                                                     "e 1 .", "f 2 .."}));
}

TEST(TreeLines, ChildrenOfAClosedNodeDontShow) {
  CTree tree;
  for (const char* name : {"/a/b/c", "/d"}) grow(tree, name);
  at(tree, "/a")->expanded = false;
  at(tree, "/d")->expanded = false;
  EXPECT_EQ(linesOf(tree), (std::vector<std::string>{"/ 0 ", "a 1 |+", "d 1 ."}));
}

TEST(TreeLines, ATreeWithoutARootHasNone) {
  EXPECT_TRUE(linesOfTree(nullptr).empty());
}

TEST(TreeLines, TheDeepestLevelHasItsBit) {
  CTree tree;
  TREENODE* node = tree.makeRoot();
  for (int i = 0; i < CTree::DeepestLevel - 1; ++i) node = tree.appendChild(node, L"d");
  tree.appendChild(node, L"first");
  tree.appendChild(node, L"second");
  const std::vector<TreeLine> lines = linesOfTree(tree.root());
  ASSERT_EQ(lines.size(), static_cast<size_t>(CTree::DeepestLevel) + 2);
  EXPECT_EQ(lines[lines.size() - 2].level, CTree::DeepestLevel);
  EXPECT_TRUE(lines[lines.size() - 2].goesOn(CTree::DeepestLevel - 1));
  EXPECT_FALSE(lines.back().goesOn(CTree::DeepestLevel - 1));
}

}  // namespace
