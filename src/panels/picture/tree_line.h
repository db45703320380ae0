#pragma once

#include "console/cell_string.h"
#include "foundation/entry.h"
#include "foundation/westring.h"

// What a tree line's node knows beyond its entry. The base stands in until a tree is connected.
class TreeLines {
 public:
  virtual ~TreeLines() = default;
  virtual bool hasCollapsedChildren(const entry&) const { return false; }
  virtual Westring fullPath(const entry& item) const { return Westring(item.name()); }
};

// The source of the run, never null. setTreeLines(null) brings the empty one back. Not owned.
const TreeLines& treeLines();
void setTreeLines(const TreeLines* lines);

// Cells that a tree line's branches take: two for each level.
int treePrefixWidth(const entry& item);
// The branches ahead of a line's name. `item.level` is its depth; bit k of `item.size` tells that
// the branch at depth k+1 goes on below this line.
CellString treePrefix(const entry& item, unsigned char attr);
