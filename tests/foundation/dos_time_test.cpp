#include "foundation/dos_time.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/time_zone.h"

namespace {

constexpr time_t OneHour = 3600;

DosTime words(int year, int month, int day, int hour, int minute, int second) {
  return {static_cast<uint16_t>((year - 1980) << 9 | month << 5 | day),
          static_cast<uint16_t>(hour << 11 | minute << 5 | second / 2)};
}

DosTime wordsOfSystem(time_t t) {
  struct tm local;
  localtime_r(&t, &local);
  return words(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
               local.tm_sec);
}

bool same(DosTime a, DosTime b) {
  return compareDosTime(a, b) == 0;
}

// A rule that the tests don't take from the system's zone files, with changes at odd local minutes.
constexpr const char* Rules[] = {"UTC0",
                                 "CET-1CEST,M3.5.0,M10.5.0/3",
                                 "NST3:30NDT,M3.2.0/0:01,M11.1.0/0:01",
                                 "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0",
                                 "NPT-5:45",
                                 "XST11:59:59"};

TEST(DosTime, PacksLocalTimeInTwoWords) {
  const Zone zone("UTC0");
  const DosTime packed = timeToDos(1000000000);  // 2001-09-09 01:46:40
  EXPECT_EQ(packed.date, 21 << 9 | 9 << 5 | 9);
  EXPECT_EQ(packed.time, 1 << 11 | 46 << 5 | 20);
  EXPECT_EQ(dosYear(packed.date), 2001);
  EXPECT_EQ(dosMonth(packed.date), 9);
  EXPECT_EQ(dosDay(packed.date), 9);
  EXPECT_EQ(dosHour(packed.time), 1);
  EXPECT_EQ(dosMinute(packed.time), 46);
  EXPECT_EQ(dosSecond(packed.time), 40);
}

TEST(DosTime, OddSecondsAreCutToTheEvenOneBefore) {
  const Zone zone("UTC0");
  EXPECT_TRUE(same(timeToDos(1000000001), timeToDos(1000000000)));
  EXPECT_FALSE(same(timeToDos(1000000002), timeToDos(1000000000)));
}

TEST(DosTime, TimesOutsideTheRangeClampToItsEnds) {
  const Zone zone("UTC0");
  const DosTime first = words(1980, 1, 1, 0, 0, 0);
  const DosTime last = words(2107, 12, 31, 23, 59, 58);
  const time_t begin = 315532800;
  const time_t end = 4354819200;
  for (time_t t : {begin - 1, time_t{0}, time_t{-1}, time_t{INT64_MIN}, begin}) {
    EXPECT_TRUE(same(timeToDos(t), first)) << t;
  }
  for (time_t t : {end - 1, end, time_t{INT64_MAX}}) EXPECT_TRUE(same(timeToDos(t), last)) << t;
  EXPECT_FALSE(same(timeToDos(begin + 2), first));
  EXPECT_FALSE(same(timeToDos(end - 3), last));
}

TEST(DosTime, AgreesWithTheSystemAtAnyTimeInAnyZone) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<int64_t> anyTime(315619200, 4354732800);
  for (const char* rule : Rules) {
    const Zone zone(rule);
    for (int i = 0; i < 20000; ++i) {
      const time_t t = anyTime(random);
      ASSERT_TRUE(same(timeToDos(t), wordsOfSystem(t))) << rule << " " << t;
    }
  }
}

TEST(DosTime, AgreesWithTheSystemAroundEveryChangeOfTheClock) {
  for (const char* rule : Rules) {
    const Zone zone(rule);
    // Every minute of a year: all changes are among them.
    for (time_t t = 1600000020; t < 1600000000 + 366 * 86400; t += 60) {
      ASSERT_TRUE(same(timeToDos(t - 1), wordsOfSystem(t - 1))) << rule << " " << t;
      ASSERT_TRUE(same(timeToDos(t), wordsOfSystem(t))) << rule << " " << t;
    }
  }
}

TEST(DosTime, AChangedZoneIsFollowed) {
  const time_t t = 1000000000;
  const Zone first("UTC0");
  EXPECT_EQ(dosHour(timeToDos(t).time), 1);
  const Zone second("XXX-5");
  EXPECT_EQ(dosHour(timeToDos(t).time), 6);
}

TEST(DosTime, GoesBackToTheSameTime) {
  std::mt19937_64 random(2);
  std::uniform_int_distribution<int64_t> anyTime(315619200, 4354732800);
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  for (int i = 0; i < 20000; ++i) {
    const time_t t = anyTime(random) & ~int64_t{1};
    struct tm local;
    localtime_r(&t, &local);
    ASSERT_EQ(dosToTime(timeToDos(t), local.tm_isdst), t);
  }
}

TEST(DosTime, TheRepeatedHourInAutumnFollowsTheFlag) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const DosTime repeated = words(2021, 10, 31, 2, 30, 0);
  const time_t inSummer = dosToTime(repeated, 1);
  const time_t inWinter = dosToTime(repeated, 0);
  EXPECT_EQ(inWinter - inSummer, OneHour);
  EXPECT_TRUE(same(timeToDos(inSummer), repeated));
  EXPECT_TRUE(same(timeToDos(inWinter), repeated));
}

TEST(DosTime, AFlagOfTheOtherSeasonMovesNothing) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const DosTime summer = words(2021, 7, 1, 12, 0, 0);
  EXPECT_EQ(dosToTime(summer, 0), dosToTime(summer, -1));
  EXPECT_TRUE(same(timeToDos(dosToTime(summer, 0)), summer));
  const DosTime midnight = words(2021, 12, 31, 23, 30, 0);
  EXPECT_TRUE(same(timeToDos(dosToTime(midnight, 1)), midnight));
}

TEST(DosTime, WordsThatAreNoDateBecomeANearOne) {
  const Zone zone("UTC0");
  EXPECT_TRUE(same(timeToDos(dosToTime({0, 0})), words(1980, 1, 1, 0, 0, 0)));
  EXPECT_TRUE(same(timeToDos(dosToTime(words(2000, 0, 0, 1, 0, 0))), words(2000, 1, 1, 1, 0, 0)));
  EXPECT_TRUE(
      same(timeToDos(dosToTime(words(2000, 15, 31, 31, 63, 62))), words(2000, 12, 31, 23, 59, 58)));
}

TEST(DosTime, ComparesDateBeforeTime) {
  const DosTime early = words(2000, 1, 1, 23, 0, 0);
  const DosTime late = words(2000, 1, 2, 1, 0, 0);
  EXPECT_LT(compareDosTime(early, late), 0);
  EXPECT_GT(compareDosTime(late, early), 0);
  EXPECT_LT(compareDosTime(words(2000, 1, 1, 1, 0, 0), words(2000, 1, 1, 1, 0, 2)), 0);
  EXPECT_EQ(compareDosTime(late, late), 0);
}

}  // namespace
