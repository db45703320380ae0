#include "panels/picture/entry_text.h"

#include <gtest/gtest.h>

#include "foundation/dos_time.h"
#include "foundation/locale_settings.h"
#include "foundation/text_format.h"
#include "options/options.h"
#include "support/exact_text.h"

class EntryTextTest : public testing::Test {
 protected:
  void SetUp() override { start(); }
  void TearDown() override { start(); }

  static EntryPtr file(uint64_t size) {
    EntryPtr item(newEntry(L"file"));
    item->size = size;
    return item;
  }
  static EntryPtr directory(const wchar_t* name) {
    EntryPtr item(newEntry(name));
    item->attributes = Attribute::Directory;
    return item;
  }
  static uint16_t date(int packedYear, int month, int day) {
    return static_cast<uint16_t>(packedYear << 9 | month << 5 | day);
  }
  static uint16_t time(int hour, int minute) {
    return static_cast<uint16_t>(hour << 11 | minute << 5);
  }

 private:
  static void start() {
    GlobalOptions::setDefaultOptions();
    localeSettings = LocaleSettings();
  }
};

TEST_F(EntryTextTest, ANameOfExactlyTheWidthIsWhole) {
  EXPECT_EQ(exact(cutName(L"abcdefghijkl", 12)), L"abcdefghijkl");
  EXPECT_EQ(exact(cutName(L"", 12)), L"");
}

TEST_F(EntryTextTest, ALongerNameEndsInTheMark) {
  GlobalOptions::KeepExtVisible = false;
  EXPECT_EQ(exact(cutName(L"abcdefghijklm", 12)), L"abcdefghijk\x10");
  EXPECT_EQ(exact(cutName(L"abcdefghij.txt", 12)), L"abcdefghij.\x10");
  EXPECT_EQ(exact(cutName(L"ab", 1)), L"\x10");
  EXPECT_EQ(exact(cutName(L"ab", 0)), L"");
}

TEST_F(EntryTextTest, AVisibleExtensionHasTheMarkBeforeIt) {
  GlobalOptions::KeepExtVisible = true;
  struct Row {
    const wchar_t* name;
    int width;
    const wchar_t* text;
  };
  for (const Row& row : {Row{L"abcdefghijkl.txt", 12, L"abcdefg\x10.txt"},
                         {L"abcdefghijkl.12345", 12, L"abcde\x10.12345"},
                         {L"abcdefghijkl.123456", 12, L"abcdefghijk\x10"},
                         {L"abcdefghijklmn", 12, L"abcdefghijk\x10"},
                         {L"archive.tar.gz.old", 12, L"archive\x10.old"},
                         {L"abcdefghijklm.", 12, L"abcdefghij\x10."},
                         {L".abcdefghijklmnop", 12, L".abcdefghij\x10"},
                         {L"abc.d", 4, L"a\x10.d"},
                         {L"abcd.", 2, L"\x10."}}) {
    EXPECT_EQ(exact(cutName(row.name, row.width)), row.text) << row.width;
  }
}

TEST_F(EntryTextTest, PlainSizesGrowUnitsWhenTheyPassTheColumn) {
  struct Row {
    uint64_t size;
    int width;
    const wchar_t* text;
  };
  constexpr uint64_t Kilo = 1024, Mega = Kilo << 10, Giga = Mega << 10, Tera = Giga << 10;
  for (const Row& row : {Row{0, 8, L"       0"},
                         {99999999, 8, L"99999999"},
                         {100000000, 8, L"  97656K"},
                         {9999999 * Kilo, 8, L"9999999K"},
                         {10000000 * Kilo, 8, L"   9765M"},
                         {10000000 * Mega, 8, L"   9765G"},
                         {10000000 * Giga, 8, L"   9765T"},
                         {10 * Tera, 8, L"  10240G"},
                         {uint64_t{8} << 60, 8, L"8388608T"},
                         {9999999, 7, L"9999999"},
                         {10000000, 7, L"  9765K"},
                         {9999999999, 10, L"9999999999"}}) {
    EXPECT_EQ(exact(sizeText(*file(row.size), row.width)), row.text) << row.size;
  }
}

TEST_F(EntryTextTest, GroupedSizesGrowUnitsToo) {
  GlobalOptions::ThousandSep = true;
  struct Row {
    uint64_t size;
    int width;
    const wchar_t* text;
  };
  for (const Row& row : {Row{999999, 8, L" 999,999"},
                         {1000000, 8, L"    976K"},
                         {1234567, 8, L"  1,205K"},
                         {1234567, 9, L"1,234,567"},
                         {1234567890, 8, L"  1,177M"},
                         {uint64_t{8} << 60, 10, L"8,388,608T"},
                         {uint64_t{8} << 60, 8, L"999,999T"}}) {
    EXPECT_EQ(exact(sizeText(*file(row.size), row.width)), row.text) << row.size;
  }
}

