#include "panels/picture/tree_line.h"

namespace {

constexpr wchar_t BranchGoesOn = 0x2502;
constexpr wchar_t BranchToSibling = 0x251C;
constexpr wchar_t LastBranch = 0x2514;
constexpr wchar_t NothingHidden = 0x2500;
constexpr wchar_t ChildrenHidden = L'+';
constexpr int CellsPerLevel = 2;
constexpr int DeepestBranch = 64;  // bits of the mask

const TreeLines noTree;
const TreeLines* connected = &noTree;

bool goesOn(const entry& item, int slot) {
  return slot < DeepestBranch && ((item.size >> slot) & 1) != 0;
}

}  // namespace

const TreeLines& treeLines() {
  return *connected;
}

void setTreeLines(const TreeLines* lines) {
  connected = lines != nullptr ? lines : &noTree;
}

int treePrefixWidth(const entry& item) {
  return CellsPerLevel * item.level;
}

CellString treePrefix(const entry& item, unsigned char attr) {
  CellString prefix(attr);
  if (item.level == 0) return prefix;
  const int ownSlot = item.level - 1;
  for (int slot = 0; slot < ownSlot; ++slot) {
    prefix.append(goesOn(item, slot) ? BranchGoesOn : L' ', attr);
    prefix.append(L' ', attr);
  }
  prefix.append(goesOn(item, ownSlot) ? BranchToSibling : LastBranch, attr);
  prefix.append(treeLines().hasCollapsedChildren(item) ? ChildrenHidden : NothingHidden, attr);
  return prefix;
}
