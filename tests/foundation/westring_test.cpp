#include "foundation/westring.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>

#include "support/exact_text.h"

namespace {
constexpr wchar_t WideTwenty[] = L"12345678901234567890";
constexpr wchar_t WideTwentyOne[] = L"123456789012345678901";
}  // namespace

TEST(Westring, TwentyCharactersStayInline) {
  EXPECT_TRUE(Westring(WideTwenty).isInline());
  EXPECT_EQ(Westring(WideTwenty).capacity(), 21);
}

TEST(Westring, ACopyTakesExactlyWhatItNeeds) {
  Westring text(WideTwentyOne);
  EXPECT_EQ(text.capacity(), 22);
  EXPECT_EQ(Westring(text).capacity(), 22);
  EXPECT_EQ(Westring::withRoom(21).capacity(), 22);
  EXPECT_TRUE(Westring::withRoom(-1).isInline());
}

TEST(Westring, AppendingUpTo21CharactersGrowsByAQuarter) {
  Westring text(WideTwenty);
  text += L'1';
  EXPECT_EQ(text.capacity(), 27);
  EXPECT_EQ(exact(text), WideTwentyOne);
  Westring appended(WideTwenty);
  appended += Westring(L"abcd");
  EXPECT_EQ(appended.capacity(), 24 + 6 + 1);
  EXPECT_EQ(exact(appended), std::wstring(WideTwenty) + L"abcd");
}

TEST(Westring, AssigningTakesExactlyOneMoreThanTheText) {
  Westring text;
  text = WideTwentyOne;
  EXPECT_EQ(text.capacity(), 22);
  text = L"short";
  EXPECT_EQ(text.capacity(), 22);
  const wchar_t* none = nullptr;
  text = none;
  EXPECT_EQ(exact(text), L"");
  EXPECT_EQ(text.capacity(), 22);
}

TEST(Westring, ConcatenationTakesExactlyTheSum) {
  Westring left(L"1234567890");
  Westring right(L"12345678901");
  EXPECT_EQ((left + right).capacity(), 22);
  EXPECT_EQ((left + L"12345678901").capacity(), 22);
  EXPECT_EQ((L"1234567890" + right).capacity(), 22);
  EXPECT_EQ(exact(L"1234567890" + right), L"123456789012345678901");
}

TEST(Westring, IsMadeOfUtf8ACodePageOrAsciiBytes) {
  EXPECT_EQ(exact(Westring("\xC3\xA4")), L"\u00E4");
  EXPECT_EQ(exact(Westring("\x84", 850)), L"\u00E4");
  const char* none = nullptr;
  EXPECT_EQ(exact(Westring(none)), L"");
  EXPECT_EQ(exact(Westring(none, 850)), L"");
  EXPECT_EQ(exact(Westring(L'x', 3)), L"xxx");
  EXPECT_EQ(exact(Westring(L'x', -3)), L"");
  Westring fromBytes(Estring("a\xE4"));
  EXPECT_EQ(fromBytes[0], L'a');
  EXPECT_EQ(fromBytes[1], static_cast<wchar_t>(static_cast<signed char>(0xE4)));
  EXPECT_EQ(fromBytes.length(), 2);
}

TEST(Westring, ACharAppendedIsSignExtended) {
  Westring text;
  text += 'a';
  text += static_cast<char>(0x80);
  EXPECT_EQ(text[0], L'a');
  EXPECT_EQ(text[1], -128);
}

TEST(Westring, AnIndexBeyondTheBufferIsItsLastCell) {
  Westring text(L"abc");
  text[21] = L'x';
  text[100000] = L'y';
  EXPECT_EQ(text.data()[20], L'y');
  EXPECT_EQ(text[0], L'a');
}

TEST(Westring, EqualityIgnoresCase) {
  EXPECT_TRUE(Westring(L"\u00C4b") == L"\u00E4B");
  EXPECT_TRUE(Westring(L"a") == Westring(L"A"));
  EXPECT_TRUE(Westring(L"a") != L"b");
  EXPECT_TRUE(Westring(L"a") != Westring(L"b"));
}

TEST(Westring, FindGivesTheIndexOrMinusOne) {
  Westring text(L"abcabc");
  EXPECT_EQ(text.find(L'b'), 1);
  EXPECT_EQ(text.rfind(L'b'), 4);
  EXPECT_EQ(text.find(L'x'), -1);
  EXPECT_EQ(text.rfind(L'x'), -1);
  EXPECT_EQ(text.find(L'\0'), -1);
  EXPECT_EQ(text.rfind(L'\0'), -1);
  EXPECT_EQ(text.find(Westring(L"bc")), 1);
  EXPECT_EQ(text.find(Westring(L"bc"), 2), 4);
  EXPECT_EQ(text.find(Westring(L"bc"), 5), -1);
  EXPECT_EQ(text.find(Westring(L"bc"), 7), -1);
  EXPECT_EQ(text.find(Westring(L"ab"), -4), 0);
  EXPECT_EQ(text.find(Westring(L"BC")), -1);
  EXPECT_EQ(text.findNoCase(L"CA"), 2);
  EXPECT_EQ(text.findNoCase(L"CC"), -1);
}

TEST(Westring, FindNthCountsFromOne) {
  Westring text(L"/a/b/c");
  EXPECT_EQ(text.findNth(L'/', 1), 0);
  EXPECT_EQ(text.findNth(L'/', 3), 4);
  EXPECT_EQ(text.findNth(L'/', 4), -1);
  EXPECT_EQ(text.findNth(L'/', 0), -1);
  EXPECT_EQ(text.findNth(L'/', -1), -1);
}

