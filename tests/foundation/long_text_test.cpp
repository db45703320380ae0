// Texts of many pieces cost what their characters cost. The strings measure themselves with wcslen,
// so what it looks at in all is the work done.

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "foundation/string_collections.h"
#include "support/exact_text.h"

namespace {

size_t measured = 0;  // characters that wcslen walked over

constexpr int LineCount = 400;
constexpr int LineLength = 100;
constexpr size_t Characters = size_t{LineCount} * (LineLength + 1) - 1;
constexpr size_t FewLooks = 4;  // at each character

class LongTexts : public testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < LineCount; ++i) lines_.add(new Westring(L'a' + i % 26, LineLength));
    measured = 0;
  }

  FnStringStore lines_;
};

}  // namespace

// Takes the place of the system's in this program.
extern "C" size_t wcslen(const wchar_t* text) noexcept {
  size_t length = 0;
  while (text[length] != 0) ++length;
  measured += length;
  return length;
}

TEST_F(LongTexts, TheCountSeesAppendingInALoop) {
  Westring text;
  for (int i = 0; i < LineLength; ++i) text += L'a';
  EXPECT_GE(measured, size_t{LineLength} * (LineLength - 1) / 2);
}

TEST_F(LongTexts, JoiningLooksAtEachCharacterAFewTimes) {
  const Westring text = joinLines(lines_);
  EXPECT_LE(measured, FewLooks * Characters);
  EXPECT_EQ(static_cast<size_t>(text.length()), Characters);
  EXPECT_EQ(text[LineLength], L'\n');
  EXPECT_EQ(text[LineLength + 1], L'b');
}

TEST_F(LongTexts, SplittingLooksAtEachCharacterAFewTimes) {
  const Westring text = joinLines(lines_);
  FnStringStore back;
  measured = 0;
  splitLines(text, back);
  EXPECT_LE(measured, FewLooks * Characters);
  ASSERT_EQ(back.count(), LineCount);
  for (int i = 0; i < LineCount; ++i) EXPECT_EQ(exact(*back.peek(i)), exact(*lines_.peek(i)));
}

TEST_F(LongTexts, ALineWithoutAnEndIsSplitAtOnce) {
  const Westring text(L'x', static_cast<int>(Characters));
  FnStringStore back;
  measured = 0;
  splitLines(text, back);
  EXPECT_LE(measured, FewLooks * Characters);
  ASSERT_EQ(back.count(), 1);
  EXPECT_EQ(back.peek(0)->capacity(), static_cast<int>(Characters) + 1);
}

TEST(JoinLines, GivesBackWhatWasSplit) {
  for (const wchar_t* text :
       {L"one", L"one\ntwo", L"\n", L"\n\n", L"one\n", L"\none", L"a\r\nb", L""}) {
    FnStringStore lines;
    splitLines(Westring(text), lines);
    EXPECT_EQ(exact(joinLines(lines)), text);
  }
  EXPECT_TRUE(joinLines(FnStringStore()).empty());
}
