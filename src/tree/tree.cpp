#include "tree/tree.h"

#include <cwchar>
#include <functional>
#include <string_view>

#include "foundation/fold.h"
#include "foundation/names.h"
#include "options/options.h"

namespace {

constexpr wchar_t RootName[] = L"/";
constexpr size_t FirstBuckets = 1024;

bool sameNameFolded(const wchar_t* a, const wchar_t* b) {
  return compareNoCase(a, b) == 0;
}

bool beginsFolded(const wchar_t* name, const wchar_t* prefix) {
  for (; *prefix; ++name, ++prefix) {
    if (foldChar(*name) != foldChar(*prefix)) return false;
  }
  return true;
}

bool isDiskRoot(const TREENODE* node) {
  return sameName(node->name, RootName);
}

bool goesBefore(const TREENODE* a, const TREENODE* b) {
  return wcscmp(a->name.data(), b->name.data()) <= 0;
}

// Two ordered lists become one; of equal names those of `a` come first.
TREENODE* merge(TREENODE* a, TREENODE* b) {
  TREENODE* first = nullptr;
  TREENODE** end = &first;
  while (a && b) {
    TREENODE*& taken = goesBefore(a, b) ? a : b;
    *end = taken;
    end = &taken->next;
    taken = taken->next;
  }
  *end = a ? a : b;
  return first;
}

// Pieces of 1, 2, 4 ... nodes are merged as they come up.
TREENODE* mergeSorted(TREENODE* list) {
  std::vector<TREENODE*> pieces;  // that of 2 to the power of k nodes at k, or null
  while (list) {
    TREENODE* piece = list;
    list = list->next;
    piece->next = nullptr;
    size_t power = 0;
    for (; power < pieces.size() && pieces[power]; ++power) {
      piece = merge(pieces[power], piece);
      pieces[power] = nullptr;
    }
    if (power == pieces.size()) pieces.push_back(nullptr);
    pieces[power] = piece;
  }
  TREENODE* sorted = nullptr;
  for (TREENODE* piece : pieces) sorted = merge(piece, sorted);
  return sorted;
}

bool isSorted(const TREENODE* list) {
  for (; list && list->next; list = list->next) {
    if (!goesBefore(list, list->next)) return false;
  }
  return true;
}

}  // namespace

// What the tree knows of a node beside its record.
struct CTree::Node : TREENODE {
  Node* previous = nullptr;
  Node* lastChild = nullptr;
  Node* nextInBucket = nullptr;
  size_t hash = 0;
};

CTree::Node* CTree::full(TREENODE* node) {
  return static_cast<Node*>(node);
}

CTree::CTree(TTreeKey treeKey) : key(treeKey), buckets_(FirstBuckets, nullptr) {}

CTree::~CTree() {
  freeSubtree(root_);
  freeRemoved();
}

TREENODE* CTree::makeRoot() {
  dropRoot();
  root_ = new Node;
  ++version_;
  root_->name = RootName;
  root_->name[0] = static_cast<wchar_t>(key.drive);
  return root_;
}

void CTree::dropRoot() {
  loaded = false;
  if (!root_) return;
  removed_.push_back(root_);
  root_ = nullptr;
  buckets_.assign(FirstBuckets, nullptr);
  indexed_ = 0;
  ++version_;
}

CTree::Node* CTree::newChild(TREENODE* parent, const Westring& name) {
  if (parent->level >= DeepestLevel) return nullptr;
  Node* node = new Node;
  node->name = name;
  node->parent = parent;
  node->level = static_cast<uint8_t>(parent->level + 1);
  node->expanded = GlobalOptions::ExpandedTrees;
  addToIndex(node);
  ++version_;
  return node;
}

TREENODE* CTree::appendChild(TREENODE* parent, const Westring& name) {
  Node* node = newChild(parent, name);
  if (!node) return nullptr;
  Node* above = full(parent);
  node->previous = above->lastChild;
  (above->lastChild ? above->lastChild->next : above->child) = node;
  above->lastChild = node;
  return node;
}

