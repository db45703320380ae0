#include "foundation/locale_settings.h"

#include <gtest/gtest.h>

#include <cctype>

#include "foundation/code_page.h"
#include "support/exact_text.h"

TEST(LocaleSettings, AnEmptyThousandSeparatorIsAComma) {
  EXPECT_EQ(thousandSeparatorOf(""), L',');
  EXPECT_EQ(thousandSeparatorOf("."), L'.');
  EXPECT_EQ(thousandSeparatorOf("\xE2\x80\xAF"), L'\u202F');
  EXPECT_EQ(thousandSeparatorOf("'x"), L'\'');
}

TEST(LocaleSettings, ASeparatorOutsideTheLocalesEncodingIsDecodedAllTheSame) {
  EXPECT_EQ(thousandSeparatorOf("\xA0"), L'\u00A0');
}

TEST(LocaleSettings, TheDateFormatGivesOrderAndSeparator) {
  struct Row {
    const char* format;
    DateOrder order;
    wchar_t separator;
    const wchar_t* pattern;
  };
  const Row rows[] = {{"%m/%d/%y", DateOrder::MonthDayYear, L'/', L"%02d/%02d/%02d"},
                      {"%m/%d/%Y", DateOrder::MonthDayYear, L'/', L"%02d/%02d/%02d"},
                      {"%d.%m.%Y", DateOrder::DayMonthYear, L'.', L"%02d.%02d.%02d"},
                      {"%Y-%m-%d", DateOrder::YearMonthDay, L'-', L"%02d-%02d-%02d"},
                      {"%-d.%-m.%Y", DateOrder::DayMonthYear, L'.', L"%02d.%02d.%02d"},
                      {"%_d/%0m/%y", DateOrder::DayMonthYear, L'/', L"%02d/%02d/%02d"},
                      {"%-d. %-m. %Y", DateOrder::DayMonthYear, L'.', L"%02d.%02d.%02d"},
                      {"%D/%M-%Y", DateOrder::DayMonthYear, L'/', L"%02d/%02d/%02d"},
                      {"%d-%m-%y", DateOrder::DayMonthYear, L'-', L"%02d-%02d-%02d"},
                      {"%d%m%y", DateOrder::DayMonthYear, L'-', L"%02d-%02d-%02d"},
                      {"%F", DateOrder::YearMonthDay, L'-', L"%02d-%02d-%02d"},
                      {"%Y\xE5\xB9\xB4%m\xE6\x9C\x88%d\xE6\x97\xA5", DateOrder::YearMonthDay, L'-',
                       L"%02d-%02d-%02d"},
                      {"%d\xE2\x80\xA2%m\xE2\x80\xA2%y", DateOrder::DayMonthYear, L'\u2022',
                       L"%02d\u2022%02d\u2022%02d"},
                      {"", DateOrder::YearMonthDay, L'-', L"%02d-%02d-%02d"},
                      {"%", DateOrder::YearMonthDay, L'-', L"%02d-%02d-%02d"},
                      {"%-", DateOrder::YearMonthDay, L'-', L"%02d-%02d-%02d"}};
  for (const Row& row : rows) {
    LocaleSettings settings;
    parseDateFormat(row.format, settings);
    EXPECT_EQ(settings.dateOrder, row.order) << row.format;
    EXPECT_EQ(settings.dateSeparator, row.separator) << row.format;
    EXPECT_EQ(exact(settings.dateFormat), row.pattern) << row.format;
  }
}

TEST(LocaleSettings, ReadingSetsCodePageAndSeparators) {
  readLocaleSettings(437);
  EXPECT_EQ(defaultCodePage(), 437);
  EXPECT_EQ(localeSettings.thousandSeparator, L',');
  EXPECT_EQ(localeSettings.dateOrder, DateOrder::MonthDayYear);
  EXPECT_EQ(exact(localeSettings.dateFormat), L"%02d/%02d/%02d");
  readLocaleSettings(0);
  EXPECT_EQ(defaultCodePage(), 850);
  localeSettings = LocaleSettings();
}
