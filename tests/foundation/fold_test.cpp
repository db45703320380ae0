#include "foundation/fold.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <random>

#include "foundation/string_collections.h"
#include "foundation/wild_match.h"
#include "support/turkish_locale.h"

namespace {
int sign(int value) {
  return (value > 0) - (value < 0);
}

// A compare that is an order gives opposite answers both ways, and never runs in a circle.
void expectOrdered(const std::vector<std::wstring>& ascending) {
  for (size_t i = 0; i < ascending.size(); ++i) {
    for (size_t j = 0; j < ascending.size(); ++j) {
      int expected = (i > j) - (i < j);
      EXPECT_EQ(sign(compareNames(ascending[i].c_str(), ascending[j].c_str())), expected)
          << i << ' ' << j;
    }
  }
}
}  // namespace

TEST(FoldTable, Has953PairsInTheirOrder) {
  EXPECT_EQ(FoldPairCount, 953);
  EXPECT_EQ(foldPairs[0].upper, 0x41);
  EXPECT_EQ(foldPairs[0].lower, 0x61);
  EXPECT_EQ(foldPairs[26].upper, 0x39C);
  EXPECT_EQ(foldPairs[26].lower, 0xB5);
  EXPECT_EQ(foldPairs[FoldPairCount - 1].upper, 0xFF3A);
  EXPECT_EQ(foldPairs[FoldPairCount - 1].lower, 0xFF5A);
  int high = 0;
  for (int i = 0; i < FoldPairCount; ++i) {
    high += foldPairs[i].lower >= FoldLimit;
    EXPECT_FALSE(foldPairs[i].upper >= 0x10A0 && foldPairs[i].upper < 0x1100);
    if (i > 0) {
      EXPECT_LT(foldPairs[i - 1].lower, foldPairs[i].lower);
    }
  }
  EXPECT_EQ(high, 106);
}

TEST(FoldChar, MapsToTheUpperCaseLetter) {
  const std::pair<int, int> rows[] = {
      {'a', 'A'},       {'A', 'A'},       {'_', '_'},       {0xB5, 0x39C},    {0xFF, 0x178},
      {0xE4, 0xC4},     {0xDF, 0xDF},     {0x131, 'I'},     {0x1F80, 0x1F88}, {0x450, 0x400},
      {0x1D79, 0xA77D}, {0x2D00, 0x2D00}, {0x10D0, 0x10D0}, {0x526, 0x526},   {0x527, 0x527}};
  for (const auto& [character, folded] : rows) EXPECT_EQ(foldChar(character), folded) << character;
}

TEST(FoldChar, LeavesHighAndNegativeCharactersAlone) {
  for (int character : {0x8000, 0xA641, 0xFF5A, 0x10428, 0x10FFFF, -1, -128, -2147483647}) {
    EXPECT_EQ(foldChar(character), character);
  }
}

TEST(FoldString, FoldsInPlace) {
  wchar_t text[] = L"a\u00E4\uFF5Az";
  foldString(text);
  EXPECT_STREQ(text, L"A\u00C4\uFF5AZ");
}

TEST(LowerCase, KnowsMoreThanAscii) {
  wchar_t text[] = L"A\u00C4Z";
  lowerString(text);
  EXPECT_STREQ(text, L"a\u00E4z");
  EXPECT_EQ(lowerChar(L'Q'), L'q');
  EXPECT_EQ(lowerChar(0xC4), 0xE4);
  EXPECT_EQ(lowerChar(-128), -128);
}

TEST(LowerAscii, KnowsTheLettersOfAsciiAlone) {
  for (int i = 0; i < 256; ++i) {
    EXPECT_EQ(lowerAscii(i), i >= 'A' && i <= 'Z' ? i + 32 : i);
    EXPECT_EQ(upperAscii(i), i >= 'a' && i <= 'z' ? i - 32 : i);
  }
  EXPECT_EQ(lowerAscii(L'\u0130'), L'\u0130');
  EXPECT_EQ(upperAscii('\xE4'), '\xE4');
}

