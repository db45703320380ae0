#include "panels/commands/change_directory.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

#include "foundation/path_info.h"
#include "language/environment.h"
#include "panel_fixture.h"
#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {

class ChangeDirectoryTest : public PanelTest {
 protected:
  ChangeDirectoryTest() : panel(left()) { panel.path = dir.wide(); }

  TempDir dir;
  Panel& panel;
};

// The variables of the process are read once, those of the session whenever one is asked for.
class SessionHome {
 public:
  explicit SessionHome(const std::string& path) { sessionEnvironment().set("HOME", path.c_str()); }
  ~SessionHome() { sessionEnvironment().set("HOME", nullptr); }
  SessionHome(const SessionHome&) = delete;
  SessionHome& operator=(const SessionHome&) = delete;
};

}  // namespace

TEST_F(ChangeDirectoryTest, TakesAbsoluteAndRelativePaths) {
  dir.makeDir("a");
  dir.makeDir("a/b");
  EXPECT_TRUE(changeDirectory(panel, L"a"));
  EXPECT_EQ(dir.path("a"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L"b"));
  EXPECT_EQ(dir.path("a/b"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, dir.wide()));
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L"/"));
  EXPECT_EQ("/", bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, UnderstandsTypedForms) {
  for (const char* sub : {"a", "a/b", "a/b/c"}) dir.makeDir(sub);
  EXPECT_TRUE(changeDirectory(panel, L"a\\b\\.\\c/"));
  EXPECT_EQ(dir.path("a/b/c"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L".."));
  EXPECT_EQ(dir.path("a/b"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L"c"));
  EXPECT_TRUE(changeDirectory(panel, L"..."));
  EXPECT_EQ(dir.path("a"), bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, AFailureLeavesThePanelAlone) {
  dir.write("file", "");
  for (const wchar_t* path : {L"missing", L"file", L"file/x", L"a:b:c", L"/dev/null",
                              L"/................................................"}) {
    EXPECT_FALSE(changeDirectory(panel, path)) << bytes(path);
    EXPECT_EQ(dir.path(), bytes(panel.path));
  }
}

TEST_F(ChangeDirectoryTest, NamesThatLookLikePatternsAreNames) {
  for (const char* name : {"[x]", "a*", "abc", "{a,b}", "README"}) dir.makeDir(name);
  EXPECT_TRUE(changeDirectory(panel, L"[x]"));
  EXPECT_EQ(dir.path("[x]"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L"../{a,b}"));
  EXPECT_TRUE(changeDirectory(panel, L"../a*"));
  EXPECT_EQ(dir.path("a*"), bytes(panel.path));
  EXPECT_FALSE(changeDirectory(panel, L"../readme"));
}

TEST_F(ChangeDirectoryTest, AStoredPathMayHoldARealNameThatCannotBeTyped) {
  dir.makeDir("12:30");
  dir.makeDir("a\\b");
  EXPECT_TRUE(changeDirectory(panel, dir.wide("12:30")));
  EXPECT_EQ(dir.path("12:30"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, dir.wide("a\\b")));
  EXPECT_EQ(dir.path("a\\b"), bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, ADirectoryOfExactlyThatNameComesBeforeTheRulesOfTypedText) {
  sessionEnvironment().set("TDTEST", "/");
  for (const char* name : {"...", "a\\b", "a:b", "ab:c", "$TDTEST", "~", "....", " x "}) {
    for (const char* start : {"", "start/"}) {
      dir.makeDir("start");
      dir.makeDir(start + std::string(name));
      ASSERT_TRUE(changeDirectoryExact(panel, dir.wide(start)));
      EXPECT_TRUE(changeDirectory(panel, decodeFileName(name))) << name;
      EXPECT_EQ(dir.path(start + std::string(name)), bytes(panel.path));
      ASSERT_TRUE(changeDirectoryExact(panel, L"/"));
      EXPECT_TRUE(changeDirectory(panel, dir.wide(start + std::string(name)))) << name;
      EXPECT_EQ(dir.path(start + std::string(name)), bytes(panel.path));
    }
  }
  sessionEnvironment().set("TDTEST", nullptr);
}

TEST_F(ChangeDirectoryTest, TheNearestDirectoryIsTheOneItselfOrTheFirstAboveThatIsThere) {
  dir.makeDir("a");
  dir.makeDir("a/...");
  dir.write("a/file", "");
  const std::pair<const char*, const char*> rows[] = {
      {"a/...", "a/..."}, {"a/.../gone/deep", "a/..."}, {"a/file", "a"}, {"a/file/x", "a"}};
  for (const auto& [wanted, reached] : rows) {
    changeToNearest(panel, dir.wide(wanted));
    EXPECT_EQ(dir.path(reached), bytes(panel.path)) << wanted;
  }
  changeToNearest(panel, L"/no such/place");
  EXPECT_EQ("/", bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, TheNearestDirectoryIsLookedForAlsoWhereThePanelIs) {
  dir.makeDir("gone");
  panel.path = dir.wide("gone");
  ASSERT_EQ(rmdir(dir.path("gone").c_str()), 0);
  changeToNearest(panel, dir.wide("gone"));
  EXPECT_EQ(dir.path(), bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, TheWorkingDirectoryFollowsOrSaysWhyNot) {
  dir.makeDir("gone");
  panel.path = dir.wide("gone");
  EXPECT_EQ(setWorkingDirectory(panel), 0);
  EXPECT_EQ(dir.path("gone"), bytes(currentDir()));
  ASSERT_EQ(rmdir(dir.path("gone").c_str()), 0);
  EXPECT_EQ(setWorkingDirectory(panel), ENOENT);
  panel.path = dir.wide();
  {
    FaultHook refuse("chdir", EACCES);
    EXPECT_EQ(setWorkingDirectory(panel), EACCES);
  }
  EXPECT_EQ(setWorkingDirectory(panel), 0);
}

TEST_F(ChangeDirectoryTest, AnExactPathIsTakenAsItIs) {
  dir.makeDir("...");
  EXPECT_TRUE(changeDirectoryExact(panel, dir.wide("...")));
  EXPECT_EQ(dir.path("..."), bytes(panel.path));
  EXPECT_TRUE(changeDirectoryExact(panel, dir.wide() + L"/"));
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_FALSE(changeDirectoryExact(panel, L"..."));
  EXPECT_FALSE(changeDirectoryExact(panel, L""));
  EXPECT_TRUE(changeDirectoryExact(panel, L"/"));
  EXPECT_EQ("/", bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, ATildeIsExpandedWhenNoSuchDirectoryIsThere) {
  dir.makeDir("home");
  dir.makeDir("home/sub");
  const SessionHome home(dir.path("home"));
  EXPECT_TRUE(changeDirectory(panel, L"~/sub"));
  EXPECT_EQ(dir.path("home/sub"), bytes(panel.path));
  EXPECT_TRUE(changeDirectory(panel, L"~"));
  EXPECT_EQ(dir.path("home"), bytes(panel.path));
  dir.makeDir("home/~");
  EXPECT_TRUE(changeDirectory(panel, L"~"));
  EXPECT_EQ(dir.path("home/~"), bytes(panel.path));
  EXPECT_FALSE(changeDirectoryExact(panel, L"~"));
}

TEST_F(ChangeDirectoryTest, ADirectoryBelowAnUnreadableOneCanBeReached) {
  dir.openToAll();
  for (const char* sub : {"a", "a/b"}) dir.makeDir(sub);
  dir.chmod("a", 0711);
  EXPECT_EQ(0, runAsUser([this] {
              EXPECT_TRUE(changeDirectory(panel, L"a/b"));
              EXPECT_EQ(dir.path("a/b"), bytes(panel.path));
            }));
}

TEST_F(ChangeDirectoryTest, OnlyThePartThatDiffersIsTested) {
  for (const char* sub : {"a", "a/b", "a/b/c"}) dir.makeDir(sub);
  panel.path = dir.wide("a/b");
  FaultHook counter;
  EXPECT_TRUE(changeDirectory(panel, L"c"));
  EXPECT_EQ(1, counter.calls("stat"));
  EXPECT_TRUE(changeDirectory(panel, L".."));
  EXPECT_EQ(1, counter.calls("stat"));
}

TEST_F(ChangeDirectoryTest, ATooLongPathIsRefused) {
  std::wstring path;
  while (path.size() < MaxPathLength) path += L"/abcdefghi";
  EXPECT_FALSE(changeDirectoryExact(panel, path.c_str()));
  EXPECT_EQ(dir.path(), bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, GoingToAPathReadsItFromTheTop) {
  dir.makeDir("a");
  dir.write("a/x", "");
  panel.top = 3;
  panel.cursor = 4;
  panel.depth = 2;
  EXPECT_TRUE(goToPath(panel, L"a"));
  EXPECT_EQ((std::vector<std::string>{"..", "x"}), listed(panel));
  EXPECT_EQ(0, panel.currentIndex());
  EXPECT_EQ(-1, panel.depth);
  EXPECT_FALSE(goToPath(panel, L"nowhere"));
  EXPECT_EQ(dir.path("a"), bytes(panel.path));
}

TEST_F(ChangeDirectoryTest, AnEmptyPathOfThePanelDoesNotHinderAnAbsoluteOne) {
  panel.path = L"";
  EXPECT_TRUE(changeDirectory(panel, dir.wide()));
  EXPECT_EQ(dir.path(), bytes(panel.path));
}
