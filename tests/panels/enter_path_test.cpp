#include <limits.h>
#include <unistd.h>

#include "foundation/path_info.h"
#include "panel_fixture.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/selection.h"
#include "panels/model/panel_position.h"
#include "panels/reader/directory_reader.h"
#include "support/as_user.h"

namespace {

using Names = std::vector<std::string>;

class EnterPathTest : public PanelTest {
 protected:
  EnterPathTest() : panel(left()) {
    panel.path = dir.wide();
    panel.pageSize = 10;
  }
  // As a round of the main loop does.
  void enter(const wchar_t* name) {
    panel.saved = {panel.top, panel.cursor};
    enterPath(panel, name);
  }
  void start() { enterPath(panel, L""); }

  TempDir dir;
  Panel& panel;
};

}  // namespace

TEST_F(EnterPathTest, GoingDownAndUpReturnsToThePosition) {
  for (int i = 0; i < 40; ++i) dir.makeDir("d" + std::to_string(100 + i));
  start();
  panel.top = 12;
  panel.cursor = 4;
  const std::string name = currentName(panel);
  enter(panel.currentEntry()->name());
  EXPECT_EQ(dir.path(name), bytes(panel.path));
  EXPECT_EQ(0, panel.currentIndex());
  EXPECT_EQ(0, panel.depth);
  enter(L"..");
  EXPECT_EQ(name, currentName(panel));
  EXPECT_EQ(12, panel.top);
  EXPECT_EQ(4, panel.cursor);
  EXPECT_EQ(-1, panel.depth);
}

TEST_F(EnterPathTest, UpFromWhereNoPositionIsStoredFindsTheName) {
  for (int i = 0; i < 40; ++i) dir.makeDir("d" + std::to_string(100 + i));
  panel.path = dir.wide("d130");
  start();
  enter(L"..");
  EXPECT_EQ("d130", currentName(panel));
  EXPECT_EQ(31 - 10 + 1, panel.top);
  EXPECT_EQ(9, panel.cursor);
  panel.path = dir.wide("d104");
  start();
  enter(L"..");
  EXPECT_EQ("d104", currentName(panel));
  EXPECT_EQ(0, panel.top);
  for (const auto& [name, top] : {std::pair{"d108", 0}, std::pair{"d109", 1}}) {
    panel.path = dir.wide(name);
    start();
    enter(L"..");
    EXPECT_EQ(name, currentName(panel));
    EXPECT_EQ(top, panel.top);
    EXPECT_EQ(9, panel.cursor);
  }
}

TEST_F(EnterPathTest, AStoredPositionThatShowsAnotherNameGivesWayToASearch) {
  for (const char* name : {"b", "c"}) dir.makeDir(name);
  start();
  selectName(panel, L"b");
  enter(L"b");
  dir.makeDir("a");
  enter(L"..");
  EXPECT_EQ("b", currentName(panel));
}

TEST_F(EnterPathTest, AStoredPositionPastTheListAndALostNameGiveTheFirstEntry) {
  for (int i = 0; i < 30; ++i) dir.makeDir("d" + std::to_string(100 + i));
  start();
  selectName(panel, L"d129");
  enter(L"d129");
  for (int i = 0; i < 30; ++i) rmdir(dir.path("d" + std::to_string(100 + i)).c_str());
  enter(L"..");
  EXPECT_EQ(0, panel.top);
  EXPECT_EQ(0, panel.cursor);
}

// Fifty levels are stored, the first twenty are restored, the deeper ones found by their names.
TEST_F(EnterPathTest, TwentyFiveLevelsDownAndUp) {
  std::string path;
  for (int level = 0; level < 25; ++level) {
    for (const char* name : {"a", "b", "z"}) {
      const std::string made = path + name;
      dir.makeDir(made);
    }
    path += "b/";
  }
  start();
  for (int level = 0; level < 25; ++level) {
    panel.top = 1;  // a scrolled position that a search wouldn't give
    panel.cursor = 1;
    ASSERT_EQ("b", currentName(panel));
    enter(L"b");
  }
  EXPECT_EQ(24, panel.depth);
  for (int level = 24; level >= 0; --level) {
    enter(L"..");
    ASSERT_EQ("b", currentName(panel)) << level;
    const bool restored = level < 20;
    EXPECT_EQ(restored ? 1 : 0, panel.top) << level;
    EXPECT_EQ(restored ? 1 : 2, panel.cursor) << level;
  }
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ(-1, panel.depth);
}

TEST_F(EnterPathTest, TheDepthNeverFallsBelowNone) {
  dir.makeDir("a");
  panel.path = dir.wide("a");
  start();
  for (int i = 0; i < 10; ++i) enter(L"..");
  EXPECT_EQ(-1, panel.depth);
  EXPECT_EQ("/", bytes(panel.path));
  enter(L"tmp");
  EXPECT_EQ(0, panel.depth);
}

