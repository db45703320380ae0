#include "terminal/child_environment.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "foundation/path_info.h"
#include "language/environment.h"
#include "support/temp_dir.h"

namespace {

bool has(const std::vector<std::string>& environment, const std::string& pair) {
  return std::find(environment.begin(), environment.end(), pair) != environment.end();
}

std::vector<std::string> here() {
  return childEnvironment(currentDir());
}

}  // namespace

TEST(ChildEnvironment, TheTerminalIsOurs) {
  sessionEnvironment().set("TERM", "other");
  EXPECT_TRUE(has(here(), "TERM=ansi"));
  EXPECT_TRUE(has(here(), "NCURSES_NO_UTF8_ACS=1"));
  EXPECT_TRUE(has(here(), "TERM_URLS=no"));
}

TEST(ChildEnvironment, WhatAnotherTerminalSaidIsTakenOut) {
  for (const char* name :
       {"LINES", "COLUMNS", "COLORTERM", "TERM_PROGRAM", "TERM_PROGRAM_VERSION", "VTE_VERSION"}) {
    configuredEnvironment().set(name, "5");
    EXPECT_EQ(valueIn(here(), name), "") << name;
  }
}

TEST(ChildEnvironment, NearerLayersWinAndARemovedNameStaysAway) {
  configuredEnvironment().set("TD_ONE", "configured");
  configuredEnvironment().set("TD_TWO", "configured");
  sessionEnvironment().set("TD_ONE", "session");
  sessionEnvironment().hide("TD_TWO");
  EXPECT_TRUE(has(here(), "TD_ONE=session"));
  EXPECT_EQ(valueIn(here(), "TD_TWO"), "");
}

TEST(ChildEnvironment, TheDirectoryIsTheOneThatIsShown) {
  const TempDir dir;
  dir.makeDir("real");
  dir.link("real", "link");
  ASSERT_EQ(chdir(dir.path("real").c_str()), 0);
  EXPECT_TRUE(has(childEnvironment(dir.wide("link")), "PWD=" + dir.path("link")));
  EXPECT_EQ(valueIn(childEnvironment(dir.wide()), "PWD"), "");
  EXPECT_EQ(valueIn(childEnvironment(L""), "PWD"), "");
}

TEST(ChildEnvironment, OurTerminalsDescriptionComesBeforeOthers) {
  const TempDir share;
  setenv("TD_SHARE", share.path().c_str(), 1);
  sessionEnvironment().hide("TERMINFO_DIRS");
  EXPECT_EQ(valueIn(here(), "TERMINFO_DIRS"), "") << "not installed";
  share.makeDir("terminfo");
  share.makeDir("terminfo/a");
  share.write("terminfo/a/ansi", "");
  EXPECT_EQ(valueIn(here(), "TERMINFO_DIRS"), share.path("terminfo:"));
  sessionEnvironment().set("TERMINFO_DIRS", "/mine:/other");
  EXPECT_EQ(valueIn(here(), "TERMINFO_DIRS"), share.path("terminfo:/mine:/other"));
}

TEST(ChildEnvironment, LineEditorsReadOurSettingsUnlessTheUserNamesOthers) {
  const TempDir home, share;
  setenv("HOME", home.path().c_str(), 1);
  setenv("TD_SHARE", share.path().c_str(), 1);
  configuredEnvironment().set("INPUTRC", nullptr);
  sessionEnvironment().hide("INPUTRC");
  EXPECT_EQ(valueIn(here(), "INPUTRC"), "") << "not installed";
  share.write("inputrc", "");
  share.write("inputrc.system", "");
  EXPECT_EQ(valueIn(here(), "INPUTRC"), share.path("inputrc.system"));
  home.write(".inputrc", "");
  EXPECT_EQ(valueIn(here(), "INPUTRC"), share.path("inputrc"));
  sessionEnvironment().set("INPUTRC", "/mine");
  EXPECT_EQ(valueIn(here(), "INPUTRC"), "/mine");
}
