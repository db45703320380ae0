#include "foundation/dos_time.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace {

constexpr int64_t SecondsPerDay = 86400;
constexpr int64_t SecondsPerHour = 3600;
constexpr int64_t SecondsPerMinute = 60;
constexpr int64_t FirstLocal = 315532800;           // 1980-01-01 00:00:00 as seconds of local time
constexpr int64_t BeyondLocal = 4354819200;         // 2108-01-01 00:00:00
constexpr int64_t WidestShift = 2 * SecondsPerDay;  // further than any zone is from Greenwich
constexpr DosTime FirstWords{0x0021, 0x0000};
constexpr DosTime LastWords{0xFF9F, 0xBF7D};

struct CivilDate {
  int64_t year;
  int month;
  int day;
};

// The proleptic Gregorian calendar counted from 1970-01-01, in eras of 400 years that begin in
// March.
constexpr int64_t DaysPerEra = 146097;
constexpr int64_t EpochOffset = 719468;  // days from 0000-03-01 to 1970-01-01

CivilDate civilOfDays(int64_t days) {
  const int64_t shifted = days + EpochOffset;
  const int64_t era = (shifted >= 0 ? shifted : shifted - DaysPerEra + 1) / DaysPerEra;
  const int64_t dayOfEra = shifted - era * DaysPerEra;
  const int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int monthFromMarch = static_cast<int>((5 * dayOfYear + 2) / 153);
  const int day = static_cast<int>(dayOfYear) - (153 * monthFromMarch + 2) / 5 + 1;
  const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

int64_t daysOfCivil(int64_t year, int month, int day) {
  const int64_t y = month <= 2 ? year - 1 : year;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yearOfEra = y - era * 400;
  const int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * DaysPerEra + dayOfEra - EpochOffset;
}

// What must be added to `t` so that plain calendar arithmetic gives the local time.
int64_t shiftBySystem(time_t t) {
  struct tm local {};
  if (!localtime_r(&t, &local)) return 0;
  const int64_t days = daysOfCivil(int64_t{local.tm_year} + 1900, local.tm_mon + 1, local.tm_mday);
  return days * SecondsPerDay + local.tm_hour * SecondsPerHour + local.tm_min * SecondsPerMinute +
         local.tm_sec - t;
}

// A listing of 100,000 names asks for 100,000 local times. The shift is remembered for blocks of
// about three days in which it is the same at both ends: no zone leaves and resumes its time within
// three days. A block with a change inside asks the system each time.
constexpr int64_t FirstTime = FirstLocal - WidestShift;
constexpr int64_t BeyondTime = BeyondLocal + WidestShift;
constexpr int BlockBits = 18;
constexpr int64_t BlockSeconds = int64_t{1} << BlockBits;
constexpr size_t BlockCount = ((BeyondTime - FirstTime) >> BlockBits) + 1;

// A block's entry; any other value is its shift moved out of the way of these two.
constexpr int32_t UnknownShift = 0;
constexpr int32_t MixedShift = 1;
constexpr int32_t StoredOffset = 1 << 24;

// Filled by whichever thread asks first; two that ask at once store the same.
std::array<std::atomic<int32_t>, BlockCount> storedShifts{};

int32_t findStoredShift(size_t block) {
  const time_t begin = FirstTime + static_cast<int64_t>(block) * BlockSeconds;
  const int64_t shift = shiftBySystem(begin);
  if (shift != shiftBySystem(begin + BlockSeconds - 1)) return MixedShift;
  return static_cast<int32_t>(std::clamp(shift, -WidestShift, WidestShift)) + StoredOffset;
}

// `t` lies between FirstTime and BeyondTime.
int64_t shiftOf(time_t t) {
  const auto block = static_cast<size_t>((t - FirstTime) >> BlockBits);
  int32_t stored = storedShifts[block].load(std::memory_order_relaxed);
  if (stored == UnknownShift) {
    stored = findStoredShift(block);
    storedShifts[block].store(stored, std::memory_order_relaxed);
  }
  return stored == MixedShift ? shiftBySystem(t) : stored - StoredOffset;
}

struct tm brokenDown(DosTime words, int dst) {
  struct tm local {};
  local.tm_year = dosYear(words.date) - 1900;
  local.tm_mon = std::clamp(dosMonth(words.date), 1, 12) - 1;
  local.tm_mday = std::max(dosDay(words.date), 1);
  local.tm_hour = std::min(dosHour(words.time), 23);
  local.tm_min = std::min(dosMinute(words.time), 59);
  local.tm_sec = std::min(dosSecond(words.time), 59);
  local.tm_isdst = dst;
  return local;
}

}  // namespace

void timeZoneChanged() {
  tzset();
  for (auto& shift : storedShifts) shift.store(UnknownShift, std::memory_order_relaxed);
}

DosTime timeToDos(time_t t) {
  if (t < FirstTime) return FirstWords;
  if (t >= BeyondTime) return LastWords;
  const int64_t local = t + shiftOf(t);
  if (local < FirstLocal) return FirstWords;
  if (local >= BeyondLocal) return LastWords;
  const CivilDate civil = civilOfDays(local / SecondsPerDay);
  const int64_t second = local % SecondsPerDay;
  DosTime words;
  words.date = static_cast<uint16_t>((civil.year - 1980) << 9 | civil.month << 5 | civil.day);
  words.time = static_cast<uint16_t>(second / SecondsPerHour << 11 |
                                     second / SecondsPerMinute % 60 << 5 | second % 60 / 2);
  return words;
}

time_t dosToTime(DosTime words, int dst) {
  const struct tm wanted = brokenDown(words, dst);
  struct tm local = wanted;
  const time_t t = mktime(&local);
  // Where the flag doesn't fit the season, the system moves the clock by an hour to make it fit.
  if (dst < 0 || local.tm_hour == wanted.tm_hour) return t;
  struct tm undecided = brokenDown(words, -1);
  return mktime(&undecided);
}

int compareDosTime(DosTime a, DosTime b) {
  if (a.date != b.date) return a.date < b.date ? -1 : 1;
  if (a.time != b.time) return a.time < b.time ? -1 : 1;
  return 0;
}