TEST_F(EnterPathTest, TheDepthStopsAtItsLargestValue) {
  dir.makeDir("a");
  start();
  panel.depth = SHRT_MAX;
  enter(L"a");
  EXPECT_EQ(SHRT_MAX, panel.depth);
}

TEST_F(EnterPathTest, NamesAreEnteredAsTheyAre) {
  for (const char* name : {"...", "a\\b", "12:30", "\xFF", "[x]", "new\nline", "~"}) {
    dir.makeDir(name);
    panel.path = dir.wide();
    start();
    enter(decodeFileName(name).data());
    EXPECT_EQ(dir.path(name), bytes(panel.path));
    enter(L"..");
    EXPECT_EQ(name, currentName(panel));
  }
}

TEST_F(EnterPathTest, TheWorkingDirectoryFollows) {
  dir.makeDir("a");
  start();
  enter(L"a");
  EXPECT_EQ(dir.path("a"), bytes(currentDir()));
  enter(L"..");
  EXPECT_EQ(dir.path(), bytes(currentDir()));
}

TEST_F(EnterPathTest, InTheRootUpStaysThere) {
  panel.path = L"/";
  start();
  enter(L"..");
  EXPECT_EQ("/", bytes(panel.path));
  EXPECT_EQ(0, directoryHistory().count());
}

TEST_F(EnterPathTest, TheDirectoryLeftGoesIntoTheHistoryOnce) {
  for (const char* sub : {"a", "a/b"}) dir.makeDir(sub);
  start();
  EXPECT_EQ(0, directoryHistory().count());
  panel.top = 1;
  panel.cursor = 2;
  enter(L"a");
  EXPECT_EQ((Names{dir.path()}), stored(directoryHistory()));
  EXPECT_EQ(dir.path(), bytes(panel.previousPath));
  EXPECT_EQ(1, panel.previous.top);
  EXPECT_EQ(2, panel.previous.cursor);
  enter(L"b");
  EXPECT_EQ((Names{dir.path(), dir.path("a")}), stored(directoryHistory()));
  enterPath(panel, L"", KeepTags::Yes);
  EXPECT_EQ(2, directoryHistory().count());
  EXPECT_EQ(dir.path("a"), bytes(panel.previousPath));
}

TEST_F(EnterPathTest, GoingUpTakesTheDirectoryJustLeftOutOfTheHistory) {
  for (const char* sub : {"a", "a/b"}) dir.makeDir(sub);
  start();
  enter(L"a");
  enter(L"b");
  enter(L"..");
  EXPECT_EQ((Names{dir.path(), dir.path("a")}), stored(directoryHistory()));
  EXPECT_EQ(dir.path("a/b"), bytes(panel.previousPath));
  enter(L"..");
  EXPECT_EQ((Names{dir.path()}), stored(directoryHistory()));
}

TEST_F(EnterPathTest, AJumpFeedsTheHistoryWithTheDirectoryShownBefore) {
  for (const char* sub : {"a", "b"}) dir.makeDir(sub);
  panel.path = dir.wide("a");
  start();
  EXPECT_TRUE(goToPath(panel, dir.wide("b")));
  EXPECT_EQ((Names{dir.path("a")}), stored(directoryHistory()));
  EXPECT_EQ(dir.path("a"), bytes(panel.previousPath));
  EXPECT_TRUE(changeDirectoryExact(panel, panel.previousPath));
  enterPath(panel, L"", KeepTags::No, 0, 0);
  EXPECT_EQ(dir.path("a"), bytes(panel.path));
  EXPECT_EQ(dir.path("b"), bytes(panel.previousPath));
}

TEST_F(EnterPathTest, DirectoriesThatDifferInCaseAreTwo) {
  for (const char* sub : {"Foo", "foo"}) {
    dir.makeDir(sub);
    dir.write(std::string(sub) + "/x", "1");
  }
  panel.path = dir.wide("Foo");
  start();
  changeTag(panel, *entryNamed(panel, "x"), TagMode::Tag);
  EXPECT_TRUE(changeDirectory(panel, dir.wide("foo")));
  enterPath(panel, L"");
  EXPECT_EQ(0, panel.taggedCount);
  EXPECT_EQ((Names{dir.path("Foo")}), stored(directoryHistory()));
}

TEST_F(EnterPathTest, ARereadInPlaceKeepsTagsAndPosition) {
  for (const char* name : {"a", "b", "c"}) dir.write(name, "12");
  start();
  selectName(panel, L"b");
  changeTag(panel, *entryNamed(panel, "c"), TagMode::Tag);
  enterPath(panel, L"", KeepTags::Yes);
  EXPECT_EQ("b", currentName(panel));
  EXPECT_EQ(1, panel.taggedCount);
  EXPECT_EQ(2, panel.taggedSize);
}

