#pragma once

#include <ctime>

#include "foundation/dos_time.h"
#include "foundation/place.h"

// A local date and time as it is typed; hours from 0 to 23.
struct DateFields {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

enum class HalfDay : int { Morning, Afternoon };

DateFields dateFieldsOf(DosTime words);
// An odd second goes down by one. The fields must be valid.
DosTime dosTimeOf(const DateFields& fields);
// The time that typed fields mean which began as those of `start`. With the day and the hour of
// `start` they stay in its own hour, also where the clock shows that hour twice; all other fields
// mean the hour of their season.
time_t timeOf(const DateFields& fields, time_t start);
// From 1980 to 2099, a day that the month has, a time that the day has.
bool isValidDate(const DateFields& fields);

// Hours of a clock with two halves, 12 and 1 to 11 in each. What is above 12 stands for itself.
int hourOfDay(int hour, HalfDay half);
int hourOfHalfDay(int hour);
HalfDay halfDayOf(int hour);

// The modification time of a file, or of what a link leads to; the access time stays. 0 or errno.
int setModificationTime(const Place& file, time_t time);
