#include "tree/tree_changes.h"

#include <cwchar>
#include <vector>

#include "foundation/fold.h"
#include "foundation/names.h"
#include "tree/tree_scan.h"

namespace {

bool liesWithin(const TREENODE* node, const TREENODE* top) {
  while (node && node != top) node = node->parent;
  return node == top;
}

// The place of a name in a list in exact order, or -1.
long placeOf(const NameCollection& names, const Westring& name) {
  long low = 0;
  long high = names.count();
  while (low < high) {
    const long middle = low + (high - low) / 2;
    const auto* found = static_cast<const Westring*>(names.SortedCollection::peek(middle));
    const int order = wcscmp(name.data(), found->data());
    if (order == 0) return middle;
    (order < 0 ? high : low) = order < 0 ? middle : middle + 1;
  }
  return -1;
}

bool allSizesKnown(const TREENODE* directory) {
  for (const TREENODE* child = directory->child; child; child = child->next) {
    if (child->size == TREENODE::Unknown) return false;
  }
  return true;
}

}  // namespace

TREENODE* addDirectory(CTree& tree, const Westring& path) {
  const Westring name = lastComponent(path);
  const Westring place = parentOf(path);
  TREENODE* parent = tree.find(place);
  if (!parent || name.empty()) return nullptr;
  if (TREENODE* known = tree.childOf(parent, name.data())) return known;
  if (isLeafOnDisk(place)) return nullptr;
  TREENODE* node = tree.appendChild(parent, name);
  if (node) tree.dirty = true;
  return node;
}

bool removeDirectory(CTree& tree, const Westring& path) {
  TREENODE* node = tree.find(path);
  if (!node || node == tree.root()) return false;
  tree.remove(node);
  tree.dirty = true;
  return true;
}

bool renameDirectory(CTree& tree, const Westring& from, const Westring& to) {
  TREENODE* node = tree.find(from);
  if (!node || node == tree.root()) return false;
  const bool otherPath = compareNoCase(from.data(), to.data()) != 0;
  TREENODE* found = otherPath ? tree.find(to) : nullptr;
  if (!found) {
    tree.rename(node, lastComponent(withoutSlashes(to)));
    found = tree.find(to);
  }
  tree.dirty = true;
  if (!found) return true;
  if (liesWithin(found, node)) {
    tree.remove(node);
  } else {
    tree.moveInto(node, found);
  }
  return true;
}

bool synchronise(CTree& tree, TREENODE* directory, const NameCollection& names) {
  const uint64_t before = tree.version();
  std::vector<bool> known(static_cast<size_t>(names.count()), false);
  TREENODE* following = nullptr;
  for (TREENODE* child = directory->child; child; child = following) {
    following = child->next;
    const long place = placeOf(names, child->name);
    if (place >= 0 && !known[static_cast<size_t>(place)]) {
      known[static_cast<size_t>(place)] = true;
    } else {
      tree.remove(child);
    }
  }
  for (size_t i = 0; i < known.size(); ++i) {
    const auto* name =
        static_cast<const Westring*>(names.SortedCollection::peek(static_cast<long>(i)));
    if (!known[i]) tree.prependChild(directory, *name);
  }
  if (tree.version() == before) return false;
  tree.dirty = true;
  return true;
}

void sumUp(TREENODE* directory, int64_t fileBytes) {
  if (!allSizesKnown(directory)) return;
  int64_t sum = fileBytes;
  for (const TREENODE* child = directory->child; child; child = child->next) {
    if (__builtin_add_overflow(sum, child->size, &sum)) return;
  }
  directory->size = sum;
}

int64_t knownSize(const TREENODE* directory) {
  return allSizesKnown(directory) ? directory->size : TREENODE::Unknown;
}
