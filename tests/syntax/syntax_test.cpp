#include "syntax/syntax.h"

#include <gtest/gtest.h>

#include "options/colours.h"
#include "syntax/coloured_text.h"

namespace {

TEST(Syntax, WithoutDefinitionsAllTextHasTheDefaultColour) {
  CSyntax engine;
  EXPECT_FALSE(engine.active());
  CellString cells;
  engine.colour(L"int a", cells);
  ASSERT_EQ(cells.length(), 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(cells[i].attr, colourOf(Colour::FileViewer));
}

TEST(Syntax, WordsNumbersSymbolsAndCommentsHaveTheirColours) {
  CSyntax engine = engineWith(
      "words:white:if else\n"
      "number:red\n"
      "symbols:yellow:+-\n"
      "linecomment:green://\n");
  EXPECT_EQ(coloursOf(engine, L"if x+12 // if"), "77..644.22222");
}

}  // namespace
