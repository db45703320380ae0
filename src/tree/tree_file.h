#pragma once

#include <functional>

#include "foundation/westring.h"
#include "tree/tree.h"

// The file of a tree: eight bytes of its volume, little endian, then a line for each node, a parent
// before its children: one byte of the level above '0', the name as the system has it, a line end.

// Where it lies; "" when there is no place for it. Reads the settings.
Westring treeFilePath();

enum class [[nodiscard]] TreeLoad{
    Loaded,
    NoFile,      // that can be read, or it belongs to another volume; the tree is as it was
    Empty,       // there is nothing in it: the tree is a root alone, and not `loaded`
    Interrupted  // the tree has no root
};

// Fills the tree. Whatever the bytes are: what isn't a name is left out with all below it, a level
// that jumps is that of a child, and the first line that is none ends the reading. `interrupted` is
// asked now and then.
TreeLoad loadTree(CTree& tree, const Westring& file, const std::function<bool()>& interrupted = {});

// Sorts the tree and replaces the file by it; the directory that it lies in is made, for its owner
// alone. 0 or errno; nothing is written, and the result is 0, for a tree that isn't complete or is
// private, and where there is no file for it (""). A name that can't stand on a line is left out
// with all below it.
int saveTree(CTree& tree, const Westring& file);
