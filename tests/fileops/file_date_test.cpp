#include "fileops/file_date.h"

#include <cerrno>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"
#include "support/time_zone.h"

namespace {

DateFields day(int year, int month, int day) {
  return {year, month, day, 12, 0, 0};
}

class FileDate : public FileOpsTest {
  const Zone zone_{"UTC0"};
};

}  // namespace

TEST_F(FileDate, ADayThatTheMonthDoesNotHaveIsRefused) {
  EXPECT_TRUE(isValidDate(day(2024, 2, 29)));
  EXPECT_FALSE(isValidDate(day(2023, 2, 29)));
  EXPECT_FALSE(isValidDate(day(2024, 2, 30)));
  const int longest[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month) {
    EXPECT_TRUE(isValidDate(day(2023, month, longest[month - 1]))) << month;
    EXPECT_FALSE(isValidDate(day(2023, month, longest[month - 1] + 1))) << month;
    EXPECT_FALSE(isValidDate(day(2023, month, 0))) << month;
  }
}

TEST_F(FileDate, YearsGoFrom1980To2099) {
  EXPECT_FALSE(isValidDate(day(1979, 12, 31)));
  EXPECT_TRUE(isValidDate(day(1980, 1, 1)));
  EXPECT_TRUE(isValidDate(day(2099, 12, 31)));
  EXPECT_FALSE(isValidDate(day(2100, 1, 1)));
  EXPECT_TRUE(isValidDate(day(2000, 2, 29)));
}

TEST_F(FileDate, MonthsAndTimesHaveTheirLimits) {
  EXPECT_FALSE(isValidDate(day(2020, 0, 1)));
  EXPECT_FALSE(isValidDate(day(2020, 13, 1)));
  EXPECT_TRUE(isValidDate({2020, 1, 1, 0, 0, 0}));
  EXPECT_TRUE(isValidDate({2020, 1, 1, 23, 59, 59}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, 24, 0, 0}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, 0, 60, 0}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, 0, 0, 60}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, -1, 0, 0}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, 0, -1, 0}));
  EXPECT_FALSE(isValidDate({2020, 1, 1, 0, 0, -1}));
}

TEST_F(FileDate, AnOddSecondGoesDownByOne) {
  const DateFields typed{2009, 7, 4, 13, 5, 59};
  const DateFields kept = dateFieldsOf(dosTimeOf(typed));
  EXPECT_EQ(kept.second, 58);
  EXPECT_EQ(kept.year, 2009);
  EXPECT_EQ(kept.month, 7);
  EXPECT_EQ(kept.day, 4);
  EXPECT_EQ(kept.hour, 13);
  EXPECT_EQ(kept.minute, 5);
}

TEST_F(FileDate, TheClockWithTwoHalvesBeginsAtTwelve) {
  const struct {
    int hour;
    int shown;
    HalfDay half;
  } rows[] = {{0, 12, HalfDay::Morning},   {1, 1, HalfDay::Morning},
              {11, 11, HalfDay::Morning},  {12, 12, HalfDay::Afternoon},
              {13, 1, HalfDay::Afternoon}, {23, 11, HalfDay::Afternoon}};
  for (const auto& row : rows) {
    EXPECT_EQ(hourOfHalfDay(row.hour), row.shown) << row.hour;
    EXPECT_EQ(halfDayOf(row.hour), row.half) << row.hour;
    EXPECT_EQ(hourOfDay(row.shown, row.half), row.hour) << row.hour;
  }
  EXPECT_EQ(hourOfDay(15, HalfDay::Afternoon), 15);
  EXPECT_EQ(hourOfDay(15, HalfDay::Morning), 15);
}

TEST_F(FileDate, ATypedHourIsThatOfTheDaysOwnSeason) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  struct Row {
    DateFields fields;
    time_t time;
  };
  // 11:00 and 10:00 at Greenwich, and the moments around the changes of the clock.
  const Row rows[] = {
      {{2024, 1, 15, 12, 0, 0}, 1705316400},   {{2024, 7, 1, 12, 0, 0}, 1719828000},
      {{2024, 3, 31, 1, 59, 58}, 1711846798},  {{2024, 3, 31, 3, 0, 0}, 1711846800},
      {{2024, 10, 27, 1, 59, 58}, 1729987198}, {{2024, 10, 27, 3, 0, 0}, 1729994400}};
  for (const Row& row : rows) EXPECT_EQ(dosToTime(dosTimeOf(row.fields)), row.time) << row.time;
}

