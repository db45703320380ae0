#pragma once

#include <functional>

#include "panels/model/directory_tree.h"
#include "panels/model/panel.h"
#include "tree/tree.h"
#include "ui/screen.h"

// The window in which the user picks a directory of a tree: a list of the directories that show,
// a field for the beginning of a name, the whole path. Opens and closes nodes of the tree itself.
// Application thread.
class TreeWindow : private Screen {
 public:
  // The tree must have a root. `rescan` looks through the disk anew, false when the user ended it;
  // null where there is nothing to look through.
  TreeWindow(CTree& tree, const Westring& directory, TreeWindowUse use,
             std::function<bool()> rescan);
  ~TreeWindow() override;

  Westring choose();  // the path, or "" when it was left without one

 private:
  enum class Hint { Shown, Hidden };

  void draw() override;
  void onKey(Key::Code key, int shiftState) override;
  void onMouse(const MouseMessage& mouse) override;
  void onTimeOut() override { scrollStep(); }
  int waitMs() const override;

  void drawFurniture(Hint hint);
  void drawRow(int row);
  void drawFoot();

  int count() const { return list_.count(); }
  int current() const { return list_.top + list_.cursor; }
  TREENODE* node() const;
  void rebuild(const TREENODE* current);
  void show(TREENODE* node);
  void goTo(int index);
  void moveBy(int step);
  void pageUp();
  void pageDown();
  void toSibling(int step);

  bool moveByKey(Key::Code key);
  bool openByKey(Key::Code key);
  void setBranch(Branch branch);
  void setSubtree(Branch branch);
  void rescan();
  void searchFrom(int index);
  void type(Key::Code key);
  void take() { leave(Taken); }

  bool isInside(const MouseMessage& mouse) const;
  void press(const MouseMessage& mouse);
  void scrollStep();

  static constexpr int Taken = 0, Left = -1;

  CTree& tree_;
  std::function<bool()> rescan_;
  int width_;
  int rows_;    // of the list
  Panel list_;  // nobody else's: its entries, lines, top and cursor
  Westring search_;
  std::unique_ptr<Win> window_;
  bool pressedInside_ = false;
  int scrollDirection_ = 0;  // while the button is held on a border
};

// Puts the lines of a tree into a panel's list, in the place of what is there; sorted.
void showTreeLines(Panel& panel, CTree& tree);
