#include "filecommands/destination.h"

#include <cstdlib>

#include "fileops/fileops_test.h"
#include "language/environment.h"

namespace {

class DestinationTest : public FileOpsTest {
 protected:
  DestinationTest() {
    context.base = dir.wide();
    context.other = L"/other";
    context.proposed = L"/other/name";
    context.entryName = L"name";
  }
  // The path, or "error".
  std::string resolve(const std::string& text) {
    result = Destination();
    error = resolveDestination(decodeFileName(text.c_str()), context, result);
    return error == 0 ? toUtf8(result.path).data() : "error";
  }

  DestinationContext context;
  Destination result;
  int error = 0;
};

}  // namespace

TEST_F(DestinationTest, RelativeTextStartsAtTheSourcesDirectory) {
  EXPECT_EQ(resolve("new"), dir.path("new"));
  EXPECT_FALSE(result.asDirectory);
  EXPECT_EQ(resolve("  new  "), dir.path("new"));
  EXPECT_EQ(resolve("a\\b"), dir.path("a/b"));
}

TEST_F(DestinationTest, ASlashAtTheEndOrTwoDotsMeanADirectory) {
  EXPECT_EQ(resolve("sub/"), dir.path("sub"));
  EXPECT_TRUE(result.asDirectory);
  EXPECT_EQ(resolve(".."), byteParent(dir.path()));
  EXPECT_TRUE(result.asDirectory);
  EXPECT_EQ(resolve("../x"), byteParent(dir.path()) + "/x");
  EXPECT_FALSE(result.asDirectory);
}

TEST_F(DestinationTest, AColonOrTooManyDotsAreNoPath) {
  EXPECT_EQ(resolve("12:30"), "error");
  EXPECT_EQ(resolve("/.."), "error");
}

TEST_F(DestinationTest, WhatWasProposedIsTakenAsItIs) {
  context.other = L"/with:colon/back\\slash";
  context.entryName = L" 12:30 ...";
  context.proposed = context.other + L"/" + context.entryName;
  EXPECT_EQ(resolve(toUtf8(context.proposed).data()), "/with:colon/back\\slash/ 12:30 ...");
  context.proposed = L"x:y\\z";
  EXPECT_EQ(resolve("x:y\\z"), dir.path("x:y\\z"));
}

TEST_F(DestinationTest, TheRealDirectoryStaysWhenOnlyTheNameIsChanged) {
  context.other = L"/with:colon/...";
  context.entryName = L"10:00";
  context.proposed = L"/with:colon/.../10:00";
  EXPECT_EQ(resolve("/with:colon/.../new"), "/with:colon/.../new");
  EXPECT_EQ(resolve("/with:colon/.../sub/"), "/with:colon/.../sub");
  EXPECT_TRUE(result.asDirectory);
  EXPECT_EQ(resolve("10:00"), dir.path("10:00"));
}

TEST_F(DestinationTest, WhatExistsAsItIsWrittenIsMeant) {
  sessionEnvironment().set("TDTESTPLACE", "/some/place");
  for (const char* name : {"...", "12:30", "a\\b", "$TDTESTPLACE", " x "}) {
    dir.makeDir(name);
    EXPECT_EQ(resolve(name), dir.path(name));
    EXPECT_EQ(resolve(dir.path(name)), dir.path(name));
    EXPECT_EQ(resolve(std::string(name) + "/"), dir.path(name));
    EXPECT_TRUE(result.asDirectory) << name;
  }
  context.other = dir.wide();
  EXPECT_EQ(resolve(dir.path("12:30")), dir.path("12:30"));
  sessionEnvironment().set("TDTESTPLACE", nullptr);
}

TEST_F(DestinationTest, SomethingNewStandsInTheDirectoryThatExistsAsItIsWritten) {
  sessionEnvironment().set("TDTESTPLACE", "/some/place");
  for (const char* name : {"...", "12:30", "a\\b", "$TDTESTPLACE"}) {
    dir.makeDir(name);
    EXPECT_EQ(resolve(name + std::string("/new")), dir.path(name + std::string("/new")));
    EXPECT_EQ(resolve(name + std::string("/sub\\new")), dir.path(name + std::string("/sub/new")));
    EXPECT_EQ(resolve(dir.path(name) + "/new/"), dir.path(name + std::string("/new")));
    EXPECT_TRUE(result.asDirectory);
  }
  EXPECT_EQ(resolve("....../new"), "error");
  sessionEnvironment().set("TDTESTPLACE", nullptr);
}

TEST_F(DestinationTest, ATildeIsTheHomeDirectoryUnlessSuchAFileExists) {
  sessionEnvironment().set("HOME", "/home/somebody");
  EXPECT_EQ(resolve("~/x"), "/home/somebody/x");
  dir.makeDir("~");
  dir.write("~/x", "");
  EXPECT_EQ(resolve("~/x"), dir.path("~/x"));
  sessionEnvironment().set("HOME", nullptr);
}

TEST_F(DestinationTest, AVariableIsReplacedOnlyWhenItIsSet) {
  sessionEnvironment().set("TDTESTPLACE", "/some/place");
  EXPECT_EQ(resolve("$TDTESTPLACE"), "/some/place");
  EXPECT_EQ(resolve("cost$5.txt"), dir.path("cost$5.txt"));
  sessionEnvironment().set("TDTESTPLACE", nullptr);
}

TEST_F(DestinationTest, AProposedNameIsNeverExpanded) {
  sessionEnvironment().set("TDTESTPLACE", "/some/place");
  context.proposed = L"$TDTESTPLACE";
  EXPECT_EQ(resolve("$TDTESTPLACE"), dir.path("$TDTESTPLACE"));
  context.proposed = L"";
  context.entryName = L"$TDTESTPLACE";
  EXPECT_EQ(resolve("$TDTESTPLACE"), dir.path("$TDTESTPLACE"));
  sessionEnvironment().set("TDTESTPLACE", nullptr);
}

TEST_F(DestinationTest, APathThatNobodyCanHoldIsTooLong) {
  EXPECT_EQ(resolve("/" + std::string(5000, 'a')), "error");
  EXPECT_EQ(error, ENAMETOOLONG);
}
