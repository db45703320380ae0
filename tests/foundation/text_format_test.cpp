#include "foundation/text_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <tuple>

#include "foundation/locale_settings.h"
#include "support/exact_text.h"

namespace {
constexpr unsigned long long Largest = ULLONG_MAX;

struct SizeRow {
  unsigned long long value;
  int width;
  const wchar_t* expected;
};
}  // namespace

TEST(ShortenPath, CutsInTheMiddleBehindTheFirstDirectory) {
  const std::tuple<const wchar_t*, int, const wchar_t*> rows[] = {
      {L"/usr/share/doc", 14, L"/usr/share/doc"},
      {L"/usr/share/doc", 13, L"/usr/...e/doc"},
      {L"/usr/share/doc", 9, L"/usr/...c"},
      {L"/usr/share/doc", 8, L"/usr/..."},
      {L"/usr/share/doc", 7, L"/usr/s\x10"},
      {L"usr/share/doc", 12, L"usr/...e/doc"},
      {L"/verylongname", 6, L"/very\x10"},
      {L"verylongname", 6, L"veryl\x10"},
      {L"/usr/share/doc", 1, L"\x10"},
      {L"/usr/share/doc", 0, L""},
      {L"/usr/share/doc", -3, L""},
      {L"", 5, L""}};
  for (const auto& [path, width, expected] : rows) {
    EXPECT_EQ(exact(shortenPath(Westring(path), width)), expected) << width;
  }
}

TEST(CutText, MarksWhatWasCutOff) {
  EXPECT_EQ(exact(cutText(Westring(L"abc"), 3)), L"abc");
  EXPECT_EQ(exact(cutText(Westring(L"abcd"), 3)), L"ab\x10");
  EXPECT_EQ(exact(cutText(Westring(L"abcd"), 1)), L"\x10");
  EXPECT_EQ(exact(cutText(Westring(L"abcd"), 0)), L"");
}

TEST(GroupDigits, PutsASeparatorBeforeEveryThirdDigit) {
  EXPECT_EQ(exact(groupDigits(0)), L"0");
  EXPECT_EQ(exact(groupDigits(999)), L"999");
  EXPECT_EQ(exact(groupDigits(1000)), L"1,000");
  EXPECT_EQ(exact(groupDigits(1234567)), L"1,234,567");
  EXPECT_EQ(exact(groupDigits(Largest)), L"18,446,744,073,709,551,615");
  localeSettings.thousandSeparator = L'\u2019';
  EXPECT_EQ(exact(groupDigits(1000)), L"1\u2019000");
  localeSettings = LocaleSettings();
}

TEST(FormatSize, GoesOnToLargerUnitsWhereDigitsDontFit) {
  const SizeRow rows[] = {{0, 8, L"0"},
                          {999999, 8, L"999,999"},
                          {1000000, 8, L"976K"},
                          {1023999999, 8, L"999,999K"},
                          {1024000000, 8, L"976M"},
                          {102399999, 7, L"99,999K"},
                          {102400000, 7, L"97M"},
                          {1ULL << 40, 8, L"1,024G"},
                          {999999999, 12, L"999,999,999"},
                          {1000000000, 12, L"976,562K"},
                          {9999999, 9, L"9,999,999"},
                          {10000000, 9, L"9,765K"},
                          {999, 3, L"999"},
                          {1000, 3, L"0K"},
                          {102400, 3, L"0M"}};
  for (const SizeRow& row : rows) {
    EXPECT_EQ(exact(formatSize(row.value, row.width)), row.expected)
        << row.value << ' ' << row.width;
  }
}

TEST(FormatSize, BeyondTheLargestUnitStaysAtTheLargestNumber) {
  EXPECT_EQ(exact(formatSize(Largest, 8)), L"999,999T");
  EXPECT_EQ(exact(formatSize(Largest, 7)), L"99,999T");
  EXPECT_EQ(exact(formatSize(Largest, 12)), L"16,777,215T");
  EXPECT_EQ(exact(formatSize(Largest, 4)), L"999T");
}

TEST(FormatSize, NeverIsWiderThanItsColumn) {
  for (int width = -1; width <= 30; ++width) {
    for (unsigned long long value = 1; value != 0 && value < Largest / 3; value *= 3) {
      for (unsigned long long near : {value - 1, value, value + 1, value * 2}) {
        ASSERT_LE(formatSize(near, width).length(), std::max(width, 0)) << near << ' ' << width;
        ASSERT_LE(formatPlainSize(near, width).length(), std::max(width, 0))
            << near << ' ' << width;
      }
    }
    ASSERT_LE(formatSize(Largest, width).length(), std::max(width, 0));
    ASSERT_LE(formatPlainSize(Largest, width).length(), std::max(width, 0));
  }
}

TEST(FormatPlainSize, GoesFromBytesToT) {
  const SizeRow rows[] = {{0, 8, L"0"},
                          {99999999, 8, L"99999999"},
                          {100000000, 8, L"97656K"},
                          {10239999999, 8, L"9999999K"},
                          {10240000000, 8, L"9765M"},
                          {10000000ULL << 20, 8, L"9765G"},
                          {10000000ULL << 30, 8, L"9765T"},
                          {Largest, 8, L"9999999T"},
                          {Largest, 9, L"16777215T"},
                          {Largest, 20, L"18446744073709551615"},
                          {5, 1, L"5"}};
  for (const SizeRow& row : rows) {
    EXPECT_EQ(exact(formatPlainSize(row.value, row.width)), row.expected)
        << row.value << ' ' << row.width;
  }
}
