#pragma once

#include <memory>

struct CSyntaxElement;
class SyntaxDefinitions;

// The syntax elements that are open, the innermost last. Stacks share what they have in common: a
// copy costs nothing, whatever the depth, and keeps the definitions of its elements alive.
class CContextStack {
 public:
  static constexpr int Deepest = 65535;

  bool empty() const { return top_ == nullptr; }
  int depth() const;
  const CSyntaxElement* top() const;  // null when empty
  // An element of those definitions. At the greatest depth nothing happens.
  void push(const CSyntaxElement* element, const std::shared_ptr<const SyntaxDefinitions>& owner);
  void pop();  // nothing when empty
  // Whether its elements are those of the definitions, or there are none.
  bool isOf(const SyntaxDefinitions* definitions) const;

  // The time is that of the part that isn't shared.
  friend bool operator==(const CContextStack& a, const CContextStack& b);

 private:
  struct Node;
  std::shared_ptr<Node> top_;
};
