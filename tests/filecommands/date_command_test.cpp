#include "filecommands/date_command.h"

#include "filecommands/command_test.h"
#include "foundation/locale_settings.h"
#include "support/fault_hook.h"
#include "support/time_zone.h"

namespace {

class DateCommandTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    localeSettings.dateOrder = DateOrder::MonthDayYear;
    GlobalOptions::TimeMode = 24;
    file("left/a");  // 2020-09-13 12:26:40
    file("left/b");
  }
  void TearDown() override {
    localeSettings = LocaleSettings();
    CommandTest::TearDown();
  }
  void changeDate(const std::vector<Step>& steps) {
    play(steps, [&] { dateCommand(left()); });
  }
  // The fields in the order of the dialog, each over the old value.
  static std::vector<Step> typed(const std::vector<std::string>& fields) {
    std::vector<Step> steps;
    for (const std::string& field : fields)
      steps.push_back({"Change date of", {Key::Tab}, "", field});
    steps.push_back({"Change date of", {Key::Enter}});
    return steps;
  }
  static std::vector<Step> joined(std::vector<Step> first, const std::vector<Step>& rest) {
    first.insert(first.end(), rest.begin(), rest.end());
    return first;
  }
  time_t dateOf(const std::string& name) { return statusOf(dir.path("left/" + name)).st_mtime; }
};

constexpr time_t Start = 1600000000;
constexpr time_t NextDay = 24 * 60 * 60;

}  // namespace

TEST_F(DateCommandTest, OneFileStartsWithItsOwnDate) {
  show("a");
  changeDate({{"Change date of", {Key::Esc}, "date_one"}});
  EXPECT_EQ(dateOf("a"), Start);
  changeDate(typed({"9", "14"}));
  EXPECT_EQ(dateOf("a"), Start + NextDay);
  EXPECT_EQ(screenText(), before_);
}

TEST_F(DateCommandTest, TheOrderIsThatOfTheLocale) {
  show("a");
  localeSettings.dateOrder = DateOrder::YearMonthDay;
  changeDate({{"Change date of", {Key::Esc}, "date_year_first"}});
  localeSettings.dateOrder = DateOrder::DayMonthYear;
  changeDate(typed({"14", "9", "2020"}));
  EXPECT_EQ(dateOf("a"), Start + NextDay);
}

TEST_F(DateCommandTest, TheTwelveHourClockHasTwoHalves) {
  GlobalOptions::TimeMode = 12;
  show("a");
  changeDate({{"Change date of", {Key::Esc}, "date_twelve_hours"}});
  // From 12 PM to 12 AM: from noon to midnight.
  changeDate({{"Change date of", std::vector<Key::Code>(6, Key::Tab)},
              {"Change date of", {Key::Up, Key::Enter}}});
  EXPECT_EQ(dateOf("a"), Start - 12 * 60 * 60);
}

TEST_F(DateCommandTest, AnInvalidDateIsToldAndTheDialogStays) {
  show("a");
  changeDate(joined(typed({"2", "29", "2023"}), {{"Invalid date", {Key::Enter}, "date_invalid"},
                                                 {"Change date of", {Key::Esc}}}));
  changeDate(joined(typed({"1", "1", "2100"}),
                    {{"Invalid date", {Key::Enter}}, {"Change date of", {Key::Esc}}}));
  EXPECT_EQ(dateOf("a"), Start);
}

TEST_F(DateCommandTest, AnOddSecondGoesDownByOne) {
  show("a");
  changeDate(typed({"9", "13", "2020", "12", "26", "43"}));
  EXPECT_EQ(dateOf("a"), Start + 2);
}

TEST_F(DateCommandTest, ADateThatIsOnlyConfirmedStaysInAnHourThatIsThereTwice) {
  const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const time_t once = 1792888200;  // 2026-10-25 02:30:00, and again an hour later
  for (const int hours : {24, 12}) {
    GlobalOptions::TimeMode = hours;
    for (const time_t date : {once, once + 60 * 60}) {
      setTime(dir.path("left/a"), date);
      show("a");
      changeDate({{"Change date of", {Key::Enter}}});
      EXPECT_EQ(dateOf("a"), date) << hours;
    }
  }
}

TEST_F(DateCommandTest, NowLoadsThePresentTime) {
  show("a");
  const time_t before = time(nullptr);
  changeDate({{"Change date of", {Key::Code('n'), Key::Enter}}});
  EXPECT_GE(dateOf("a"), before - 2);
  EXPECT_LE(dateOf("a"), time(nullptr));
}

TEST_F(DateCommandTest, WhatWasDoneLosesItsTagAndTheFirstFailureEndsInSilence) {
  file("left/c");
  file("left/b2");
  show("a");
  for (const char* name : {"a", "b", "b2", "c"}) tag(name);
  ASSERT_EQ(unlink(dir.path("left/b2").c_str()), 0);
  changeDate(joined({{"4 files", {}, ""}}, typed({"9", "14", "2020", "12", "26", "40"})));
  EXPECT_EQ(dateOf("a"), Start + NextDay);
  EXPECT_EQ(dateOf("b"), Start + NextDay);
  EXPECT_EQ(dateOf("c"), Start);
  EXPECT_EQ(taggedNames(left()), Texts{"c"});
}

TEST_F(DateCommandTest, AFailureOfOneFileIsTold) {
  show("a");
  const FaultHook fault("utimensAt", EROFS);
  changeDate({{"Change date of", {Key::Enter}},
              {"Read-only file system (30)", {Key::Enter}, "date_error"}});
}

TEST_F(DateCommandTest, OfALinkTheTargetsTimeIsShownAndSet) {
  dir.link("a", "left/link");
  show("link");
  changeDate(typed({"9", "14"}));
  EXPECT_EQ(dateOf("a"), Start + NextDay);
}

TEST_F(DateCommandTest, TheDialogFitsALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  show("a");
  GlobalOptions::TimeMode = 12;
  changeDate({{"Change date of", {Key::Esc}, "date_large"}});
}
