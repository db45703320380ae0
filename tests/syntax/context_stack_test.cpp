#include "syntax/context_stack.h"

#include <gtest/gtest.h>

#include "syntax/syntax_definitions.h"

namespace {

struct Elements {
  Elements() { definitions->elements.resize(2); }
  const CSyntaxElement* a() const { return &definitions->elements[0]; }
  const CSyntaxElement* b() const { return &definitions->elements[1]; }
  std::shared_ptr<SyntaxDefinitions> definitions = std::make_shared<SyntaxDefinitions>(7);
};

TEST(ContextStack, TheLastPushedIsTheTop) {
  const Elements elements;
  CContextStack stack;
  EXPECT_TRUE(stack.empty());
  EXPECT_EQ(stack.top(), nullptr);
  stack.pop();
  stack.push(elements.a(), elements.definitions);
  stack.push(elements.b(), elements.definitions);
  EXPECT_EQ(stack.depth(), 2);
  EXPECT_EQ(stack.top(), elements.b());
  stack.pop();
  EXPECT_EQ(stack.top(), elements.a());
  stack.pop();
  EXPECT_TRUE(stack.empty());
}

TEST(ContextStack, ACopyStaysAsItWas) {
  const Elements elements;
  CContextStack stack;
  stack.push(elements.a(), elements.definitions);
  const CContextStack copy = stack;
  stack.pop();
  stack.push(elements.b(), elements.definitions);
  EXPECT_EQ(copy.top(), elements.a());
  EXPECT_FALSE(copy == stack);
}

TEST(ContextStack, StacksOfTheSameElementsAreEqual) {
  const Elements elements;
  CContextStack left;
  CContextStack right;
  EXPECT_TRUE(left == right);
  left.push(elements.a(), elements.definitions);
  EXPECT_FALSE(left == right);
  right.push(elements.a(), elements.definitions);
  EXPECT_TRUE(left == right);
  left.push(elements.a(), elements.definitions);
  right.push(elements.b(), elements.definitions);
  EXPECT_FALSE(left == right);
}

TEST(ContextStack, TheDeepestOneTakesNoMore) {
  const Elements elements;
  CContextStack stack;
  for (int i = 0; i < CContextStack::Deepest; ++i) stack.push(elements.a(), elements.definitions);
  EXPECT_EQ(stack.depth(), CContextStack::Deepest);
  stack.push(elements.b(), elements.definitions);
  EXPECT_EQ(stack.depth(), CContextStack::Deepest);
  EXPECT_EQ(stack.top(), elements.a());
}

// A part that another stack has too goes on living.
TEST(ContextStack, ADeepOneEndsWithoutAStackOfItsOwnDepth) {
  const Elements elements;
  CContextStack kept;
  {
    CContextStack stack;
    for (int i = 0; i < CContextStack::Deepest; ++i) {
      stack.push(elements.a(), elements.definitions);
      if (i == 9) kept = stack;
    }
  }
  EXPECT_EQ(kept.depth(), 10);
  EXPECT_EQ(kept.top(), elements.a());
}

TEST(ContextStack, KeepsTheDefinitionsOfItsElements) {
  CContextStack stack;
  std::weak_ptr<SyntaxDefinitions> definitions;
  {
    Elements elements;
    definitions = elements.definitions;
    stack.push(elements.a(), elements.definitions);
    EXPECT_TRUE(stack.isOf(elements.definitions.get()));
  }
  EXPECT_FALSE(definitions.expired());
  EXPECT_FALSE(stack.isOf(nullptr));
  stack.pop();
  EXPECT_TRUE(definitions.expired());
  EXPECT_TRUE(stack.isOf(nullptr));
}

}  // namespace