TEST(SameWord, ComparesByAscii) {
  EXPECT_TRUE(sameWord("[Archiver]", "[ARCHIVER]"));
  EXPECT_TRUE(sameWord(L"Yes", L"yES"));
  EXPECT_FALSE(sameWord(L"ye\u017F", L"YES"));
  EXPECT_FALSE(sameWord("Yes", "Yess"));
  EXPECT_FALSE(sameWord("\xC4", "\xE4"));
  EXPECT_LT(compareWords("aB", "AC"), 0);
  EXPECT_GT(compareWords("\xC4", "z"), 0);
  EXPECT_TRUE(beginsWithWord("[ARCHIVER:X", "[Archiver"));
  EXPECT_TRUE(beginsWithWord("", ""));
  EXPECT_FALSE(beginsWithWord("[Arch", "[Archiver"));
}

TEST(Words, AreTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  EXPECT_EQ(lowerAscii('I'), 'i');
  EXPECT_EQ(upperAscii(L'i'), L'I');
  EXPECT_TRUE(Estring("info") == "INFO");
  EXPECT_TRUE(wildMatch("vi[a-z]", "VII"));
  EXPECT_TRUE(wildMatch("dir", "DIR"));
  StringCollection words;
  EXPECT_EQ(words.addCopy("insert"), 1);
  EXPECT_EQ(words.addCopy("INSERT"), 0);
}

TEST(FileNames, FoldAlikeInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  EXPECT_EQ(foldChar(L'i'), L'I');
  EXPECT_EQ(compareNoCase(L"index", L"INDEX"), 0);
  EXPECT_TRUE(wildMatch(L"*.ini", L"TD.INI"));
  wchar_t name[] = L"I\u00C4.INI";
  lowerString(name);
  EXPECT_STREQ(name, L"i\u00E4.ini");
  FnStringCollection names;
  EXPECT_EQ(names.addCopy(L"info"), 1);
  EXPECT_EQ(names.addCopy(L"INFO"), 0);
}

TEST(CompareNoCase, SubtractsTheFirstFoldedDifference) {
  EXPECT_EQ(compareNoCase(L"aBc", L"AbC"), 0);
  EXPECT_EQ(compareNoCase(L"a", L"d"), 'A' - 'D');
  EXPECT_EQ(compareNoCase(L"ab", L"a"), 'B');
  EXPECT_EQ(compareNoCase(L"", L"a"), -'A');
  EXPECT_EQ(compareNoCase(L"\u0141", L"A"), 0x141 - 'A');
  EXPECT_LT(compareNoCase(L"a", Westring(static_cast<wchar_t>(0x7FFFFFFF), 1).data()), 0);
  wchar_t lowest[] = {static_cast<wchar_t>(-0x7FFFFFFF), 0};
  wchar_t highest[] = {0x7FFFFFFF, 0};
  EXPECT_LT(compareNoCase(lowest, highest), 0);
}

TEST(CompareNoCaseN, LooksAtTheLowBytesOfTheDifference) {
  EXPECT_EQ(compareNoCaseN(L"abX", L"ABy", 2), 0);
  EXPECT_EQ(compareNoCaseN(L"abX", L"ABy", 3), 'X' - 'Y');
  EXPECT_EQ(compareNoCaseN(L"ab", L"ABc", 3), -'C');
  EXPECT_EQ(compareNoCaseN(L"ab", L"AB", 9), 0);
  EXPECT_EQ(compareNoCaseN(L"x", L"y", 0), 0);
  EXPECT_EQ(compareNoCaseN(L"\u0141", L"A", 1), 0);
}

