#pragma once

#include <cstdint>
#include <optional>

#include "foundation/connection.h"
#include "foundation/westring.h"
#include "ui/input_loop.h"

struct Panel;

// How much of a tree opens or closes: one line, or it and everything below it.
enum class TreeReach { Line, Subtree };

// What the tree's window is for: it stands by itself, or beside a field that it fills.
enum class TreeWindowUse { Command, Field };

// The persistent tree of directories, as the panels and the file commands know it. What is said of
// a panel concerns the tree that the panel belongs to. Application thread.
class DirectoryTree {
 public:
  virtual ~DirectoryTree() = default;

  // ---- what it is told of the disk, and asked about it

  // The panel has read its whole directory: all subdirectories are in `panel.subdirectories`, the
  // files directly in it have that many bytes.
  virtual void directoryRead(const Panel&, int64_t) {}
  virtual void made(const Panel&, const Westring&) {}                      // path
  virtual void renamed(const Panel&, const Westring&, const Westring&) {}  // from, to
  virtual void removed(const Westring&) {}                                 // path, of any tree
  // Writes what has changed since the last time.
  virtual void save() {}
  // The same for what panels have read, when nothing else is to be done: at most once in a while.
  // How long it may be until the next call, in milliseconds; NoLimit when there is nothing to
  // write.
  virtual int saveWhileWaiting() { return NoLimit; }
  // The bytes below a directory, where they were counted.
  virtual std::optional<int64_t> totalOf(const Panel&, const Westring&) { return std::nullopt; }
  // The path of the directory of this name that comes next in the tree; "" when there is none.
  virtual Westring find(const Panel&, const Westring&) { return Westring(); }

  // ---- a panel of the tree style

  // Fills the panel's empty list, and `treeLines` with a record for each entry; looks through the
  // disk first when `rescanTree` asks for it or nothing is known of it.
  virtual void fill(Panel&) {}
  // The whole path of the entry of this index, which must be there.
  virtual Westring pathOf(const Panel&, int) { return Westring(); }
  // Its cursor goes to the line of a directory, if there is one.
  virtual void select(Panel&, const Westring&) {}
  // Its current line opens or closes.
  virtual void expand(Panel&, TreeReach) {}
  virtual void collapse(Panel&, TreeReach) {}

  // ---- its window

  // Lets the user choose a directory of the panel's tree: its path, or "" when none was chosen.
  virtual Westring choose(Panel&, TreeWindowUse) { return Westring(); }
};

Connection<DirectoryTree>& directoryTree();

// The directory of the line under the cursor of a tree panel; "" while it shows none.
Westring treeDirectory(const Panel& panel);
