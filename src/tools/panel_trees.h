#pragma once

#include <memory>
#include <vector>

#include "foundation/clock.h"
#include "foundation/string_collections.h"
#include "panels/model/directory_tree.h"
#include "tree/tree_set.h"

// The trees of the disk for panels and commands: loaded from their file when they are asked for,
// looked through when there is nothing to load, told what has changed, saved, and shown. All of the
// disk is one tree. Application thread.
class PanelTrees : public DirectoryTree {
 public:
  explicit PanelTrees(CClock& clock = systemClock()) : clock_(clock) {}

  void directoryRead(const Panel& panel, int64_t fileBytes) override;
  void made(const Panel& panel, const Westring& path) override;
  void renamed(const Panel& panel, const Westring& from, const Westring& to) override;
  void removed(const Westring& path) override;
  void save() override;
  int saveWhileWaiting() override;
  std::optional<int64_t> totalOf(const Panel& panel, const Westring& path) override;
  Westring find(const Panel& panel, const Westring& name) override;

  void fill(Panel& panel) override;
  Westring pathOf(const Panel& panel, int index) override;
  void select(Panel& panel, const Westring& path) override;
  void expand(Panel& panel, TreeReach reach) override { setBranch(panel, reach, Branch::Open); }
  void collapse(Panel& panel, TreeReach reach) override { setBranch(panel, reach, Branch::Closed); }

  Westring choose(Panel& panel, TreeWindowUse use) override;

  // The tree that a panel belongs to: of the archive that it shows, or of the disk.
  CTree& treeOf(const Panel& panel);
  // The tree of the disk; loaded if there is a file of it, and without a root otherwise. What
  // panels have read before anybody asked for it comes into it then.
  CTree& tree();
  // Looks through the disk, in a window. False when the user ended it: there is no root then.
  bool scan();

 private:
  struct EarlyRead {
    Westring path;
    NameCollection subdirectories;
    int64_t fileBytes = 0;
  };

  CTree& shownTree(const Panel& panel);
  void keepForLater(const Panel& panel, int64_t fileBytes);
  void take(const Westring& path, const NameCollection& subdirectories, int64_t fileBytes);
  void setBranch(Panel& panel, TreeReach reach, Branch branch);
  bool needsScan();
  bool wantsSave();
  int write();
  void write(const char* onFailure);
  void freeRemoved();

  CClock& clock_;
  CTreeSet set_;
  bool askedFor_ = false;  // somebody wanted to know something of the tree
  bool waited_ = false;    // the program has waited for the user before
  std::vector<std::unique_ptr<EarlyRead>> early_;
  bool declined_ = false;      // the user ended a scan that nobody had asked for
  bool loadDeclined_ = false;  // and a load
  bool everSaved_ = false;
  int64_t lastSave_ = 0;         // nanoseconds of the clock
  uint64_t refusedVersion_ = 0;  // that couldn't be written
  bool refused_ = false;
};

// The one of the program.
PanelTrees& panelTrees();
