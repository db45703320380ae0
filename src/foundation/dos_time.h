#pragma once

#include <cstdint>
#include <ctime>

// The packed local date and time of the FAT file system: date is (year-1980)<<9 | month<<5 | day,
// time is hour<<11 | minute<<5 | second/2. Times outside 1980 to 2107 clamp to the first and last
// value.
struct DosTime {
  uint16_t date = 0;
  uint16_t time = 0;
};

DosTime timeToDos(time_t t);
// The local time of the words; `dst` as tm_isdst (-1 lets the system decide).
time_t dosToTime(DosTime words, int dst = -1);
// Below 0, 0, above 0: older, same, newer, with the grain of two seconds.
int compareDosTime(DosTime a, DosTime b);

// Call after the TZ variable of the process changed: what is remembered of the zone is forgotten.
void timeZoneChanged();

inline int dosYear(uint16_t date) {
  return (date >> 9) + 1980;
}
inline int dosMonth(uint16_t date) {
  return (date >> 5) & 15;
}
inline int dosDay(uint16_t date) {
  return date & 31;
}
inline int dosHour(uint16_t time) {
  return time >> 11;
}
inline int dosMinute(uint16_t time) {
  return (time >> 5) & 63;
}
inline int dosSecond(uint16_t time) {
  return (time & 31) * 2;
}