TREENODE* CTree::prependChild(TREENODE* parent, const Westring& name) {
  Node* node = newChild(parent, name);
  if (node) linkFirst(node, parent);
  return node;
}

void CTree::linkFirst(Node* node, TREENODE* parent) {
  Node* above = full(parent);
  node->previous = nullptr;
  node->next = above->child;
  if (above->child) {
    full(above->child)->previous = node;
  } else {
    above->lastChild = node;
  }
  above->child = node;
}

void CTree::unlink(Node* node) {
  Node* above = full(node->parent);
  (node->previous ? node->previous->next : above->child) = node->next;
  if (node->next) {
    full(node->next)->previous = node->previous;
  } else {
    above->lastChild = node->previous;
  }
  node->next = nullptr;
  node->previous = nullptr;
}

void CTree::remove(TREENODE* node) {
  if (node == root_) return dropRoot();
  for (TREENODE* each = node; each; each = nextInSubtree(each, node)) takeFromIndex(full(each));
  unlink(full(node));
  removed_.push_back(node);
  ++version_;
}

void CTree::rename(TREENODE* node, const Westring& name) {
  takeFromIndex(full(node));
  node->name = name;
  addToIndex(full(node));
  ++version_;
}

void CTree::moveInto(TREENODE* node, TREENODE* parent) {
  if (parent->level >= DeepestLevel) return remove(node);
  takeFromIndex(full(node));
  unlink(full(node));
  node->parent = parent;
  linkFirst(full(node), parent);
  addToIndex(full(node));
  std::vector<TREENODE*> tooDeep;
  for (TREENODE* each = node; each; each = nextInSubtree(each, node)) {
    each->level = static_cast<uint8_t>(each->parent->level + 1);
    if (each->level == DeepestLevel + 1) tooDeep.push_back(each);
  }
  for (TREENODE* each : tooDeep) remove(each);
  ++version_;
}

TREENODE* CTree::childOf(const TREENODE* parent, const wchar_t* name) const {
  const size_t hash = hashOf(parent, name);
  for (Node* node = buckets_[bucketOf(hash)]; node; node = node->nextInBucket) {
    if (node->hash == hash && node->parent == parent && sameName(node->name, name)) return node;
  }
  return nullptr;
}

TREENODE* CTree::foldedChild(const TREENODE* parent, const wchar_t* name) const {
  if (TREENODE* exact = childOf(parent, name)) return exact;
  for (TREENODE* node = parent->child; node; node = node->next) {
    if (sameNameFolded(node->name.data(), name)) return node;
  }
  return nullptr;
}

TREENODE* CTree::find(const Westring& path, FoldCase fold) const {
  if (!root_) return nullptr;
  const Westring rootPath = isDiskRoot(root_) ? Westring() : root_->name;
  const int rootLength = rootPath.length();
  const Westring start = left(path, rootLength);
  const bool begins = fold == FoldCase::Yes ? sameNameFolded(start.data(), rootPath.data())
                                            : sameName(start, rootPath);
  if (!begins || path.empty()) return nullptr;
  const wchar_t* rest = path.data() + rootLength;
  if (*rest != 0 && *rest != L'/') return nullptr;
  TREENODE* node = root_;
  while (node) {
    while (*rest == L'/') ++rest;
    if (*rest == 0) break;
    const size_t length = wcscspn(rest, L"/");
    const Westring name = left(Westring(rest), static_cast<int>(length));
    node = fold == FoldCase::Yes ? foldedChild(node, name.data()) : childOf(node, name.data());
    rest += length;
  }
  return node;
}

void CTree::sort() {
  if (!root_ || sortedVersion_ == version_) return;
  for (TREENODE* node = root_; node; node = nextInSubtree(node, root_)) sortChildren(full(node));
  sortedVersion_ = version_;
}

void CTree::sortChildren(Node* parent) {
  if (isSorted(parent->child)) return;
  parent->child = mergeSorted(parent->child);
  Node* previous = nullptr;
  for (TREENODE* node = parent->child; node; node = node->next) {
    full(node)->previous = previous;
    previous = full(node);
  }
  parent->lastChild = previous;
}

// ---- the index

