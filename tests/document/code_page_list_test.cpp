#include "editor/text/code_page_list.h"

#include <gtest/gtest.h>

#include "editor/text/text_encoding.h"
#include "options/options.h"

namespace {

class CodePageListTest : public testing::Test {
 protected:
  void SetUp() override { GlobalOptions::setDefaultOptions(); }

  // The pages of so many steps; those of unknown numbers as -1.
  std::vector<int> steps(const char* numbers, int count) {
    GlobalOptions::TranslateCP = numbers;
    std::vector<int> pages;
    for (int i = 0; i < count; ++i) {
      const CodePageList::Step step = list.next();
      pages.push_back(step.number == CodePageList::Number::Good ? step.page : -1);
    }
    return pages;
  }

  CodePageList list;
};

using Pages = std::vector<int>;

TEST_F(CodePageListTest, GoesThroughTheNumbersThenTheDefaultThenTheNumbersAgain) {
  EXPECT_EQ(steps("437,1252", 7), (Pages{437, 1252, 0, 437, 1252, 0, 437}));
}

TEST_F(CodePageListTest, WithoutNumbersThereIsTheDefaultPage) {
  EXPECT_EQ(steps("", 2), (Pages{0, 0}));
}

TEST_F(CodePageListTest, TheNumberOfTheDefaultPageStandsForIt) {
  EXPECT_EQ(steps(("437," + std::to_string(resolvedPage(0)) + ",1252").c_str(), 4),
            (Pages{437, 0, 1252, 0}));
}

TEST_F(CodePageListTest, AnUnknownNumberIsNoPageAndTheNextStepGoesOn) {
  EXPECT_EQ(steps("437,99999,abc,12x,-5,99999999999,1252", 8),
            (Pages{437, -1, -1, -1, -1, -1, 1252, 0}));
}

TEST_F(CodePageListTest, BlanksAroundANumberDoNotCount) {
  EXPECT_EQ(steps(" 437 , 1252", 3), (Pages{437, 1252, 0}));
}

TEST_F(CodePageListTest, APlaceBehindTheEndOfAShorterListIsItsEnd) {
  steps("437,850,1252", 3);
  EXPECT_EQ(steps("437", 2), (Pages{0, 437}));
}

TEST_F(CodePageListTest, ARestartBeginsWithTheFirstNumber) {
  steps("437,1252", 1);
  list.restart();
  EXPECT_EQ(steps("437,1252", 1), Pages{437});
}

}  // namespace
