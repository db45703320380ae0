#include "console/cell.h"

#include <gtest/gtest.h>

namespace {
TEST(Cell, ControlCharactersHaveTheGraphicsOfTheClassicSet) {
  const wchar_t graphics[] = {0x263A, 0x263B, 0x2665, 0x2666, 0x2663, 0x2660, 0x2022, 0x25D8,
                              0x25CB, 0x25D9, 0x2642, 0x2640, 0x266A, 0x266B, 0x263C, 0x25BA,
                              0x25C4, 0x2195, 0x203C, 0x00B6, 0x00A7, 0x25AC, 0x21A8, 0x2191,
                              0x2193, 0x2192, 0x2190, 0x221F, 0x2194, 0x25B2, 0x25BC};
  for (int i = 0; i < 31; ++i) EXPECT_EQ(mapControl(i + 1), graphics[i]) << i + 1;
}

TEST(Cell, DeleteAndTheUpperControlsAreAHouse) {
  for (wchar_t c = 127; c <= 159; ++c) EXPECT_EQ(mapControl(c), 0x2302) << int(c);
}

TEST(Cell, EverythingElseIsItself) {
  for (const wchar_t c : {L'\0', L' ', L'~', wchar_t(160), wchar_t(0xE4), wchar_t(0x1F600),
                          wchar_t(-1), wchar_t(-128)}) {
    EXPECT_EQ(mapControl(c), c);
  }
}

TEST(Cell, IsABlankInGreyAndEqualOnlyInBothCharacterAndColour) {
  EXPECT_EQ(Cell{}, (Cell{L' ', 7}));
  EXPECT_FALSE((Cell{L'a', 7} == Cell{L'b', 7}));
  EXPECT_FALSE((Cell{L'a', 7} == Cell{L'a', 8}));
}
}  // namespace
