#include "tree/tree_lines.h"

#include <algorithm>

#include "tree/tree.h"

namespace {

constexpr int DeepestOpen = CTree::DeepestLevel - 1;

bool isOpen(const TREENODE* node) {
  return node->expanded && node->child && node->level <= DeepestOpen;
}

uint64_t bitsBelow(int slot) {
  return (uint64_t{1} << slot) - 1;
}

}  // namespace

std::vector<TreeLine> linesOfTree(TREENODE* root) {
  std::vector<TreeLine> lines;
  uint64_t branches = 0;
  TREENODE* node = root;
  while (node) {
    if (node->level > 0) {
      // What stands above is kept, what a sibling had below it isn't.
      const int slot = node->level - 1;
      branches &= bitsBelow(slot);
      if (node->next) branches |= uint64_t{1} << slot;
    }
    lines.push_back({node, node->level, branches, node->child && !node->expanded});
    node = isOpen(node) ? node->child : nextBeside(node, root);
  }
  return lines;
}

int lineOfNode(const std::vector<TreeLine>& lines, const TREENODE* node) {
  const auto found = std::find_if(lines.begin(), lines.end(),
                                  [node](const TreeLine& line) { return line.node == node; });
  return found == lines.end() ? -1 : static_cast<int>(found - lines.begin());
}
