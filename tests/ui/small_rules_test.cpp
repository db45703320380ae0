#include <gtest/gtest.h>

#include <cmath>

#include "support/key_print.h"
#include "ui/alert_dialog.h"
#include "ui/colour_selector.h"
#include "ui/integer_field.h"
#include "ui/progress_indicator.h"
#include "ui/win.h"

TEST(Shadow, BrightTextGoesPlainAndPlainTextGoesGreyOnBlack) {
  EXPECT_EQ(shadowAttr(0x1F), 7);
  EXPECT_EQ(shadowAttr(0x17), 8);
  EXPECT_EQ(shadowAttr(0x78), 0);
  EXPECT_EQ(shadowAttr(0x00), 8);
}

TEST(ColourSteps, WrapWithinTheNibbleAndTheByte) {
  const struct {
    unsigned char attr;
    Key::Code key;
    unsigned char result;
  } rows[] = {
      {0x1F, 'f', 0x10}, {0x10, 'F', 0x1F}, {0x07, 'B', 0xF7}, {0xF7, 'b', 0x07}, {0x17, 'f', 0x18},
      {0x17, 'F', 0x16}, {0x17, 'b', 0x27}, {0x17, 'B', 0x07}, {0x17, 'x', 0x17},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(steppedAttribute(row.attr, row.key), row.result) << int{row.attr} << row.key;
  }
}

TEST(ProgressCells, AreTruncatedAndNeverLeaveTheBar) {
  const struct {
    float fraction;
    int cells;
  } rows[] = {{0.0F, 0},  {0.5F, 18}, {0.99F, 35},    {1.0F, 36},  {1.5F, 36},
              {-1.0F, 0}, {NAN, 0},   {INFINITY, 36}, {0.027F, 0}, {0.028F, 1}};
  for (const auto& row : rows)
    EXPECT_EQ(progressCells(36, row.fraction), row.cells) << row.fraction;
}

TEST(ParseInteger, ReadsAsFarAsDigitsGoAndStaysInRange) {
  const struct {
    const wchar_t* text;
    int value;
  } rows[] = {{L"", 0},
              {L"42", 42},
              {L"0012", 12},
              {L"12ab", 12},
              {L"ab12", 0},
              {L" 7", 7},
              {L"-5", -5},
              {L"999999999999999999", 2147483647},
              {L"-999999999999999999", -2147483647 - 1}};
  for (const auto& row : rows) EXPECT_EQ(parseInteger(row.text), row.value);
}

namespace {

std::vector<std::wstring> wrapped(const Westring& text, int width) {
  std::vector<std::wstring> lines;
  for (const Westring& line : wrapAlertText(text, width)) lines.emplace_back(line.data());
  return lines;
}

}  // namespace

TEST(AlertLines, ATextThatFitsIsOneLine) {
  const Westring text(L'x', 72);
  EXPECT_EQ(wrapped(text, 80), std::vector<std::wstring>{std::wstring(72, L'x')});
}

TEST(AlertLines, ALongTextIsCutAtTheLastSpaceThatFits) {
  const Westring words = Westring(L'a', 40) + L" " + Westring(L'b', 31) + L" " + Westring(L'c', 20);
  EXPECT_EQ(wrapped(words, 80),
            (std::vector<std::wstring>{std::wstring(40, L'a') + L" " + std::wstring(31, L'b'),
                                       std::wstring(20, L'c')}));
}

TEST(AlertLines, AWordTooLongForALineIsCutAndLosesNothing) {
  EXPECT_EQ(wrapped(Westring(L'x', 200), 80),
            (std::vector<std::wstring>{std::wstring(72, L'x'), std::wstring(72, L'x'),
                                       std::wstring(56, L'x')}));
}

TEST(AlertLines, ALeadingSpaceDoesNotMakeAnEmptyLine) {
  EXPECT_EQ(wrapped(L" " + Westring(L'x', 80), 80),
            (std::vector<std::wstring>{L" " + std::wstring(71, L'x'), std::wstring(9, L'x')}));
}

TEST(AlertLines, ThereAreTenAtMost) {
  EXPECT_EQ(wrapped(Westring(L'x', 2000), 80).size(), 10U);
}
