#pragma once

#include "foundation/string_collections.h"
#include "tree/tree.h"

// What the disk has become, told to a tree. What the tree doesn't hold isn't added to.

// A directory was made: the last child of its parent, with its size unknown. Null when the tree
// doesn't hold the parent or has it as a leaf; the node that is there when it knows the directory
// already.
TREENODE* addDirectory(CTree& tree, const Westring& path);
// A directory and all below it has gone. False when the tree doesn't hold it.
bool removeDirectory(CTree& tree, const Westring& path);
// A directory moved. Into one that the tree holds: it hangs there. Otherwise it takes the new name
// and leaves the tree until its parent is read again, or keeps its place when the tree doesn't hold
// the new path. False when the tree doesn't hold the old one.
bool renameDirectory(CTree& tree, const Westring& from, const Westring& to);
// A directory has exactly these subdirectories. True when that was news.
bool synchronise(CTree& tree, TREENODE* directory, const NameCollection& names);
// The bytes below a directory are those of its files and of its children, if all are known.
void sumUp(TREENODE* directory, int64_t fileBytes);
// The bytes below a directory when they and those of every child are known; Unknown otherwise.
int64_t knownSize(const TREENODE* directory);
