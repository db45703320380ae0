#include "search/name_filter.h"

#include <gtest/gtest.h>

#include <random>

#include "foundation/utf8.h"

TEST(NameFilter, AnswersAsTheLanguageOfFiltersDoes) {
  const wchar_t* expressions[] = {L"*",      L"*.c",     L"*.C|*.h", L"a?c",        L" *.txt ",
                                  L"",       L"*a*b*",   L"\"a b\"", L"!*.c",       L"*.c & !a*",
                                  L"[a-c]*", L"{x,y}.c", L"*|",      L"caf\u00E9*", L"*.c&%size>5",
                                  L"???",    L"**",      L"k*",      L"a*?c"};
  const char* names[] = {"a.c",
                         "A.C",
                         "b.h",
                         "abc",
                         "x.txt",
                         "a b",
                         "caf\xC3\xA9",
                         "\xFF.c",
                         "xaxbx",
                         ("\xE2\x84\xAA"
                          "elvin"),
                         "k",
                         "",
                         "a.c.c",
                         "axc"};
  for (const wchar_t* expression : expressions) {
    const NameFilter filter(expression);
    for (const char* name : names) {
      EXPECT_EQ(filter.verdict(name), filterByName(expression, decodeFileName(name).data()))
          << expression << " on " << name;
    }
  }
}

TEST(NameFilter, RandomMasksAnswerAsTheLanguageOfFiltersDoes) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto text = [&random](const std::string& letters, size_t most) {
    std::string result(random() % most, ' ');
    for (char& each : result) each = letters[random() % letters.size()];
    return result;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string mask = text("aB.*?|", 8);
    const std::string name = text("AbB.a", 10);
    const Westring expression(decodeFileName(mask.c_str()));
    ASSERT_EQ(NameFilter(expression).verdict(name.c_str()),
              filterByName(expression.data(), decodeFileName(name.c_str()).data()))
        << mask << " on " << name;
  }
}

TEST(NameFilter, PredicatesAreLeftForWhatIsKnownLater) {
  const NameFilter filter(L"*.c & %size>5");
  EXPECT_EQ(filter.verdict("a.h"), NameVerdict::No);
  EXPECT_EQ(filter.verdict("a.c"), NameVerdict::Depends);
  const EntryPtr item = blankEntry(L"a.c");
  EXPECT_FALSE(filter.matches(item.get()));
  item->size = 6;
  EXPECT_TRUE(filter.matches(item.get()));
}
