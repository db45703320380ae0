#pragma once

#include "foundation/sorted_collection.h"
#include "tree/tree.h"

// All trees of the disk. Application thread.
class CTreeSet : public TSortedCollection<CTree, TTreeKey> {
 public:
  ~CTreeSet() override { clear(); }

  // The tree of that key, made when there is none.
  CTree& treeOf(TTreeKey key);
  // Takes a tree over; null, and the caller keeps it, when there is one of its key.
  CTree* add(CTree* tree);

 protected:
  TTreeKey* keyOf(CTree* tree) override { return &tree->key; }
  // By the volumes where both are known, otherwise by the drives.
  int compareKeys(TTreeKey* a, TTreeKey* b) override;
};
