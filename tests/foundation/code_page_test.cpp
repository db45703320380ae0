#include "foundation/code_page.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {
constexpr int MissingPage = 99999;
}

TEST(CodePage, TextGoesThereAndBack) {
  EXPECT_EQ(exact(toCodePage(Westring(L"\u00E4\u2500"), 850)), "\x84\xC4");
  EXPECT_EQ(exact(fromCodePage("\x84\xC4", 850)), L"\u00E4\u2500");
  std::string all;
  for (int i = 1; i < 256; ++i) all += static_cast<char>(i);
  Westring wide;
  EXPECT_TRUE(fromCodePage(all.c_str(), 850, wide));
  EXPECT_EQ(wide.length(), 255);
  EXPECT_EQ(exact(toCodePage(wide, 850)), all);
}

TEST(CodePage, AByteWithoutCharacterGivesTheHouseInItsPlace) {
  Westring text;
  EXPECT_FALSE(fromCodePage("a\x81z\x81", 1252, text));
  EXPECT_EQ(exact(text), L"a\u2302z\u2302");
  EXPECT_EQ(text.length(), 4);
}

TEST(CodePage, AnUnmappableCharacterEndsTheBytes) {
  EXPECT_EQ(exact(toCodePage(Westring(L"ab\u4E00cd"), 850)), "ab");
  EXPECT_EQ(exact(toCodePage(Westring(static_cast<wchar_t>(-1), 3), 850)), "");
}

TEST(CodePage, AMissingPageGivesNoBytesAndPlainCharacters) {
  EXPECT_EQ(exact(toCodePage(Westring(L"abc"), MissingPage)), "");
  Westring text;
  EXPECT_FALSE(fromCodePage(" az~\x7F\xC4\t\x1F", MissingPage, text));
  EXPECT_EQ(exact(text), L" az~\u2302\u2302\u2302\u2302");
}

TEST(CodePage, AMultiByteTextEndsBehindItsCharacters) {
  Westring text;
  EXPECT_TRUE(
      fromCodePage("\x82\xA0"
                   "a",
                   932, text));
  EXPECT_EQ(exact(text), L"\u3042a");
  EXPECT_FALSE(fromCodePage("a\x82", 932, text));
  EXPECT_EQ(exact(text), L"a\u2302");
}

TEST(CodePage, APageThatWaitsForAccentsLosesNoLetter) {
  EXPECT_EQ(exact(fromCodePage("abca", 1258)), L"abca");
  EXPECT_EQ(exact(fromCodePage("a\xD2\xFE", 1258)), L"\u1EA3\u20AB");
}

TEST(CodePage, TheResultMayBeTheTextItself) {
  Westring text(L"old");
  EXPECT_TRUE(fromCodePage("", 850, text));
  EXPECT_EQ(exact(text), L"");
}

TEST(CodePage, TheDefaultIs850WhileNoneIsSet) {
  EXPECT_EQ(defaultCodePage(), 850);
  setDefaultCodePage(437);
  EXPECT_EQ(defaultCodePage(), 437);
  EXPECT_EQ(exact(fromCodePage("\x9B")), L"\u00A2");
  setDefaultCodePage(0);
  EXPECT_EQ(defaultCodePage(), 850);
  EXPECT_EQ(exact(fromCodePage("\x9B")), L"\u00F8");
}

TEST(CodePageTable, MapsByteForByte) {
  CodePageTable table(850, 858);
  EXPECT_EQ(table[0], 0);
  EXPECT_EQ(table['a'], 'a');
  EXPECT_EQ(table[0x84], 0x84);
  CodePageTable latin(28591, 28591);
  EXPECT_EQ(latin[0xE4], 0xE4);
}

TEST(CodePageTable, LeadsFromTheFirstPageToTheSecond) {
  // Both pages hold the same 256 characters in another order.
  constexpr int Ebcdic = 500;
  constexpr int Latin1 = 819;
  CodePageTable table(Ebcdic, Latin1);
  EXPECT_EQ(table[0], 0);
  EXPECT_EQ(table[0x81], 'a');
  EXPECT_EQ(table[0xF9], '9');
  EXPECT_EQ(table[0xFF], 0x9F);
  CodePageTable back(Latin1, Ebcdic);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(back[table[i]], i);
  Estring text("\xC8\x85\x93\x93\x96");
  translateInPlace(text, Ebcdic, Latin1);
  EXPECT_EQ(exact(text), "Hello");
}

TEST(CodePageTable, AMissingPageLeavesEveryByteAsItIs) {
  CodePageTable table(MissingPage, 850);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(table[i], i);
}

TEST(CodePageTable, TranslatesATextInPlace) {
  Estring text("a\x84z");
  translateInPlace(text, 850, 437);
  EXPECT_EQ(exact(text), "a\x84z");
  // CP1251 and CP1252 agree up to 0x7F; the first Cyrillic letter has no place, so the rest stays.
  Estring unmappable("a\x80");
  translateInPlace(unmappable, 1251, 1252);
  EXPECT_EQ(unmappable[0], 'a');
  EXPECT_EQ(unmappable.length(), 2);
  EXPECT_EQ(exact(CodePageTable(1252, 850).map("abc")), "abc");
}
