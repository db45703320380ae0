#include "language/environment.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "foundation/utf8.h"

namespace {

std::string value(Environment& layer, const char* name) {
  const char* text = layer.get(name);
  return text == nullptr ? "(unset)" : text;
}

std::string pathOf(const wchar_t* text) {
  return toUtf8(expandPathVariables(text)).data();
}
std::string commandOf(const wchar_t* text) {
  return toUtf8(expandCommandVariables(text)).data();
}

// Variables of the session for one test.
class SessionValue {
 public:
  SessionValue(const char* name, const char* value) : name_(name) {
    sessionEnvironment().set(name, value);
  }
  ~SessionValue() { sessionEnvironment().set(name_, nullptr); }
  SessionValue(const SessionValue&) = delete;
  SessionValue& operator=(const SessionValue&) = delete;

 private:
  const char* name_;
};

// environ as it is given to a test.
class OwnEnviron {
 public:
  explicit OwnEnviron(char** variables) : saved_(environ) { environ = variables; }
  ~OwnEnviron() { environ = saved_; }
  OwnEnviron(const OwnEnviron&) = delete;
  OwnEnviron& operator=(const OwnEnviron&) = delete;

 private:
  char** saved_;
};

}  // namespace

TEST(ExpandCommandVariables, WhatEachCommandIsToldAnewIsLeftToIt) {
  for (const char* name : {"PWD", "TERM", "LINES", "COLUMNS", "COLORTERM", "TERM_PROGRAM",
                           "TERM_PROGRAM_VERSION", "VTE_VERSION"}) {
    const SessionValue ofTheStart(name, "/start");
    const std::string text = std::string("echo $") + name + "/x";
    EXPECT_EQ(commandOf(fromUtf8(text.c_str()).data()), text);
  }
  const SessionValue similar("PWDX", "other");
  EXPECT_EQ(commandOf(L"echo $PWDX"), "echo other");
  const SessionValue old("OLDPWD", "/old");
  EXPECT_EQ(commandOf(L"echo $OLDPWD"), "echo /old");
}

TEST(Environment, ANearerLayerHidesTheOthers) {
  Environment process;
  Environment configured(&process);
  Environment session(&configured);
  process.set("A", "process");
  process.set("B", "process");
  process.set("C", "process");
  configured.set("A", "configured");
  configured.set("B", "configured");
  session.set("A", "session");
  EXPECT_EQ(value(session, "A"), "session");
  EXPECT_EQ(value(session, "B"), "configured");
  EXPECT_EQ(value(session, "C"), "process");
  EXPECT_EQ(value(session, "D"), "(unset)");
  EXPECT_EQ(value(process, "A"), "process");
}

TEST(Environment, NullAndEmptyValuesRemoveThePair) {
  Environment layer;
  layer.set("A", "1");
  layer.set("B", "2");
  layer.set("A", nullptr);
  layer.set("B", "");
  layer.set("NEVER", nullptr);
  EXPECT_EQ(value(layer, "A"), "(unset)");
  EXPECT_EQ(value(layer, "B"), "(unset)");
  EXPECT_EQ(layer.count(), 0);
}

TEST(Environment, ANewValueReplacesTheOldOne) {
  Environment layer;
  layer.set("A", "1");
  layer.set("A", "a much longer value than the one before it, on the heap");
  EXPECT_EQ(value(layer, "A"), "a much longer value than the one before it, on the heap");
  EXPECT_EQ(layer.count(), 1);
}

TEST(Environment, NamesAreKeptApartByCase) {
  Environment layer;
  layer.set("path", "small");
  layer.set("PATH", "large");
  EXPECT_EQ(value(layer, "path"), "small");
  EXPECT_EQ(value(layer, "PATH"), "large");
}

TEST(Environment, FlattenLetsTheNearerLayersWin) {
  Environment process;
  Environment configured(&process);
  Environment session(&configured);
  process.set("A", "process");
  process.set("Z", "process");
  configured.set("A", "configured");
  session.set("B", "session");
  Environment target;
  session.flatten(target);
  EXPECT_EQ(target.block(), (std::vector<std::string>{"A=configured", "B=session", "Z=process"}));
}

