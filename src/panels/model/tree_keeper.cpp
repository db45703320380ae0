#include "panels/model/tree_keeper.h"

#include "panels/model/panel.h"

namespace {

TreeKeeper* connectedKeeper = nullptr;

}  // namespace

TreeKeeper& treeKeeper() {
  static TreeKeeper none;
  return connectedKeeper ? *connectedKeeper : none;
}

void setTreeKeeper(TreeKeeper* keeper) {
  connectedKeeper = keeper;
}

TreeKeeper& treeKeeperOf(const Panel& panel) {
  return panel.tree ? *panel.tree : treeKeeper();
}
