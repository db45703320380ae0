#include "tree/tree_set.h"

#include <memory>

CTree& CTreeSet::treeOf(TTreeKey key) {
  if (CTree* known = find(&key)) return *known;
  auto made = std::make_unique<CTree>(key);
  add(made.get());
  return *made.release();
}

CTree* CTreeSet::add(CTree* tree) {
  if (insert(tree) != 0) return nullptr;
  tree->isPrivate = false;
  return tree;
}

int CTreeSet::compareKeys(TTreeKey* a, TTreeKey* b) {
  if (a->volume != 0 && b->volume != 0) {
    return a->volume == b->volume ? 0 : a->volume < b->volume ? -1 : 1;
  }
  return static_cast<int>(a->drive - b->drive);
}
