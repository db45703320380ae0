#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "foundation/utf8.h"
#include "tree/tree_changes.h"
#include "tree/tree_file.h"
#include "tree/tree_lines.h"

// Whatever a tree file holds: a tree comes of it that keeps what trees keep, and that can be shown,
// searched, sorted and changed.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int file = memfd_create("tree", MFD_CLOEXEC);
  static const Westring path = decodeFileName(("/proc/self/fd/" + std::to_string(file)).c_str());
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) abort();
  CTree tree;
  static_cast<void>(loadTree(tree, path));
  tree.sort();
  size_t nodes = 0;
  for (TREENODE* node = tree.root(); node; node = nextInSubtree(node, tree.root())) {
    ++nodes;
    if (node->level > CTree::DeepestLevel || tree.find(pathOfNode(node)) != node) abort();
  }
  expandSubtree(tree.root(), Branch::Open);
  if (linesOfTree(tree.root()).size() != nodes) abort();
  if (!tree.root()) return 0;
  TREENODE* found = findNextByPrefix(tree.root(), tree.root(), L"a");
  if (found) renameDirectory(tree, pathOfNode(found), L"/renamed");
  if (tree.root()->child) tree.remove(tree.root()->child);
  return 0;
}
