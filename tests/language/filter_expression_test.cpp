#include "language/filter_expression.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "foundation/dos_time.h"
#include "foundation/locale_settings.h"
#include "foundation/utf8.h"

namespace {

constexpr uint16_t dateWord(int year, int month, int day) {
  return static_cast<uint16_t>((year - 1980) << 9 | month << 5 | day);
}

EntryPtr sized(const wchar_t* name, uint64_t size) {
  EntryPtr item(newEntry(name));
  item->size = size;
  return item;
}

EntryPtr dated(int year, int month, int day) {
  EntryPtr item(newEntry(L"f"));
  item->date = dateWord(year, month, day);
  return item;
}

class DateFormat {
 public:
  DateFormat(DateOrder order, wchar_t separator) : saved_(localeSettings) {
    localeSettings.dateOrder = order;
    localeSettings.dateSeparator = separator;
  }
  ~DateFormat() { localeSettings = saved_; }

 private:
  LocaleSettings saved_;
};

struct NameRow {
  const wchar_t* expression;
  const wchar_t* name;
  bool matches;
};

}  // namespace

TEST(FilterExpression, NamesJoinByOrAndNotAndBrackets) {
  const NameRow rows[] = {
      {L"*.c|*.h", L"main.c", true},
      {L"*.c|*.h", L"main.h", true},
      {L"*.c|*.h", L"main.o", false},
      {L"*.c | *.h", L"MAIN.H", true},
      {L"a*&*b", L"ab", true},
      {L"a*&*b", L"ac", false},
      {L"!*.tmp", L"a.tmp", false},
      {L"!*.tmp", L"a.txt", true},
      {L"! *.tmp", L"a.txt", true},
      {L"!!*.tmp", L"a.tmp", true},
      {L"!(a|b)", L"a", false},
      {L"!(a|b)", L"c", true},
      {L"(a|b)&!b", L"a", true},
      {L"(a|b)&!b", L"b", false},
      // '&' binds closer than '|'
      {L"a|b&c", L"a", true},
      {L"(a|b)&c", L"a", false},
      {L"a&b|c", L"c", true},
      {L"  ( ( a ) )  ", L"a", true},
      {L"((a)|(b))&((b))", L"b", true},
      {L"{one,two}.txt", L"two.txt", true},
  };
  for (const NameRow& row : rows) {
    EXPECT_EQ(matchName(row.expression, row.name), row.matches)
        << toUtf8(row.expression).data() << " on " << toUtf8(row.name).data();
  }
}

TEST(FilterExpression, AQuotedPartMayHoldOperators) {
  EXPECT_TRUE(matchName(L"\"a|b\"", L"a|b"));
  EXPECT_FALSE(matchName(L"\"a|b\"", L"a"));
  EXPECT_TRUE(matchName(L"\"a&b\"|c", L"a&b"));
  EXPECT_TRUE(matchName(L"(\"a)b\")", L"a)b"));
  EXPECT_TRUE(matchName(L"\"!a\"", L"!a"));
  EXPECT_TRUE(matchName(L"\"%size\"", L"%size"));
  EXPECT_TRUE(matchName(L"\"(a\"", L"(a"));
  EXPECT_TRUE(matchName(L"x\"|\"y", L"x|y"));
  EXPECT_TRUE(matchName(L"\"a|b", L"a|b")) << "a missing quote runs to the end";
}

TEST(FilterExpression, BlanksAroundAPatternAreDroppedUnlessQuoted) {
  EXPECT_TRUE(matchName(L"  a  ", L"a"));
  EXPECT_TRUE(matchName(L" a b ", L"a b"));
  EXPECT_TRUE(matchName(L"a   | b", L"a"));
  EXPECT_TRUE(matchName(L"\"a \"", L"a "));
  EXPECT_FALSE(matchName(L"\"a \"", L"a"));
  EXPECT_TRUE(matchName(L"\" a\"", L" a"));
}

