#include "foundation/estring.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>

#include "foundation/checked_capacity.h"
#include "support/exact_text.h"

namespace {
constexpr char Twenty[] = "12345678901234567890";
constexpr char TwentyOne[] = "123456789012345678901";
}  // namespace

TEST(Estring, TwentyCharactersStayInline) {
  Estring text(Twenty);
  EXPECT_TRUE(text.isInline());
  EXPECT_EQ(text.capacity(), 21);
  EXPECT_EQ(text.length(), 20);
}

TEST(Estring, TwentyOneCharactersTakeTwiceTheirLengthWhenCopied) {
  Estring text(TwentyOne);
  EXPECT_FALSE(text.isInline());
  EXPECT_EQ(text.capacity(), 43);
  Estring copy(text);
  EXPECT_EQ(copy.capacity(), 43);
  EXPECT_NE(copy.data(), text.data());
  EXPECT_EQ(exact(copy), TwentyOne);
}

TEST(Estring, RoomForTwentyOneTakesTwentyTwo) {
  Estring text = Estring::withRoom(21);
  EXPECT_EQ(text.capacity(), 22);
  EXPECT_EQ(text.length(), 0);
  EXPECT_TRUE(Estring::withRoom(20).isInline());
  EXPECT_TRUE(Estring::withRoom(-5).isInline());
}

TEST(Estring, OneMoreCharacterMovesTwentyToTheHeapWithCapacity41) {
  Estring text(Twenty);
  text += '1';
  EXPECT_FALSE(text.isInline());
  EXPECT_EQ(text.capacity(), 41);
  EXPECT_EQ(exact(text), TwentyOne);
}

TEST(Estring, AnAppendedTextDoublesTheSum) {
  Estring text(Twenty);
  text += "abc";
  EXPECT_EQ(text.capacity(), 2 * 23 + 1);
  EXPECT_EQ(exact(text), std::string(Twenty) + "abc");
  Estring fits("abc");
  fits += "12345678901234567";
  EXPECT_EQ(fits.capacity(), 21);
}

TEST(Estring, AssigningALongerTextTakesThirteenTenths) {
  Estring text;
  text = TwentyOne;
  EXPECT_EQ(text.capacity(), 21 * 13 / 10 + 1);
  text = "short";
  EXPECT_EQ(text.capacity(), 28);
  EXPECT_EQ(exact(text), "short");
}

TEST(Estring, ConcatenationTakesRoomForOneMoreWithACString) {
  Estring left("1234567890");
  Estring right("12345678901");
  EXPECT_EQ((left + right).capacity(), 22);
  EXPECT_EQ((left + "12345678901").capacity(), 23);
  EXPECT_EQ(("1234567890" + right).capacity(), 23);
  EXPECT_EQ(exact(left + right), "123456789012345678901");
}

TEST(Estring, NullTextsAreEmptyAndChangeNothingWhenAppended) {
  const char* none = nullptr;
  Estring text(none);
  EXPECT_EQ(exact(text), "");
  Estring long21(TwentyOne);
  long21 += none;
  EXPECT_EQ(exact(long21), TwentyOne);
  long21 = none;
  EXPECT_EQ(exact(long21), "");
  EXPECT_EQ(long21.capacity(), 43);
  EXPECT_EQ(exact(Estring("a") + none), "a");
}

TEST(Estring, IsMadeOfANumberOrARepeatedCharacter) {
  EXPECT_EQ(exact(Estring(0L)), "0");
  EXPECT_EQ(exact(Estring(LONG_MIN)), "-9223372036854775808");
  EXPECT_TRUE(Estring(LONG_MIN).isInline());
  EXPECT_EQ(exact(Estring('x', 3)), "xxx");
  EXPECT_EQ(exact(Estring('x', 0)), "");
  EXPECT_EQ(exact(Estring('x', -3)), "");
  EXPECT_EQ(Estring('x', 30).capacity(), 31);
}

TEST(Estring, AFixedWidthFieldIsTerminatedAndRightTrimmed) {
  EXPECT_EQ(exact(Estring::fromField("  ab  cd", 6)), "  ab");
  EXPECT_EQ(exact(Estring::fromField("abcd", 4)), "abcd");
  EXPECT_EQ(exact(Estring::fromField("ab\0cd ", 6)), "ab");
  EXPECT_EQ(exact(Estring::fromField("abcd", -1)), "");
}

