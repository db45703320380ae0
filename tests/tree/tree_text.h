#pragma once

#include <string>

#include "foundation/utf8.h"
#include "tree/tree.h"

inline std::string bytesOf(const Westring& text) {
  return toUtf8(text).data();
}

// The whole tree on one line: "/ a( b c ) d", a parent before its children in brackets.
inline std::string textOf(const TREENODE* node) {
  if (!node) return "none";
  std::string text = bytesOf(node->name);
  if (!node->child) return text;
  text += "(";
  for (const TREENODE* child = node->child; child; child = child->next) text += " " + textOf(child);
  return text + " )";
}

inline std::string textOf(const CTree& tree) {
  return textOf(tree.root());
}

// Makes the directory of that path and all above it, each behind its siblings.
inline TREENODE* grow(CTree& tree, const std::string& path) {
  TREENODE* node = tree.root() ? tree.root() : tree.makeRoot();
  size_t start = 1;
  while (start < path.size()) {
    const size_t end = std::min(path.find('/', start), path.size());
    const Westring name = decodeFileName(path.substr(start, end - start).c_str());
    TREENODE* known = tree.childOf(node, name.data());
    node = known ? known : tree.appendChild(node, name);
    start = end + 1;
  }
  return node;
}

inline TREENODE* at(const CTree& tree, const std::string& path) {
  return tree.find(decodeFileName(path.c_str()));
}

// What every tree keeps: levels, parents, and each child found by its name. "" when all is well.
inline std::string faultOf(const CTree& tree) {
  for (TREENODE* node = tree.root(); node; node = nextInSubtree(node, tree.root())) {
    if (!node->parent && node != tree.root()) return "no parent: " + bytesOf(node->name);
    if (node->level > CTree::DeepestLevel) return "too deep: " + bytesOf(node->name);
    for (TREENODE* child = node->child; child; child = child->next) {
      if (child->parent != node) return "parent of " + bytesOf(child->name);
      if (child->level != node->level + 1) return "level of " + bytesOf(child->name);
      if (tree.childOf(node, child->name.data()) != child) return "index: " + bytesOf(child->name);
    }
  }
  return "";
}
