#include "viewer/hex_row.h"

#include <gtest/gtest.h>

TEST(HexRow, ShowsOffsetNumbersInFoursAndCharacters) {
  EXPECT_EQ(HexRow::text(0x10, "0123456789abcdef", 0),
            L"00000010 30 31 32 33 \u2502 34 35 36 37 \u2502 38 39 61 62 \u2502 63 64 65 66  "
            L"0123456789abcdef");
  EXPECT_EQ(HexRow::text(0, "0123456789abcdef", 0).size(), 80u);
}

TEST(HexRow, ANulIsADotAndTheCodePageSaysTheRest) {
  const std::string bytes("\0\xE9", 2);
  EXPECT_EQ(HexRow::text(0, bytes, 1252).substr(64), L".\u00E9");
  EXPECT_EQ(HexRow::text(0, bytes, 850).substr(64), L".\u00DA");
}

TEST(HexRow, BytesBehindTheEndAreBlank) {
  const std::wstring row = HexRow::text(0, "A", 0);
  EXPECT_EQ(row.substr(0, 22), L"00000000 41          \u2502");
  EXPECT_EQ(row.substr(64), L"A");
}

TEST(HexRow, LongOffsetsTakeTheirBlankAndThenMoveTheCharacters) {
  struct {
    int64_t offset;
    const wchar_t* head;
    int column;
  } const rows[] = {
      {0xFFFFFFFF, L"FFFFFFFF 41 ", 64},
      {0x100000000, L"100000000 41 ", 64},
      {0xFFFFFFFFF, L"FFFFFFFFF 41 ", 64},
      {0x1000000000, L"100000000041 ", 64},  // 2^36
      {0xFFFFFFFFFF, L"FFFFFFFFFF41 ", 64},
      {0x10000000000, L"1000000000041 ", 65},  // 2^40
      {0x7FFFFFFFFFFFFFFF, L"7FFFFFFFFFFFFFFF41 ", 70},
  };
  for (const auto& row : rows) {
    const std::wstring text = HexRow::text(row.offset, "A", 0);
    EXPECT_TRUE(text.starts_with(row.head)) << row.offset;
    EXPECT_EQ(HexRow::textColumn(row.offset), row.column) << row.offset;
    EXPECT_EQ(text.substr(static_cast<size_t>(row.column)), L"A") << row.offset;
  }
}