TEST(Estring, FormatKeepsAtMost1023Characters) {
  Estring text;
  text.format("%s-%d", "a", 7);
  EXPECT_EQ(exact(text), "a-7");
  std::string longText(2000, 'x');
  text.format("%s", longText.c_str());
  EXPECT_EQ(text.length(), 1023);
  text.format("<%s>", text.data());
  EXPECT_EQ(exact(text), "<" + std::string(1022, 'x'));
}

TEST(Estring, AnIndexBeyondTheBufferIsItsLastCell) {
  Estring text("abc");
  text[21] = 'x';
  text[1000000] = 'y';
  EXPECT_EQ(text.data()[20], 'y');
  EXPECT_EQ(text[1], 'b');
  text.data()[20] = 0;
  EXPECT_EQ(static_cast<const Estring&>(text)[50], 0);
}

TEST(Estring, AllComparisonsIgnoreCase) {
  Estring text("Abc");
  EXPECT_TRUE(text == "aBC");
  EXPECT_TRUE(text == Estring("ABC"));
  EXPECT_TRUE(text != "abd");
  EXPECT_TRUE(text < "ABD");
  EXPECT_TRUE(text <= "abc");
  EXPECT_TRUE(text > Estring("ABB"));
  EXPECT_TRUE(text >= Estring("abc"));
  EXPECT_FALSE(text < Estring("aaa"));
}

TEST(Estring, FindGivesTheIndexOrMinusOne) {
  Estring text("a/b/c");
  EXPECT_EQ(text.find('/'), 1);
  EXPECT_EQ(text.rfind('/'), 3);
  EXPECT_EQ(text.find('x'), -1);
  EXPECT_EQ(text.rfind('x'), -1);
  EXPECT_EQ(text.find('\0'), -1);
  EXPECT_EQ(text.rfind('\0'), -1);
}

TEST(Estring, PiecesAreClampedToTheText) {
  Estring text("hello");
  EXPECT_EQ(exact(left(text, 2)), "he");
  EXPECT_EQ(exact(left(text, 9)), "hello");
  EXPECT_EQ(exact(left(text, -1)), "");
  EXPECT_EQ(exact(right(text, 2)), "lo");
  EXPECT_EQ(exact(right(text, 9)), "hello");
  EXPECT_EQ(exact(right(text, -1)), "");
  EXPECT_EQ(exact(mid(text, 1, 3)), "ell");
  EXPECT_EQ(exact(mid(text, 1, 0)), "ello");
  EXPECT_EQ(exact(mid(text, 3, 9)), "lo");
  EXPECT_EQ(exact(mid(text, 3, INT_MAX)), "lo");
  EXPECT_EQ(exact(mid(text, -2, 2)), "he");
  EXPECT_EQ(exact(mid(text, 2, -1)), "");
  EXPECT_EQ(exact(dropRight(text, 2)), "hel");
  EXPECT_EQ(exact(dropRight(text, 6)), "");
  EXPECT_EQ(exact(dropRight(text, -1)), "hello");
}

TEST(Estring, MidBeyondTheEndIsEmpty) {
  EXPECT_EQ(exact(mid(Estring("hello"), 5, 1)), "");
  EXPECT_EQ(exact(mid(Estring("hello"), 99, 0)), "");
}

TEST(Estring, PaddingGivesExactlyTheWidth) {
  Estring text("hello");
  EXPECT_EQ(exact(padLeft(text, 8, '.')), "...hello");
  EXPECT_EQ(exact(padLeft(text, 3, '.')), "llo");
  EXPECT_EQ(exact(padLeft(text, -1, '.')), "");
  EXPECT_EQ(exact(padRight(text, 8)), "hello   ");
  EXPECT_EQ(exact(padRight(text, 3)), "hel");
  EXPECT_EQ(exact(padRight(text, -1)), "");
}

TEST(Estring, TrimsTakeRunsOfSpaces) {
  Estring text(" \t a b \n");
  EXPECT_EQ(exact(ltrim(text)), "a b \n");
  EXPECT_EQ(exact(rtrim(text)), " \t a b");
  EXPECT_EQ(exact(trim(text)), "a b");
  EXPECT_EQ(exact(trim(Estring("  "))), "");
  EXPECT_EQ(exact(trim(Estring("\xC3\xA0"))), "\xC3\xA0");
}