TEST(Westring, FindUnquotedSkipsWhatStandsInQuotes) {
  EXPECT_EQ(Westring(L"\"a b\" c").findUnquoted(L' '), 5);
  EXPECT_EQ(Westring(L"\"a b").findUnquoted(L' '), -1);
  EXPECT_EQ(Westring(L"a\"b\"").findUnquoted(L'"'), -1);
  EXPECT_EQ(Westring(L"").findUnquoted(L' '), -1);
}

TEST(Westring, PiecesAreClampedToTheText) {
  Westring text(L"hello");
  EXPECT_EQ(exact(left(text, 2)), L"he");
  EXPECT_EQ(exact(left(text, -1)), L"");
  EXPECT_EQ(exact(right(text, 2)), L"lo");
  EXPECT_EQ(exact(right(text, -4)), L"");
  EXPECT_EQ(exact(mid(text, 1, 3)), L"ell");
  EXPECT_EQ(exact(mid(text, 9, 0)), L"");
  EXPECT_EQ(exact(mid(text, -1, 0)), L"hello");
  EXPECT_EQ(exact(mid(text, 1, -1)), L"");
  EXPECT_EQ(exact(dropRight(text, 2)), L"hel");
  EXPECT_EQ(exact(dropRight(text, 6)), L"");
  EXPECT_EQ(exact(padLeft(text, 7)), L"  hello");
  EXPECT_EQ(exact(padLeft(text, 2)), L"lo");
  EXPECT_EQ(exact(padLeft(text, -7)), L"");
  EXPECT_EQ(exact(padRight(text, 7, L'\u2500')), L"hello\u2500\u2500");
  EXPECT_EQ(exact(padRight(text, 2)), L"he");
}

TEST(Westring, TrimsAndCasesFollowTheLocale) {
  EXPECT_EQ(exact(trim(Westring(L" \u2003a\u2003 "))), L"a");
  EXPECT_EQ(exact(ltrim(Westring(L" a "))), L"a ");
  EXPECT_EQ(exact(rtrim(Westring(L" a "))), L" a");
  EXPECT_EQ(exact(lower(Westring(L"\u00C4B"))), L"\u00E4b");
  EXPECT_EQ(exact(upper(Westring(L"\u00E4b"))), L"\u00C4B");
  Westring rawByte(static_cast<wchar_t>(-128), 1);
  EXPECT_EQ(exact(upper(rawByte)), exact(rawByte));
  EXPECT_EQ(exact(trim(rawByte)), exact(rawByte));
}

TEST(Westring, ReplaceFirstChangesOneOccurrence) {
  Westring text(L"a-b-c");
  EXPECT_TRUE(text.replaceFirst(L"-", L"+++"));
  EXPECT_EQ(exact(text), L"a+++b-c");
  EXPECT_FALSE(text.replaceFirst(L"x", L"y"));
  EXPECT_FALSE(text.replaceFirst(L"", L"y"));
  EXPECT_TRUE(text.replaceFirst(text, L"whole"));
  EXPECT_EQ(exact(text), L"whole");
}

TEST(Westring, ReplaceAllResumesBehindTheInsertedText) {
  Westring text(L"aaa");
  EXPECT_TRUE(text.replaceAll(L"a", L"aa"));
  EXPECT_EQ(exact(text), L"aaaaaa");
  EXPECT_TRUE(text.replaceAll(L"aa", L""));
  EXPECT_EQ(exact(text), L"");
  EXPECT_FALSE(text.replaceAll(L"a", L"b"));
  text = L"x";
  EXPECT_FALSE(text.replaceAll(L"", L"b"));
  EXPECT_TRUE(text.replaceAll(text, text));
  EXPECT_EQ(exact(text), L"x");
}

TEST(Westring, ReplaceAllOfAMillionCharactersIsLinear) {
  constexpr int Many = 1000000;
  Westring text(L'a', Many);
  EXPECT_TRUE(text.replaceAll(L"a", L"bc"));
  EXPECT_EQ(text.length(), 2 * Many);
}

TEST(Westring, AStringMayTakeOrAppendAPartOfItself) {
  for (int length : {5, 19, 20, 21, 300}) {
    std::wstring whole;
    for (int i = 0; i < length; ++i) whole += static_cast<wchar_t>(L'a' + i % 26);
    Westring text(whole.c_str());
    text = text.data() + 3;
    EXPECT_EQ(exact(text), whole.substr(3));
    text = whole.c_str();
    text += text;
    EXPECT_EQ(exact(text), whole + whole);
    text = whole.c_str();
    text += text.data() + 2;
    EXPECT_EQ(exact(text), whole + whole.substr(2));
    Westring& same = text;
    text = same;
    text = static_cast<Westring&&>(same);
    EXPECT_EQ(exact(text), whole + whole.substr(2));
  }
}

TEST(Westring, AMoveTakesTheHeapBufferAndLeavesAnEmptyText) {
  Westring source(WideTwentyOne);
  const wchar_t* buffer = source.data();
  Westring target(L"something");
  target = static_cast<Westring&&>(source);
  EXPECT_EQ(target.data(), buffer);
  EXPECT_EQ(exact(source), L"");
  EXPECT_EQ(source.capacity(), 21);
}

TEST(Westring, ACapacityBeyondTheRangeIsOutOfMemory) {
  EXPECT_THROW(Westring(L'x', INT_MAX), std::bad_alloc);
  EXPECT_THROW(padRight(Westring(L"x"), INT_MAX), std::bad_alloc);
}
