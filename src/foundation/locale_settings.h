#pragma once

#include "foundation/westring.h"

enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

// What the program takes from the locale. Application thread only.
struct LocaleSettings {
  wchar_t thousandSeparator = L',';
  wchar_t dateSeparator = L'-';
  Westring dateFormat = L"%02d-%02d-%02d";  // a printf pattern of three numbers, in dateOrder
  DateOrder dateOrder = DateOrder::YearMonthDay;
};

extern LocaleSettings localeSettings;

// Fills localeSettings from the locale, sets the default code page (`codePage`, 0 means 850) and
// builds the case tables. The process's locale must be set.
void readLocaleSettings(int codePage);

// The pieces, for tests: separator from THOUSEP, format from D_FMT.
wchar_t thousandSeparatorOf(const char* thousep);
void parseDateFormat(const char* dateFormat, LocaleSettings& settings);