TEST_F(FileDate, AnHourThatTheDayDoesNotHaveOrHasTwiceIsAnHourBesideIt) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const time_t missing = dosToTime(dosTimeOf({2024, 3, 31, 2, 30, 0}));
  EXPECT_TRUE(missing == 1711845000 || missing == 1711848600) << missing;
  const time_t twice = dosToTime(dosTimeOf({2024, 10, 27, 2, 30, 0}));
  EXPECT_TRUE(twice == 1729989000 || twice == 1729992600) << twice;
}

TEST_F(FileDate, WhatWasNotTypedAnewStaysInItsOwnHour) {
  // 2026-10-25 02:30:00 in summer and an hour later, and 2026-04-05 01:30:00 where the clock goes
  // back by half an hour.
  const struct {
    const char* zone;
    time_t time;
  } rows[] = {{"CET-1CEST,M3.5.0,M10.5.0/3", 1792888200},
              {"CET-1CEST,M3.5.0,M10.5.0/3", 1792891800},
              {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", 1775313000},
              {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", 1775314800}};
  for (const auto& row : rows) {
    const Zone zone(row.zone);
    SCOPED_TRACE(std::string(row.zone) + " " + std::to_string(row.time));
    const DateFields shown = dateFieldsOf(timeToDos(row.time));
    EXPECT_EQ(timeOf(shown, row.time), row.time);
    EXPECT_EQ(timeOf(shown, row.time + 1), row.time) << "an odd second";
    DateFields typed = shown;
    typed.second = 20;
    EXPECT_EQ(timeOf(typed, row.time), row.time + 20);
  }
}

TEST_F(FileDate, AnotherHourIsThatOfItsOwnSeason) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const time_t second = 1792891800;  // 2026-10-25 02:30:00, the hour that is there again
  EXPECT_EQ(timeOf({2026, 10, 25, 3, 30, 0}, second), second + 60 * 60);
  EXPECT_EQ(timeOf({2026, 10, 25, 1, 30, 0}, second), second - 2 * 60 * 60);
  EXPECT_EQ(timeOf({2026, 7, 1, 12, 0, 0}, second), 1782900000);
}

TEST_F(FileDate, ATimeBeforeTheFirstYearThatIsConfirmedStays) {
  const time_t early = 86400;
  EXPECT_EQ(timeOf(dateFieldsOf(timeToDos(early)), early), early);
}

TEST_F(FileDate, OnlyTheModificationTimeChanges) {
  dir.write("f", "text");
  const struct timespec before[2] = {{1111111111, 123456789}, {1222222222, 5}};
  ASSERT_EQ(utimensat(AT_FDCWD, dir.path("f").c_str(), before, 0), 0);
  const std::string path = dir.path("f");
  ASSERT_EQ(setModificationTime(placeOf(path.c_str()), 1333333332), 0);
  const struct stat info = statusOf(path);
  EXPECT_EQ(info.st_mtim.tv_sec, 1333333332);
  EXPECT_EQ(info.st_mtim.tv_nsec, 0);
  EXPECT_EQ(info.st_atim.tv_sec, 1111111111);
  EXPECT_EQ(info.st_atim.tv_nsec, 123456789);
}

TEST_F(FileDate, ALinkActsOnWhatItLeadsTo) {
  dir.write("f", "text");
  dir.link("f", "link");
  setTime(dir.path("f"), 1000000000);
  struct stat before {};
  ASSERT_EQ(lstat(dir.path("link").c_str(), &before), 0);
  const std::string path = dir.path("link");
  ASSERT_EQ(setModificationTime(placeOf(path.c_str()), 1333333332), 0);
  struct stat after {};
  ASSERT_EQ(lstat(path.c_str(), &after), 0);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
  EXPECT_EQ(statusOf(dir.path("f")).st_mtim.tv_sec, 1333333332);
}

TEST_F(FileDate, AFailureIsGivenBack) {
  dir.write("f", "text");
  setTime(dir.path("f"), 1000000000);
  const std::string path = dir.path("f");
  {
    const FaultHook fault("utimensAt", EROFS);
    EXPECT_EQ(setModificationTime(placeOf(path.c_str()), 1333333332), EROFS);
  }
  EXPECT_EQ(statusOf(path).st_mtim.tv_sec, 1000000000);
  EXPECT_EQ(setModificationTime(placeOf("/nowhere/at/all"), 1333333332), ENOENT);
}
