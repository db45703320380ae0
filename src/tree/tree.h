#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/westring.h"

// One directory of a tree. Made and freed by its CTree.
struct TREENODE {
  static constexpr int64_t Unknown = -1;

  Westring name;  // its own; "/" at the root of a tree of the disk
  TREENODE* next = nullptr;
  TREENODE* child = nullptr;  // the first
  TREENODE* parent = nullptr;
  uint8_t level = 0;       // depth, 0 at the root
  int64_t size = Unknown;  // bytes of everything in it and below
  bool expanded = true;    // its children show
};

// Whether two names, or two paths, that differ in nothing but their case are one.
enum class FoldCase { No, Yes };

// What tells the trees of a program apart.
struct TTreeKey {
  uint32_t drive = L'/';  // the first character of the paths
  uint64_t volume = 0;    // number of the file system, 0 when unknown
};

// One tree of directories. A child is found by its name, added at either end, and taken out in a
// time that doesn't depend on how many there are. What is taken out stays readable, with the path
// that it had, until freeRemoved. Application thread.
class CTree {
 public:
  static constexpr int DeepestLevel = 63;  // nodes there have no children

  explicit CTree(TTreeKey treeKey = {});
  ~CTree();
  CTree(const CTree&) = delete;
  CTree& operator=(const CTree&) = delete;

  TTreeKey key;
  bool loaded = false;     // the content is complete and may be saved
  bool dirty = false;      // changed since the last save
  bool isPrivate = false;  // never saved, and freed with its panel

  TREENODE* root() const { return root_; }
  TREENODE* makeRoot();  // in the place of any other, expanded, without children
  void dropRoot();       // and all below it; also what `loaded` says

  void expect(size_t nodes);  // makes room in the index for so many
  // Null where the parent is at the deepest level.
  TREENODE* appendChild(TREENODE* parent, const Westring& name);
  TREENODE* prependChild(TREENODE* parent, const Westring& name);
  TREENODE* childOf(const TREENODE* parent, const wchar_t* name) const;
  void remove(TREENODE* node);  // with all below it
  void rename(TREENODE* node, const Westring& name);
  // The node becomes the first child of a parent that doesn't lie below it; what comes to lie too
  // deep is removed.
  void moveInto(TREENODE* node, TREENODE* parent);

  // At every node the children come in the order of their names, compared exactly.
  void sort();
  // The node of an absolute path, or null.
  TREENODE* find(const Westring& path, FoldCase fold = FoldCase::No) const;

  // Grows with every change of what nodes there are, what they are named and where they hang.
  uint64_t version() const { return version_; }
  void freeRemoved();

 private:
  struct Node;

  static Node* full(TREENODE* node);
  Node* newChild(TREENODE* parent, const Westring& name);
  void linkFirst(Node* node, TREENODE* parent);
  void unlink(Node* node);
  void sortChildren(Node* parent);
  TREENODE* foldedChild(const TREENODE* parent, const wchar_t* name) const;

  void addToIndex(Node* node);
  void takeFromIndex(Node* node);
  void growIndex(size_t buckets);
  size_t bucketOf(size_t hash) const { return hash & (buckets_.size() - 1); }
  static size_t hashOf(const TREENODE* parent, const wchar_t* name);
  static void freeSubtree(TREENODE* top);

  TREENODE* root_ = nullptr;
  std::vector<Node*> buckets_;  // children by parent and name; a power of two
  size_t indexed_ = 0;
  std::vector<TREENODE*> removed_;  // tops of what was taken out
  uint64_t version_ = 0;
  uint64_t sortedVersion_ = 0;
};

// Every node of a subtree, a parent before its children: the one behind `node`, null behind the
// last one below `top`.
TREENODE* nextInSubtree(const TREENODE* node, const TREENODE* top);
// The same without what lies below `node`.
TREENODE* nextBeside(const TREENODE* node, const TREENODE* top);

Westring pathOfNode(const TREENODE* node);
// Whether the children of a node are shown.
enum class Branch { Closed, Open };
// Opens or closes one node, or it and all below it; the root stays open.
void expandNode(TREENODE* node, Branch branch);
void expandSubtree(TREENODE* top, Branch branch);
// Opens what a node lies in.
void showNode(TREENODE* node);

// The node whose name begins with `prefix`, in any case, that comes first from `start` on, or from
// the root when there is none; null without any.
TREENODE* findNextByPrefix(TREENODE* root, const TREENODE* start, const Westring& prefix);
