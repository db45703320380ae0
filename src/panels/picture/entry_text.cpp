#include "panels/picture/entry_text.h"

#include <cwchar>

#include "foundation/dos_time.h"
#include "foundation/locale_settings.h"
#include "foundation/names.h"
#include "foundation/text_format.h"
#include "options/options.h"

namespace {

constexpr int RoomyColumn = 9;  // wider size columns give the words a blank on each side
constexpr int FirstYear = 80;   // of the packed date, in its century
constexpr int HalfDay = 12;
constexpr int DateCapacity = 40;

// How much of the end stays visible behind the mark: the extension with its dot, or nothing.
int keptExtension(const Westring& name, int width) {
  if (!GlobalOptions::KeepExtVisible) return 0;
  const int dot = name.rfind(L'.');
  if (dot < 0) return 0;
  const int extension = name.length() - dot;
  return extension <= width / 2 ? extension : 0;
}

const wchar_t* directoryWord(const entry& item, bool roomy) {
  if (sameName(item.name(), ParentName)) return roomy ? L" UP-DIR " : L"UP-DIR";
  if (item.isLink()) return roomy ? L"  LINK  " : L"LINK";
  return roomy ? L" SUBDIR " : L"SUBDIR";
}

int twoDigitYear(uint16_t date) {
  constexpr int PackedYear2000 = 20;
  const int packed = dosYear(date) - dosYear(0);
  const int year = FirstYear + packed;
  return year > 99 ? (packed - PackedYear2000) % 100 : year;
}

}  // namespace

Westring cutName(const Westring& name, int width) {
  if (width <= 0) return Westring();
  if (name.length() <= width) return name;
  const int extension = keptExtension(name, width);
  Westring result = left(name, width - extension);
  result.data()[width - extension - 1] = CutMark;
  if (extension > 0) result += right(name, extension);
  return result;
}

Westring sizeText(const entry& item, int width) {
  constexpr uint8_t Counted = 1;
  Westring text;
  if (!item.isDirectory() || item.level == Counted) {
    text = GlobalOptions::ThousandSep ? formatSize(item.size, width)
                                      : formatPlainSize(item.size, width);
  } else {
    text += CutMark;
    text += directoryWord(item, width > RoomyColumn);
    text += CutMarkLeft;
  }
  return padLeft(text, width);
}

Westring dateText(uint16_t date) {
  const int year = twoDigitYear(date), month = dosMonth(date), day = dosDay(date);
  int fields[3] = {year, month, day};
  if (localeSettings.dateOrder == DateOrder::MonthDayYear) {
    fields[0] = month, fields[1] = day, fields[2] = year;
  } else if (localeSettings.dateOrder == DateOrder::DayMonthYear) {
    fields[0] = day, fields[1] = month, fields[2] = year;
  }
  wchar_t text[DateCapacity];
  const int length = swprintf(text, DateCapacity, localeSettings.dateFormat.data(), fields[0],
                              fields[1], fields[2]);
  return length < 0 ? Westring() : Westring(text);
}

Westring timeText(uint16_t time) {
  wchar_t text[16];
  int hour = dosHour(time);
  if (GlobalOptions::TimeMode != HalfDay) {
    swprintf(text, 16, L"%3d:%02d", hour, dosMinute(time));
    return Westring(text);
  }
  const wchar_t half = hour < HalfDay ? L'a' : L'p';
  if (hour == 0) hour = HalfDay;
  if (hour > HalfDay) hour -= HalfDay;
  swprintf(text, 16, L"%2d:%02d%lc", hour, dosMinute(time), static_cast<wint_t>(half));
  return Westring(text);
}