TEST(FilterExpression, AnEmptyPatternMatchesOnlyAnEmptyName) {
  EXPECT_TRUE(matchName(L"", L""));
  EXPECT_FALSE(matchName(L"", L"a"));
  EXPECT_TRUE(matchName(L"a|", L""));
  EXPECT_FALSE(matchName(L"a|", L"b"));
  EXPECT_FALSE(matchName(L"()", L"b"));
  EXPECT_TRUE(matchName(L"()", L""));
}

TEST(FilterExpression, AnEmptyOrBlankFilterTextFiltersNothing) {
  EXPECT_TRUE(filtersNothing(L""));
  EXPECT_TRUE(filtersNothing(L"   "));
  EXPECT_TRUE(filtersNothing(L"*"));
  EXPECT_TRUE(filtersNothing(L" * "));
  EXPECT_FALSE(filtersNothing(L"*.c"));
  EXPECT_FALSE(filtersNothing(L"**"));
  EXPECT_FALSE(filtersNothing(L"* *"));
}

TEST(FilterExpression, SizesCompareInEveryUnit) {
  struct Row {
    const wchar_t* expression;
    uint64_t size;
    bool matches;
  };
  const Row rows[] = {
      {L"%size>100k & !*.tmp", 102401, true},
      {L"%size>100k & !*.tmp", 102400, false},
      {L"%size>=100k", 102400, true},
      {L"%size=100k", 102400, true},
      {L"%size=100K", 102400, true},
      {L"%size<2m", 2097151, true},
      {L"%size<2M", 2097152, false},
      {L"%size=1g", 1073741824, true},
      {L"%size=1G", 1073741824, true},
      {L"%SIZE = 7", 7, true},
      {L"%size!=7", 7, false},
      {L"%size != 7", 8, true},
      {L"%size<=7", 7, true},
      {L"%size<=7", 8, false},
      {L"%size>=7", 6, false},
      {L"%size==7", 7, true},
      {L"%size?=7", 7, true},  // a second '=' makes a hit of an equal value
      {L"%size?=7", 8, false},
      {L"%size?7", 7, false},
      {L"%size!7", 8, false},  // '!' without '='
      {L"%size", 0, false},
      {L"%size>", 1, true},       // no value is 0
      {L"%size>10kb", 11, true},  // only the last letter is a unit
      {L"%size=x", 0, true},
      {L"(%size>5)|none", 6, true},
      {L"!%size>5", 6, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(evaluateFilter(row.expression, sized(L"f", row.size).get()), row.matches)
        << toUtf8(row.expression).data() << " on " << row.size;
  }
  EXPECT_FALSE(evaluateFilter(L"%size>100k & !*.tmp", sized(L"f.tmp", 1 << 20).get()));
}

TEST(FilterExpression, HugeSizesSaturateInsteadOfOverflowing) {
  const uint64_t largest = std::numeric_limits<uint64_t>::max();
  EXPECT_TRUE(evaluateFilter(L"%size=9999999999g", sized(L"f", largest).get()));
  EXPECT_FALSE(evaluateFilter(L"%size>99999999999999999999999g", sized(L"f", largest).get()));
  EXPECT_TRUE(evaluateFilter(L"%size<99999999999999999999999g", sized(L"f", 1).get()));
  EXPECT_TRUE(evaluateFilter(L"%size<8589934592g", sized(L"f", uint64_t{1} << 62).get()));
  EXPECT_TRUE(evaluateFilter(L"%size>4g", sized(L"f", (uint64_t{4} << 30) + 1).get()));
}

TEST(FilterExpression, DatesAreReadInTheOrderOfTheLocale) {
  {
    DateFormat format(DateOrder::YearMonthDay, L'-');
    EXPECT_TRUE(evaluateFilter(L"%date=2024-03-05", dated(2024, 3, 5).get()));
    EXPECT_TRUE(evaluateFilter(L"%date>2024-03-04", dated(2024, 3, 5).get()));
    EXPECT_FALSE(evaluateFilter(L"%date<2024-03-05", dated(2024, 3, 5).get()));
    EXPECT_TRUE(evaluateFilter(L"%date != 2024-3-6 & f", dated(2024, 3, 5).get()));
  }
  {
    DateFormat format(DateOrder::MonthDayYear, L'/');
    EXPECT_TRUE(evaluateFilter(L"%date=03/05/2024", dated(2024, 3, 5).get()));
    EXPECT_TRUE(evaluateFilter(L"%date<=3/5/24", dated(2024, 3, 5).get()));
  }
  {
    DateFormat format(DateOrder::DayMonthYear, L'.');
    EXPECT_TRUE(evaluateFilter(L"%date=05.03.2024", dated(2024, 3, 5).get()));
    EXPECT_FALSE(evaluateFilter(L"%date=03.05.2024", dated(2024, 3, 5).get()));
  }
}

TEST(FilterExpression, TwoDigitYearsBelow71LieInThisCentury) {
  DateFormat format(DateOrder::YearMonthDay, L'-');
  EXPECT_TRUE(evaluateFilter(L"%date=70-01-02", dated(2070, 1, 2).get()));
  EXPECT_TRUE(evaluateFilter(L"%date>71-01-02", dated(1980, 1, 2).get()));
  EXPECT_TRUE(evaluateFilter(L"%date=80-01-02", dated(1980, 1, 2).get()));
  EXPECT_TRUE(evaluateFilter(L"%date=99-12-31", dated(1999, 12, 31).get()));
  EXPECT_TRUE(evaluateFilter(L"%date>100-01-02", dated(1980, 1, 2).get())) << "taken as it stands";
}

TEST(FilterExpression, ADateOutsideTheCalendarIsCarriedOver) {
  DateFormat format(DateOrder::YearMonthDay, L'-');
  EXPECT_TRUE(evaluateFilter(L"%date=2024-02-32", dated(2024, 3, 3).get()));
  EXPECT_TRUE(evaluateFilter(L"%date=2024-13-01", dated(2025, 1, 1).get()));
  EXPECT_TRUE(evaluateFilter(L"%date=2025-00-00", dated(2024, 11, 30).get())) << "month and day 0";
  EXPECT_TRUE(evaluateFilter(L"%date>2024", dated(2023, 12, 1).get())) << "missing numbers are 0";
  EXPECT_TRUE(matchName(L"%date=1980-00-00", L"x")) << "a blank date word is month 0, day 0";
  EXPECT_FALSE(matchName(L"%date>99999999999999999999-1-1", L"x"));
}

TEST(FilterExpression, AgesCountInSecondsMinutesHoursAndDays) {
  EntryPtr item(newEntry(L"f"));
  item->date = dateWord(2024, 3, 5);
  item->time = 12 << 11;
  const time_t changed = dosToTime({item->date, item->time});
  struct Row {
    const wchar_t* expression;
    int64_t age;
    bool matches;
  };
  const int64_t day = 86400;
  const Row rows[] = {
      {L"%age<7d", 7 * day - 1, true}, {L"%age<7d", 7 * day, false},
      {L"%age<7D", 7 * day - 1, true}, {L"%age=2h", 7200, true},
      {L"%age=2m", 120, true},         {L"%age=90", 90, true},
      {L"%age>90", 91, true},          {L"%age>90", 90, false},
      {L"%age<0", -1, true},           {L"%age<99999999999999999999d", day, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(runFilter(row.expression, item.get(), changed + row.age).matches, row.matches)
        << toUtf8(row.expression).data() << " at " << row.age;
  }
}

TEST(FilterExpression, AttributesAreComparedUnderTheirMask) {
  EntryPtr item(newEntry(L"f"));
  item->attributes = Attribute::Hidden | Attribute::Directory | Attribute::Link;
  EXPECT_TRUE(evaluateFilter(L"%attrib=h", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%attrib=HD", item.get()));
  EXPECT_FALSE(evaluateFilter(L"%attrib=HR", item.get()));
  EXPECT_FALSE(evaluateFilter(L"%attrib=r", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%attrib!=R", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%attrib<HR", item.get()));
  EXPECT_TRUE(evaluateFilter(L"!%attrib=R & %attrib=D", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%attrib=x", item.get())) << "no known letter, no bit";
}

TEST(FilterExpression, OwnersAndGroupsAreComparedByNumber) {
  EntryPtr item(newEntry(L"f"));
  item->owner = 0;
  item->group = 0;
  EXPECT_TRUE(evaluateFilter(L"%owner=root & %group = root", item.get()));
  EXPECT_FALSE(evaluateFilter(L"%owner!=root", item.get()));
  item->owner = 12345;
  EXPECT_TRUE(evaluateFilter(L"%owner!=root", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%owner>root", item.get()));
}

TEST(FilterExpression, AccountNamesMayHoldDashesDotsAndUnderscores) {
  const passwd* webServer = getpwnam("www-data");
  if (webServer == nullptr) GTEST_SKIP() << "this system has no user www-data";
  EntryPtr item(newEntry(L"f"));
  item->owner = webServer->pw_uid;
  item->group = webServer->pw_gid;
  EXPECT_TRUE(evaluateFilter(L"%owner=www-data", item.get()));
  EXPECT_TRUE(evaluateFilter(L"%group=www-data|none", item.get()));
}

TEST(FilterExpression, AnUnknownAccountNeverMatches) {
  EntryPtr item(newEntry(L"f"));
  for (uint32_t id : {0u, 1u, 0xFFFFFFFFu}) {
    item->owner = id;
    item->group = id;
    for (const wchar_t* operation : {L"=", L"!=", L"<", L">", L"<=", L">="}) {
      std::wstring owner = std::wstring(L"%owner") + operation + L"no_such.user";
      std::wstring group = std::wstring(L"%group") + operation + L"no_such.group";
      EXPECT_FALSE(evaluateFilter(owner.c_str(), item.get())) << toUtf8(owner.c_str()).data();
      EXPECT_FALSE(evaluateFilter(group.c_str(), item.get())) << toUtf8(group.c_str()).data();
    }
  }
  EXPECT_FALSE(evaluateFilter(L"%owner=", item.get()));
}

TEST(FilterExpression, OnlyTheNameIsSetInAMatchByName) {
  EXPECT_TRUE(matchName(L"%size=0 & a*", L"abc"));
  EXPECT_FALSE(matchName(L"%size>0 | b*", L"abc"));
  EXPECT_TRUE(matchName(L"%attrib!=D", L"abc"));
  EXPECT_EQ(blankEntry(L"abc")->total, 0);
}

TEST(FilterExpression, AFaultyExpressionStillGivesAResult) {
  const EntryPtr item(newEntry(L"a"));
  struct Row {
    const wchar_t* expression;
    bool matches;
    bool faulty;
  };
  const Row rows[] = {
      {L"a", true, false},           {L"(a", true, true},      {L"((a|b)", true, true},
      {L"a)", true, false},          {L"%what=1", true, true}, {L"%what<1", false, true},
      {L"%what!=0", false, true},    {L"%=1", true, true},     {L"%", false, true},
      {L"!", true, false},           {L"&", false, false},     {L"|a", true, false},
      {L"%size%size", false, false}, {L"(%size", false, true},
  };
  for (const Row& row : rows) {
    FilterResult result = runFilter(row.expression, item.get(), 0);
    EXPECT_EQ(result.matches, row.matches) << toUtf8(row.expression).data();
    EXPECT_EQ(result.faulty, row.faulty) << toUtf8(row.expression).data();
  }
}

TEST(FilterExpression, NestingIsLimited) {
  const EntryPtr item(newEntry(L"a"));
  const auto nested = [&](int depth, wchar_t opening) {
    std::wstring text(static_cast<size_t>(depth), opening);
    text += L'a';
    if (opening == L'(') text.append(static_cast<size_t>(depth), L')');
    return runFilter(text.c_str(), item.get(), 0);
  };
  EXPECT_TRUE(nested(MaxFilterDepth, L'(').matches);
  EXPECT_FALSE(nested(MaxFilterDepth, L'(').faulty);
  EXPECT_TRUE(nested(MaxFilterDepth, L'!').matches) << "an even number of them";
  EXPECT_TRUE(nested(MaxFilterDepth + 1, L'(').faulty);
  EXPECT_TRUE(nested(MaxFilterDepth + 1, L'!').faulty);
  EXPECT_TRUE(nested(1000000, L'(').faulty);
  EXPECT_TRUE(nested(1000000, L'!').faulty);
}

TEST(FilterExpression, NamesThatAreNoUtf8AreMatchedByteByByte) {
  const Westring name = decodeFileName("caf\xE9.txt");
  EXPECT_TRUE(matchName(L"caf?.txt", name.data()));
  EXPECT_TRUE(matchName(name.data(), name.data()));
  EXPECT_FALSE(matchName(L"caf\u00E9.txt", name.data()));
  const wchar_t negative[] = {L'%', -128, L'=', -1, 0};
  EXPECT_FALSE(matchName(negative, name.data()) && matchName(negative, L"x") &&
               !runFilter(negative, blankEntry(L"x").get(), 0).faulty);
}

TEST(FilterExpression, RandomTextNeitherCrashesNorTakesLong) {
  const wchar_t alphabet[] = {L'(', L')', L'!', L'|', L'&', L'"', L'%', L'*',    L'?', L'[', L']',
                              L'{', L'}', L',', L'^', L'-', L'<', L'>', L'=',    L' ', L's', L'i',
                              L'z', L'e', L'a', L'g', L'k', L'9', L'0', 0x1F600, -128, -1,   0x100};
  const std::wstring words[] = {L"%size",  L"%date",  L"%age", L"%attrib",
                                L"%owner", L"%group", L"root"};
  std::mt19937 random(20240305);
  const auto pick = [&random](size_t count) {
    return std::uniform_int_distribution<size_t>(0, count - 1)(random);
  };
  const EntryPtr item(newEntry(L"some name that is rather long aaaaaaaaaaaaaaaaaaaaaaaaa.txt"));
  int matched = 0;
  for (int round = 0; round < 20000; ++round) {
    std::wstring text;
    for (size_t left = pick(60); left > 0; --left) {
      if (pick(8) == 0) {
        text += words[pick(std::size(words))];
      } else {
        text += alphabet[pick(std::size(alphabet))];
      }
    }
    if (runFilter(text.c_str(), item.get(), 0).matches) ++matched;
    EXPECT_EQ(runFilter(text.c_str(), item.get(), 0).matches,
              runFilter(text.c_str(), item.get(), 0).matches);
  }
  EXPECT_GT(matched, 0);
  EXPECT_LT(matched, 20000);
}

TEST(FilterExpression, ManyStarsAreNoTrap) {
  std::wstring pattern;
  for (int i = 0; i < 100; ++i) pattern += L"*a";
  pattern += L"*b";
  const std::wstring name(255, L'a');
  std::wstring expression = pattern;
  for (int i = 0; i < 20; ++i) expression += L"|!(" + pattern + L")&" + pattern;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(matchName(expression.c_str(), name.c_str()));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST(FilterExpression, TheNameAloneDecidesWhereNoPredicateMatters) {
  struct Row {
    const wchar_t* expression;
    NameVerdict verdict;
  };
  for (const Row& row :
       {Row{L"*.c", NameVerdict::Yes}, Row{L"*.h", NameVerdict::No},
        Row{L"*.c & %size>1", NameVerdict::Depends}, Row{L"*.h & %size>1", NameVerdict::No},
        Row{L"%size>1 & *.h", NameVerdict::No}, Row{L"*.c | %size>1", NameVerdict::Yes},
        Row{L"*.h | %size>1", NameVerdict::Depends}, Row{L"!%size>1", NameVerdict::Depends},
        Row{L"!(*.h & %size>1)", NameVerdict::Yes}, Row{L"%size>1 & !%age>5", NameVerdict::Depends},
        Row{L"", NameVerdict::No}}) {
    EXPECT_EQ(filterByName(row.expression, L"a.c"), row.verdict) << row.expression;
  }
}