TEST(Environment, TheBlockFollowsEveryChange) {
  Environment layer;
  EXPECT_TRUE(layer.block().empty());
  layer.set("B", "2");
  layer.set("A", "1");
  EXPECT_EQ(layer.block(), (std::vector<std::string>{"A=1", "B=2"}));
  layer.set("B", "3");
  EXPECT_EQ(layer.block(), (std::vector<std::string>{"A=1", "B=3"}));
  layer.set("A", nullptr);
  EXPECT_EQ(layer.block(), (std::vector<std::string>{"B=3"}));
}

TEST(ProcessEnvironment, SplitsAtTheFirstEqualsSign) {
  char plain[] = "A=1", twice[] = "B=x=y", empty[] = "EMPTY=", odd[] = "NOTHING", nameless[] = "=v",
       again[] = "A=2";
  char* variables[] = {plain, twice, empty, odd, nameless, again, nullptr};
  OwnEnviron own(variables);
  ProcessEnvironment layer;
  EXPECT_EQ(layer.block(), (std::vector<std::string>{"A=1", "B=x=y", "EMPTY="}));
}

TEST(ProcessEnvironment, AnEmptyValueReachesTheChildren) {
  char empty[] = "EMPTY=";
  char* variables[] = {empty, nullptr};
  OwnEnviron own(variables);
  ProcessEnvironment layer;
  Environment session(&layer);
  Environment target;
  session.flatten(target);
  EXPECT_EQ(target.block(), (std::vector<std::string>{"EMPTY="}));
}

TEST(Environment, TheThreeLayersOfTheProgramAreChained) {
  configuredEnvironment().set("TD_TEST_LAYER", "configured");
  EXPECT_EQ(value(sessionEnvironment(), "TD_TEST_LAYER"), "configured");
  sessionEnvironment().set("TD_TEST_LAYER", "session");
  EXPECT_EQ(value(sessionEnvironment(), "TD_TEST_LAYER"), "session");
  EXPECT_EQ(value(configuredEnvironment(), "TD_TEST_LAYER"), "configured");
  EXPECT_EQ(value(processEnvironment(), "TD_TEST_LAYER"), "(unset)");
  sessionEnvironment().set("TD_TEST_LAYER", nullptr);
  configuredEnvironment().set("TD_TEST_LAYER", nullptr);
  const char* path = getenv("PATH");
  EXPECT_EQ(value(sessionEnvironment(), "PATH"), path == nullptr ? "(unset)" : path);
}

TEST(Environment, AHiddenNameDoesNotComeBackFromTheParents) {
  Environment process;
  Environment session(&process);
  process.set("A", "1");
  process.set("B", "2");
  session.set("A", "3");
  session.hide("A");
  session.hide("NEVER");
  EXPECT_EQ(value(session, "A"), "(unset)");
  EXPECT_EQ(value(process, "A"), "1");
  EXPECT_TRUE(session.block().empty());
  Environment target;
  session.flatten(target);
  EXPECT_EQ(target.block(), std::vector<std::string>{"B=2"});
  session.set("A", "4");
  EXPECT_EQ(value(session, "A"), "4");
  session.hide("A");
  session.set("A", nullptr);
  EXPECT_EQ(value(session, "A"), "1");
}

TEST(PathVariables, NamesAreReplacedWithTheirValues) {
  SessionValue a("TD_A", "/one");
  SessionValue b("TD_B2", "two");
  EXPECT_EQ(pathOf(L"$TD_A/x"), "/one/x");
  EXPECT_EQ(pathOf(L"/p/$TD_B2.txt"), "/p/two.txt");
  EXPECT_EQ(pathOf(L"$TD_A$"), "/one") << "a '$' behind the name goes with it";
  EXPECT_EQ(pathOf(L"$TD_A$x"), "/onex");
  EXPECT_EQ(pathOf(L"$TD_A$$TD_B2"), "/onetwo");
  EXPECT_EQ(pathOf(L"plain"), "plain");
  EXPECT_EQ(pathOf(L""), "");
}

