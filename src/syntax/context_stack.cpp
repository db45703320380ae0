#include "syntax/context_stack.h"

#include <utility>

struct CContextStack::Node {
  Node(std::shared_ptr<Node> below, const CSyntaxElement* which,
       std::shared_ptr<const SyntaxDefinitions> whose)
      : parent(std::move(below)),
        element(which),
        owner(std::move(whose)),
        depth(parent ? parent->depth + 1 : 1) {}
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  // In a loop: a chain that ended node within node would need a stack of its own length.
  ~Node() {
    std::shared_ptr<Node> next = std::move(parent);
    while (next != nullptr && next.use_count() == 1) next = std::move(next->parent);
  }

  std::shared_ptr<Node> parent;
  const CSyntaxElement* element;
  std::shared_ptr<const SyntaxDefinitions> owner;
  int depth;
};

int CContextStack::depth() const {
  return top_ ? top_->depth : 0;
}

const CSyntaxElement* CContextStack::top() const {
  return top_ ? top_->element : nullptr;
}

void CContextStack::push(const CSyntaxElement* element,
                         const std::shared_ptr<const SyntaxDefinitions>& owner) {
  if (depth() < Deepest) top_ = std::make_shared<Node>(top_, element, owner);
}

void CContextStack::pop() {
  if (top_ == nullptr) return;
  std::shared_ptr<Node> below = top_->parent;
  top_ = std::move(below);
}

bool CContextStack::isOf(const SyntaxDefinitions* definitions) const {
  return top_ == nullptr || top_->owner.get() == definitions;
}

bool operator==(const CContextStack& a, const CContextStack& b) {
  if (a.depth() != b.depth()) return false;
  const CContextStack::Node* left = a.top_.get();
  const CContextStack::Node* right = b.top_.get();
  while (left != right) {
    if (left->element != right->element) return false;
    left = left->parent.get();
    right = right->parent.get();
  }
  return true;
}