TEST_F(EnterPathTest, AGivenPositionReplacesWhatTheReadLeft) {
  for (int i = 0; i < 20; ++i) dir.write("f" + std::to_string(100 + i), "");
  enterPath(panel, L"", KeepTags::No, 5, 3);
  EXPECT_EQ(5, panel.top);
  EXPECT_EQ(3, panel.cursor);
  enterPath(panel, L"", KeepTags::No, 0, 7);
  EXPECT_EQ(0, panel.top);
  EXPECT_EQ(7, panel.cursor);
}

TEST_F(EnterPathTest, TheQuickSearchEnds) {
  dir.makeDir("a");
  panel.quickSearch = L"x";
  start();
  EXPECT_TRUE(panel.quickSearch.empty());
}

TEST_F(EnterPathTest, AnUnreadableSubdirectoryLeadsBackToItsName) {
  dir.openToAll();
  for (const char* name : {"a", "b", "locked"}) dir.makeDir(name);
  dir.chmod("locked", 0);
  EXPECT_EQ(0, runAsUser([this] {
              start();
              selectName(panel, L"locked");
              enter(L"locked");
              EXPECT_EQ(dir.path(), bytes(panel.path));
              EXPECT_EQ("locked", currentName(panel));
              EXPECT_EQ(-1, panel.depth);
              EXPECT_EQ(0, directoryHistory().count());
              EXPECT_TRUE(panel.previousPath.empty());
            }));
}

TEST_F(EnterPathTest, AVanishedDirectoryCanBeEnteredAndLeft) {
  for (const char* sub : {"a", "a/b"}) dir.makeDir(sub);
  panel.path = dir.wide("a");
  start();
  rmdir(dir.path("a/b").c_str());
  rmdir(dir.path("a").c_str());
  enter(L"b");
  EXPECT_EQ((Names{".."}), listed(panel));
  enter(L"..");
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ((Names{".."}), listed(panel));
}

TEST_F(EnterPathTest, AVanishedDirectoryThatIsShownLeadsUpToWhatExists) {
  dir.makeDir("stay");
  for (const char* sub : {"stay/a", "stay/a/b", "stay/a/b/c"}) dir.makeDir(sub);
  panel.path = dir.wide("stay/a/b/c");
  start();
  for (const char* sub : {"stay/a/b/c", "stay/a/b", "stay/a"}) rmdir(dir.path(sub).c_str());
  enterPath(panel, L"", KeepTags::Yes);
  EXPECT_EQ((Names{".."}), listed(panel));
  enter(L"..");
  EXPECT_EQ(dir.path("stay"), bytes(panel.path));
}

TEST_F(EnterPathTest, AnArchiveThatWentWithItsDirectoryLeadsUpToWhatExists) {
  dir.makeDir("sub");
  dir.write("sub/x.zip", "");
  panel.path = dir.wide("sub/x.zip");
  panel.archive = std::make_unique<FakeArchive>(panel.path, Names{"a"}, nullptr);
  start();
  unlink(dir.path("sub/x.zip").c_str());
  rmdir(dir.path("sub").c_str());
  enter(L"..");
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(EnterPathTest, APanelThatIsOffForgetsTheListOfTheDirectoryItLeft) {
  dir.makeDir("a");
  dir.write("a/same", "1");
  dir.write("same", "1");
  start();
  changeTag(panel, *entryNamed(panel, "same"), TagMode::Tag);
  panel.showing = false;
  EXPECT_TRUE(goToPath(panel, L"a"));
  EXPECT_TRUE(panel.needsRead);
  EXPECT_EQ(0, panel.count());
  EXPECT_EQ((Names{dir.path()}), stored(directoryHistory()));
  panel.showing = true;
  readDirectory(panel);
  EXPECT_EQ((Names{"..", "same"}), listed(panel));
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(EnterPathTest, ATreeBesideFollowsThePanel) {
  RecordingTree tree;
  dir.makeDir("a");
  start();
  right().style = PanelStyle::Tree;
  tree.calls.clear();
  enter(L"a");
  EXPECT_EQ("select " + dir.path("a"), tree.calls.back());
  right().type = PanelType::Info;
  tree.calls.clear();
  enter(L"..");
  for (const std::string& call : tree.calls) EXPECT_NE("select", call.substr(0, 6));
}

TEST_F(EnterPathTest, AReadErrorEndsWithTheNextMove) {
  panel.readError = 5;
  start();
  EXPECT_EQ(0, panel.readError);
}

TEST_F(EnterPathTest, TwoHundredLevelsDownAndUp) {
  panel.path = dir.wide();
  start();
  std::string path;
  for (int level = 0; level < 200; ++level) {
    dir.makeDir(path + "d");
    enterPath(panel, L"", KeepTags::Yes);
    enter(L"d");
    path += "d/";
    ASSERT_EQ((Names{".."}), listed(panel));
  }
  for (int level = 0; level < 200; ++level) enter(L"..");
  EXPECT_EQ(dir.path(), bytes(panel.path));
}