TEST(PathVariables, AnUnsetNameGoesAndAnEmptyOneStays) {
  EXPECT_EQ(pathOf(L"/a/$TD_UNSET/b"), "/a//b");
  EXPECT_EQ(pathOf(L"a$"), "a$");
  EXPECT_EQ(pathOf(L"a$/b"), "a$/b");
  EXPECT_EQ(pathOf(L"$-x"), "$-x");
}

TEST(PathVariables, ATildeAtTheStartIsTheHomeDirectory) {
  SessionValue home("HOME", "/home/me");
  EXPECT_EQ(pathOf(L"~/x"), "/home/me/x");
  EXPECT_EQ(pathOf(L"~"), "/home/me");
  EXPECT_EQ(pathOf(L"~/"), "/home/me/");
  EXPECT_EQ(pathOf(L"~me/x"), "~me/x");
  EXPECT_EQ(pathOf(L"a~/x"), "a~/x");
}

TEST(PathVariables, TheRootAsHomeGivesOneSlash) {
  SessionValue home("HOME", "/");
  EXPECT_EQ(pathOf(L"~/x"), "/x");
}

TEST(PathVariables, AnUnsetHomeIsTakenFromTheUserDataBase) {
  const std::string before = value(processEnvironment(), "HOME");
  processEnvironment().set("HOME", nullptr);
  char* variables[] = {nullptr};
  {
    OwnEnviron own(variables);
    const passwd* user = getpwuid(geteuid());
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(pathOf(L"~/x"), std::string(user->pw_dir) + "/x");
  }
  if (before != "(unset)") processEnvironment().set("HOME", before.c_str());
}

TEST(PathVariables, AValueIsNotLookedAtAgain) {
  SessionValue a("TD_A", "$TD_A");
  EXPECT_EQ(pathOf(L"$TD_A/x"), "$TD_A/x");
}

TEST(PathVariables, BytesThatAreNoUtf8Survive) {
  SessionValue a("TD_A", "/caf\xE9");
  EXPECT_EQ(pathOf(L"$TD_A/x"), "/caf\xE9/x");
}

TEST(CommandVariables, NamesRunUpToWhiteSpaceDollarOrSlash) {
  SessionValue a("TD_A", "one");
  SessionValue dotted("TD_B.X", "dotted");
  EXPECT_EQ(commandOf(L"ls $TD_A"), "ls one");
  EXPECT_EQ(commandOf(L"ls $TD_A/x"), "ls one/x");
  EXPECT_EQ(commandOf(L"ls $TD_A\tb"), "ls one\tb");
  EXPECT_EQ(commandOf(L"ls $TD_B.X b"), "ls dotted b");
  EXPECT_EQ(commandOf(L"$TD_A$x"), "onex") << "a '$' behind the name goes with it";
  EXPECT_EQ(commandOf(L"$TD_A$$TD_A"), "oneone");
}

TEST(CommandVariables, ANameIsTakenAsWrittenElseInCapitals) {
  SessionValue a("TD_A", "one");
  SessionValue small("td_proxy", "small");
  SessionValue large("TD_PROXY", "large");
  EXPECT_EQ(commandOf(L"$td_a"), "one");
  EXPECT_EQ(commandOf(L"$td_proxy"), "small");
  EXPECT_EQ(commandOf(L"$TD_PROXY"), "large");
  EXPECT_EQ(commandOf(L"$Td_Proxy"), "large");
}

TEST(CommandVariables, AnUnknownNameStays) {
  EXPECT_EQ(commandOf(L"echo $TD_UNSET $"), "echo $TD_UNSET $");
  EXPECT_EQ(commandOf(L"echo $$ $? $(date) ${X}"), "echo $$ $? $(date) ${X}");
}

TEST(CommandVariables, TheScanGoesOnBehindTheValue) {
  SessionValue a("TD_A", "$TD_A");
  EXPECT_EQ(commandOf(L"$TD_A $TD_A"), "$TD_A $TD_A");
}

TEST(CommandVariables, AQuotedDollarIsNoVariable) {
  SessionValue a("TD_A", "one");
  EXPECT_EQ(commandOf(L"ls \\$TD_A"), "ls \\$TD_A");
  EXPECT_EQ(commandOf(L"ls \\\\$TD_A"), "ls \\\\one");
  EXPECT_EQ(commandOf(L"end\\"), "end\\");
}