TEST_F(EntryTextTest, EverySizeFitsItsColumn) {
  for (bool grouped : {false, true}) {
    GlobalOptions::ThousandSep = grouped;
    for (int width = 7; width <= 10; ++width) {
      for (int bit = 0; bit < 64; ++bit) {
        for (uint64_t size : {(uint64_t{1} << bit) - 1, uint64_t{1} << bit}) {
          EXPECT_EQ(sizeText(*file(size), width).length(), width) << size;
        }
      }
    }
  }
}

TEST_F(EntryTextTest, DirectoriesShowAWord) {
  EXPECT_EQ(exact(sizeText(*directory(L".."), 8)), L"\x10UP-DIR\x11");
  EXPECT_EQ(exact(sizeText(*directory(L"sub"), 8)), L"\x10SUBDIR\x11");
  EXPECT_EQ(exact(sizeText(*directory(L"..foo"), 9)), L" \x10SUBDIR\x11");
  EntryPtr link = directory(L"link");
  link->attributes |= Attribute::Link;
  EXPECT_EQ(exact(sizeText(*link, 8)), L"  \x10LINK\x11");
}

TEST_F(EntryTextTest, InARoomyColumnTheWordsHaveBlanks) {
  EXPECT_EQ(exact(sizeText(*directory(L".."), 10)), L"\x10 UP-DIR \x11");
  EXPECT_EQ(exact(sizeText(*directory(L"sub"), 10)), L"\x10 SUBDIR \x11");
  EntryPtr link = directory(L"link");
  link->attributes |= Attribute::Link;
  EXPECT_EQ(exact(sizeText(*link, 10)), L"\x10  LINK  \x11");
}

TEST_F(EntryTextTest, ACountedDirectoryShowsItsTotal) {
  EntryPtr item = directory(L"sub");
  item->size = 4711;
  item->level = 1;
  EXPECT_EQ(exact(sizeText(*item, 8)), L"    4711");
}

TEST_F(EntryTextTest, TimesInTwelveHourMode) {
  GlobalOptions::TimeMode = 12;
  EXPECT_EQ(exact(timeText(time(0, 0))), L"12:00a");
  EXPECT_EQ(exact(timeText(time(1, 9))), L" 1:09a");
  EXPECT_EQ(exact(timeText(time(11, 59))), L"11:59a");
  EXPECT_EQ(exact(timeText(time(12, 0))), L"12:00p");
  EXPECT_EQ(exact(timeText(time(13, 30))), L" 1:30p");
  EXPECT_EQ(exact(timeText(time(23, 59))), L"11:59p");
}

TEST_F(EntryTextTest, TimesInTwentyFourHourMode) {
  GlobalOptions::TimeMode = 24;
  EXPECT_EQ(exact(timeText(time(0, 0))), L"  0:00");
  EXPECT_EQ(exact(timeText(time(9, 5))), L"  9:05");
  EXPECT_EQ(exact(timeText(time(23, 59))), L" 23:59");
}

TEST_F(EntryTextTest, DatesFollowTheLocalesOrder) {
  const uint16_t day = date(29, 7, 4);
  localeSettings.dateOrder = DateOrder::YearMonthDay;
  EXPECT_EQ(exact(dateText(day)), L"09-07-04");
  localeSettings.dateOrder = DateOrder::MonthDayYear;
  localeSettings.dateFormat = L"%02d/%02d/%02d";
  EXPECT_EQ(exact(dateText(day)), L"07/04/09");
  localeSettings.dateOrder = DateOrder::DayMonthYear;
  localeSettings.dateFormat = L"%02d.%02d.%02d";
  EXPECT_EQ(exact(dateText(day)), L"04.07.09");
}

TEST_F(EntryTextTest, YearsHaveTwoDigits) {
  struct Row {
    int packed;
    const wchar_t* text;
  };
  for (const Row& row : {Row{0, L"80-01-01"},
                         {19, L"99-01-01"},
                         {20, L"00-01-01"},
                         {29, L"09-01-01"},
                         {119, L"99-01-01"},
                         {120, L"00-01-01"},
                         {127, L"07-01-01"}}) {
    EXPECT_EQ(exact(dateText(date(row.packed, 1, 1))), row.text) << row.packed;
  }
}
