#pragma once

#include <cstdint>
#include <vector>

struct TREENODE;

// What a line of a tree panel knows beside its entry.
struct TreeLine {
  static constexpr int DeepestBranch = 64;  // bits of the mask

  TREENODE* node = nullptr;     // of the tree that the line shows; not owned
  int level = 0;                // depth, 0 at the root
  uint64_t branches = 0;        // bit k: the branch at depth k + 1 goes on below this line
  bool childrenHidden = false;  // directories below it don't show

  bool goesOn(int slot) const { return slot < DeepestBranch && ((branches >> slot) & 1) != 0; }
};

// A line for each node that shows, from the root on; none without a root.
std::vector<TreeLine> linesOfTree(TREENODE* root);
// The index of the line of a node; -1 when none shows it.
int lineOfNode(const std::vector<TreeLine>& lines, const TREENODE* node);