TEST(Estring, TabStopsFallOneColumnBeforeTheMultiples) {
  EXPECT_EQ(exact(expandTabs("\tx", 8)), "       x");
  EXPECT_EQ(exact(expandTabs("1234567\tx", 8)), "1234567x");
  EXPECT_EQ(exact(expandTabs("ab\tc\td", 8)), "ab     c       d");
  EXPECT_EQ(exact(expandTabs("a\tb", 0)), "ab");
  Estring text("\tx");
  text.expandTabs(4);
  EXPECT_EQ(exact(text), "   x");
}

TEST(Estring, SlashesAtTheEndComeAndGoByTheirRules) {
  const std::pair<const char*, const char*> rows[] = {
      {"/", ""},    {"//", "//"},  {"///", "///"}, {"////", "///"}, {"/a/", "/a"}, {"", ""},
      {"a/", "a/"}, {"ab/", "ab"}, {"/a", "/a"},   {"abc/", "abc"}, {"b//", "b//"}};
  for (const auto& [path, expected] : rows) {
    EXPECT_EQ(exact(stripSlash(Estring(path))), expected) << path;
    Estring inPlace(path);
    inPlace.stripSlash();
    EXPECT_EQ(exact(inPlace), expected) << path;
  }
  EXPECT_EQ(exact(addSlash(Estring(""))), "");
  EXPECT_EQ(exact(addSlash(Estring("/"))), "/");
  EXPECT_EQ(exact(addSlash(Estring("/a"))), "/a/");
}

TEST(Estring, AStringMayTakeAPartOfItself) {
  for (int length : {5, 19, 20, 21, 40, 500}) {
    std::string whole;
    for (int i = 0; i < length; ++i) whole += static_cast<char>('a' + i % 26);
    Estring text(whole.c_str());
    text = text.data() + 3;
    EXPECT_EQ(exact(text), whole.substr(3));
    text = text.data();
    EXPECT_EQ(exact(text), whole.substr(3));
  }
}

TEST(Estring, AStringMayBeAppendedToItself) {
  for (int length : {0, 1, 10, 11, 20, 21, 300}) {
    std::string whole(static_cast<size_t>(length), 'x');
    if (length > 0) whole.back() = 'y';
    Estring text(whole.c_str());
    text += text;
    EXPECT_EQ(exact(text), whole + whole);
    Estring tail(whole.c_str());
    tail += tail.data() + length / 2;
    EXPECT_EQ(exact(tail), whole + whole.substr(static_cast<size_t>(length) / 2));
  }
}

TEST(Estring, AssignmentToItselfChangesNothing) {
  Estring text(TwentyOne);
  Estring& same = text;
  text = same;
  EXPECT_EQ(exact(text), TwentyOne);
  text = static_cast<Estring&&>(same);
  EXPECT_EQ(exact(text), TwentyOne);
}

TEST(Estring, AMoveTakesTheHeapBufferAndLeavesAnEmptyText) {
  Estring source(TwentyOne);
  const char* buffer = source.data();
  Estring target(static_cast<Estring&&>(source));
  EXPECT_EQ(target.data(), buffer);
  EXPECT_EQ(exact(source), "");
  EXPECT_TRUE(source.isInline());
  Estring shortText("ab");
  target = static_cast<Estring&&>(shortText);
  EXPECT_EQ(exact(target), "ab");
  EXPECT_EQ(exact(shortText), "");
}

TEST(Estring, ACapacityBeyondTheRangeIsOutOfMemory) {
  EXPECT_EQ(checkedCapacity(INT_MAX), INT_MAX);
  EXPECT_THROW(checkedCapacity(INT_MAX + 1LL), std::bad_alloc);
  EXPECT_THROW(checkedLength(static_cast<size_t>(INT_MAX)), std::bad_alloc);
  EXPECT_THROW(Estring::withRoom(INT_MAX), std::bad_alloc);
  EXPECT_THROW(Estring('x', INT_MAX), std::bad_alloc);
  EXPECT_THROW(padLeft(Estring("x"), INT_MAX), std::bad_alloc);
}