TEST(CompareNames, AnUnderscoreSortsBeforeEveryPrintableCharacter) {
  EXPECT_LT(compareNames(L"a_b", L"a b"), 0);
  EXPECT_EQ(compareNames(L"_", L"A"), 1 - 'A');
  EXPECT_EQ(compareNames(L"b", L"A"), 'B' - 'A');
  EXPECT_LT(compareNames(L"a", L"a_"), 0);
  expectOrdered({L"", L"a", L"a_", L"a_z", L"a b", L"a!", L"a1", L"aa", L"B", L"c"});
}

TEST(CompareNames, ALowByteOfZeroIsNotTheEnd) {
  expectOrdered({L"a", L"a\u0100", L"a\u0100b", L"a\u0100c", L"a\u0200d", L"a\u4E00e", L"ab"});
}

TEST(CompareNames, NamesThatDifferNeverCompareEqual) {
  expectOrdered({L"A", L"a", L"\u0141"});
  expectOrdered({L"FOO", L"Foo", L"foo"});
  EXPECT_EQ(compareNames(L"same", L"same"), 0);
  wchar_t rawByte[] = {-127, 0};
  EXPECT_NE(compareNames(rawByte, L"\u0081"), 0);
}

TEST(CompareNames, IsATotalOrderOnAnyCharacters) {
  const wchar_t alphabet[] = {L'a',  L'A',  L'_',   1,    0x100, 0x200,
                              0x15F, 0x45F, 0x4E00, -256, -161,  -1};
  std::mt19937 random(20);
  std::vector<std::wstring> names;
  for (int i = 0; i < 150; ++i) {
    std::wstring name;
    for (unsigned length = random() % 4; length > 0; --length) {
      name += alphabet[random() % std::size(alphabet)];
    }
    names.push_back(name);
  }
  std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
    return compareNames(a.c_str(), b.c_str()) < 0;
  });
  names.erase(std::unique(names.begin(), names.end()), names.end());
  expectOrdered(names);
}

TEST(CompareNamesPrefix, OrdersAsTheNamesDoWhereverItDiffers) {
  const wchar_t alphabet[] = {L'a', L'B', L'_', L' ', 0x100, 0x4E00, -1, -256};
  std::mt19937 random(21);
  std::vector<std::wstring> names = {L"", L"12345678", L"123456789", L"12345678_"};
  for (int i = 0; i < 200; ++i) {
    std::wstring name;
    for (unsigned length = random() % 11; length > 0; --length) {
      name += alphabet[random() % std::size(alphabet)];
    }
    names.push_back(name);
  }
  for (const std::wstring& a : names) {
    for (const std::wstring& b : names) {
      uint64_t prefixA = compareNamesPrefix(a.c_str());
      uint64_t prefixB = compareNamesPrefix(b.c_str());
      if (prefixA == prefixB) continue;
      ASSERT_EQ(compareNames(a.c_str(), b.c_str()) < 0, prefixA < prefixB);
    }
  }
}

TEST(Fold, EachSmallLetterIsTheUsualOneOfItsCapital) {
  const struct {
    wchar_t capital;
    wchar_t small;
  } rows[] = {{L'A', L'a'},       {L'I', L'i'},     {L'S', L's'},     {0x00C4, 0x00E4},
              {0x0178, 0x00FF},   {0x039C, 0x03BC}, {0x03A3, 0x03C3}, {0x0399, 0x03B9},
              {0x03A6, 0x03C6},   {0x0416, 0x0436}, {0x01C4, 0x01C6}, {0x1E60, 0x1E61},
              {L'a', L'a'},       {L'7', L'7'},     {0x00DF, 0x00DF}, {0xFF21, 0xFF21},
              {0x1F600, 0x1F600}, {-0x3D, -0x3D},   {0x00B5, 0x00B5}};
  for (const auto& row : rows) EXPECT_EQ(unfoldChar(row.capital), row.small) << int{row.capital};
  for (wchar_t c = 0; c < 0x8000; ++c) {
    EXPECT_EQ(unfoldChar(c) == c ? c : foldChar(unfoldChar(c)), c) << int{c};
  }
}
