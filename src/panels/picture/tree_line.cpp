#include "panels/picture/tree_line.h"

namespace {

constexpr wchar_t BranchGoesOn = 0x2502;
constexpr wchar_t BranchToSibling = 0x251C;
constexpr wchar_t LastBranch = 0x2514;
constexpr wchar_t NothingHidden = 0x2500;
constexpr wchar_t ChildrenHidden = L'+';
constexpr int CellsPerLevel = 2;

}  // namespace

int treePrefixWidth(const TreeLine& line) {
  return CellsPerLevel * line.level;
}

CellString treePrefix(const TreeLine& line, unsigned char attr) {
  CellString prefix(attr);
  if (line.level == 0) return prefix;
  const int ownSlot = line.level - 1;
  for (int slot = 0; slot < ownSlot; ++slot) {
    prefix.append(line.goesOn(slot) ? BranchGoesOn : L' ', attr);
    prefix.append(L' ', attr);
  }
  prefix.append(line.goesOn(ownSlot) ? BranchToSibling : LastBranch, attr);
  prefix.append(line.childrenHidden ? ChildrenHidden : NothingHidden, attr);
  return prefix;
}
