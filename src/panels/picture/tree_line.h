#pragma once

#include "console/cell_string.h"
#include "panels/model/panel.h"

// Cells that a tree line's branches take: two for each level.
int treePrefixWidth(const TreeLine& line);
// The branches ahead of a line's name.
CellString treePrefix(const TreeLine& line, unsigned char attr);