size_t CTree::hashOf(const TREENODE* parent, const wchar_t* name) {
  const size_t place = std::hash<const TREENODE*>()(parent);
  const size_t text = std::hash<std::wstring_view>()(name);
  constexpr size_t golden = 0x9E3779B97F4A7C15;
  const size_t mixed = (place * golden) ^ text;
  return mixed ^ (mixed >> 32);
}

void CTree::addToIndex(Node* node) {
  // Mostly empty, so that a name that isn't there is known without a look at another one.
  if (indexed_ * 2 >= buckets_.size()) growIndex(buckets_.size() * 2);
  node->hash = hashOf(node->parent, node->name.data());
  Node*& bucket = buckets_[bucketOf(node->hash)];
  node->nextInBucket = bucket;
  bucket = node;
  ++indexed_;
}

void CTree::takeFromIndex(Node* node) {
  for (Node** place = &buckets_[bucketOf(node->hash)]; *place; place = &(*place)->nextInBucket) {
    if (*place != node) continue;
    *place = node->nextInBucket;
    --indexed_;
    return;
  }
}

void CTree::expect(size_t nodes) {
  size_t wanted = buckets_.size();
  while (wanted < nodes * 2) wanted *= 2;
  if (wanted > buckets_.size()) growIndex(wanted);
}

void CTree::growIndex(size_t buckets) {
  std::vector<Node*> old(buckets, nullptr);
  old.swap(buckets_);
  for (Node* node : old) {
    while (node) {
      Node* following = node->nextInBucket;
      Node*& bucket = buckets_[bucketOf(node->hash)];
      node->nextInBucket = bucket;
      bucket = node;
      node = following;
    }
  }
}

// ---- the end of nodes

void CTree::freeSubtree(TREENODE* top) {
  TREENODE* node = top;
  while (node) {
    if (node->child) {
      node = node->child;
      continue;
    }
    // Without children: it goes, and its parent forgets it.
    TREENODE* parent = node == top ? nullptr : node->parent;
    if (parent) parent->child = node->next;
    delete full(node);
    node = parent;
  }
}

void CTree::freeRemoved() {
  for (TREENODE* top : removed_) freeSubtree(top);
  removed_.clear();
}

// ---- walks

TREENODE* nextBeside(const TREENODE* node, const TREENODE* top) {
  for (; node != top; node = node->parent) {
    if (node->next) return node->next;
  }
  return nullptr;
}

TREENODE* nextInSubtree(const TREENODE* node, const TREENODE* top) {
  return node->child ? node->child : nextBeside(node, top);
}

Westring pathOfNode(const TREENODE* node) {
  std::vector<const TREENODE*> way;
  int length = 1;
  for (; node; node = node->parent) {
    if (!node->parent && isDiskRoot(node)) break;
    way.push_back(node);
    length += node->name.length() + 1;
  }
  if (way.empty()) return RootName;
  Westring path = Westring::withRoom(length);
  wchar_t* end = path.data();
  for (size_t i = way.size(); i-- > 0;) {
    // The root of an archive's tree is a whole path already.
    if (way[i]->parent) *end++ = L'/';
    const int count = way[i]->name.length();
    wmemcpy(end, way[i]->name.data(), static_cast<size_t>(count));
    end += count;
  }
  *end = 0;
  return path;
}

void expandNode(TREENODE* node, Branch branch) {
  node->expanded = branch == Branch::Open || node->level == 0;
}

void expandSubtree(TREENODE* top, Branch branch) {
  for (TREENODE* node = top; node; node = nextInSubtree(node, top)) expandNode(node, branch);
}

void showNode(TREENODE* node) {
  while ((node = node->parent)) node->expanded = true;
}

TREENODE* findNextByPrefix(TREENODE* root, const TREENODE* start, const Westring& prefix) {
  TREENODE* first = nullptr;
  bool passed = false;
  for (TREENODE* node = root; node; node = nextInSubtree(node, root)) {
    if (node == start) passed = true;
    if (first && !passed) continue;
    if (!beginsFolded(node->name.data(), prefix.data())) continue;
    if (passed) return node;
    first = node;
  }
  return first;
}
