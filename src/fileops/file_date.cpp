#include "fileops/file_date.h"

#include <cerrno>

#include "foundation/system.h"

namespace {

constexpr int FirstYear = 1980, LastYear = 2099;
constexpr int February = 2, Months = 12;
constexpr int HoursOfDay = 24, Noon = 12, MinutesOfHour = 60, SecondsOfMinute = 60;
constexpr int YearShift = 9, MonthShift = 5, HourShift = 11, MinuteShift = 5;

bool isWithin(int value, int first, int last) {
  return value >= first && value <= last;
}

// In these years every fourth one is a leap year.
int daysOf(int month, int year) {
  if (month == February) return year % 4 == 0 ? 29 : 28;
  const bool isLong = month < 8 ? month % 2 == 1 : month % 2 == 0;
  return isLong ? 31 : 30;
}

int secondsOfHour(DosTime words) {
  return dosMinute(words.time) * SecondsOfMinute + dosSecond(words.time);
}

// The words hold no odd seconds.
time_t withoutOddSecond(time_t time) {
  struct tm local {};
  return localtime_r(&time, &local) ? time - local.tm_sec % 2 : time;
}

}  // namespace

DateFields dateFieldsOf(DosTime words) {
  return {dosYear(words.date), dosMonth(words.date),  dosDay(words.date),
          dosHour(words.time), dosMinute(words.time), dosSecond(words.time)};
}

DosTime dosTimeOf(const DateFields& fields) {
  DosTime words;
  words.date = static_cast<uint16_t>((fields.year - FirstYear) << YearShift |
                                     fields.month << MonthShift | fields.day);
  words.time = static_cast<uint16_t>(fields.hour << HourShift | fields.minute << MinuteShift |
                                     fields.second / 2);
  return words;
}

time_t timeOf(const DateFields& fields, time_t start) {
  const DosTime typed = dosTimeOf(fields);
  const DosTime shown = timeToDos(start);
  if (typed.date == shown.date && dosHour(typed.time) == dosHour(shown.time)) {
    const time_t near = withoutOddSecond(start) + secondsOfHour(typed) - secondsOfHour(shown);
    if (compareDosTime(timeToDos(near), typed) == 0) return near;
  }
  return dosToTime(typed);
}

bool isValidDate(const DateFields& fields) {
  return isWithin(fields.year, FirstYear, LastYear) && isWithin(fields.month, 1, Months) &&
         isWithin(fields.day, 1, daysOf(fields.month, fields.year)) &&
         isWithin(fields.hour, 0, HoursOfDay - 1) &&
         isWithin(fields.minute, 0, MinutesOfHour - 1) &&
         isWithin(fields.second, 0, SecondsOfMinute - 1);
}

int hourOfDay(int hour, HalfDay half) {
  if (half == HalfDay::Morning) return hour == Noon ? 0 : hour;
  return isWithin(hour, 1, Noon - 1) ? hour + Noon : hour;
}

int hourOfHalfDay(int hour) {
  return hour % Noon == 0 ? Noon : hour % Noon;
}

HalfDay halfDayOf(int hour) {
  return hour < Noon ? HalfDay::Morning : HalfDay::Afternoon;
}

int setModificationTime(const Place& file, time_t time) {
  const struct timespec times[2] = {{0, UTIME_OMIT}, {time, 0}};
  return System::utimensAt(file.directory, file.name, times, 0) == 0 ? 0 : errno;
}
