#pragma once

#include <cstdint>
#include <string>

#include "tree/tree.h"

// Who looks on while directories are looked through.
class ScanWatcher {
 public:
  virtual ~ScanWatcher() = default;
  // The names that were found so far, counted from 1 and with "." and ".." of each directory.
  virtual void counted(int64_t) {}
  // Asked at every directory and every few hundred names; true ends the scan.
  virtual bool interrupted() { return false; }
};

enum class [[nodiscard]] ScanEnd{Whole, Interrupted};

// Makes the tree anew from the directories of the disk, level by level, in directory order. Links
// to directories and the file systems that show the kernel are leaves, mounts are gone into, what
// can't be read is empty. The tree is `loaded` then; interrupted, it has no root. `base`: where the
// root's directories are looked for, "" for the whole disk; UTF-8, no slash at its end.
ScanEnd scanTree(CTree& tree, ScanWatcher& watcher, const std::string& base = "");

// Whether a directory of the disk is a leaf of every tree: a link, or one of the kernel's own file
// systems. Not what can't be opened.
bool isLeafOnDisk(const Westring& path);
