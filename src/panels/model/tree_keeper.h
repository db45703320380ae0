#pragma once

#include <cstdint>
#include <optional>

#include "foundation/string_collections.h"
#include "foundation/westring.h"

struct Panel;

// What the panels and the file operations tell the persistent directory tree. The base does
// nothing: it stands in until a tree is connected.
class TreeKeeper {
 public:
  virtual ~TreeKeeper() = default;
  // A directory was read: these are all its subdirectories.
  virtual void subdirectoriesRead(const Westring&, const NameCollection&) {}
  // The counted total of a directory, when the tree knows one.
  virtual std::optional<int64_t> directoryTotal(const Westring&) { return std::nullopt; }
  // The sum of the files directly in a directory, after a read.
  virtual void filesCounted(const Westring&, int64_t) {}
  virtual void renamed(const Westring&, const Westring&) {}  // from, to
  virtual void removed(const Westring&) {}
  virtual void made(const Westring&) {}
  virtual void save() {}

  // A panel of the tree style shows the tree: its lines go into the (empty) list.
  virtual void buildView(Panel&) {}
  // Its cursor goes to the line of a directory, if there is one.
  virtual void selectDirectory(Panel&, const Westring&) {}
  // Its current line opens or closes, alone or with everything below it.
  virtual void expandNode(Panel&) {}
  virtual void collapseNode(Panel&) {}
  virtual void expandSubtree(Panel&) {}
  virtual void collapseSubtree(Panel&) {}
};

// The keeper that a panel speaks to: its own tree, or the one of the run. Never null.
TreeKeeper& treeKeeperOf(const Panel& panel);
// The keeper of the run, never null. setTreeKeeper(null) brings the empty one back. Not owned.
TreeKeeper& treeKeeper();
void setTreeKeeper(TreeKeeper* keeper);
