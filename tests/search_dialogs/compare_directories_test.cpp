#include "search_dialogs/compare_directories.h"

#include "filecommands/command_test.h"
#include "options/options.h"
#include "support/fault_hook.h"

namespace {

constexpr char CompareTitle[] = "Directory Compare";
constexpr char Nothing[] = "No files meet the specified conditions";

class CompareDirectoriesTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    GlobalOptions::CMPTime = 0;
    GlobalOptions::CMPSize = 0;
    GlobalOptions::CMPUnmatched = false;
    GlobalOptions::CMPContents = false;
    GlobalOptions::CMPMask = L"*";
  }
  void compare(const std::vector<Step>& steps) {
    play(steps, [] { compareDirectories(); });
  }
  void both(const std::string& name, const std::string& a, const std::string& b) {
    file("left/" + name, a);
    file("right/" + name, b);
  }
  static std::string tagged(const Panel& panel) {
    std::string names;
    int count = 0;
    for (const entry* item : panel.entries) {
      if (!item->tagged) continue;
      ++count;
      names += (names.empty() ? "" : " ") + bytePath(item->name());
    }
    EXPECT_EQ(panel.taggedCount, count);
    return names;
  }
};

}  // namespace

TEST_F(CompareDirectoriesTest, TheDialogStandsAsItIsDesigned) {
  show();
  compare({{CompareTitle, {Key::Esc}, "compare"}});
}

TEST_F(CompareDirectoriesTest, WithoutAnyRuleItSaysThatNothingIsThere) {
  both("f", "a", "bb");
  file("left/only");
  show();
  compare({{CompareTitle, {Key::Enter}}, {Nothing, {Key::Enter}, "compare_nothing"}});
  EXPECT_EQ(tagged(left()) + tagged(right()), "");
}

TEST_F(CompareDirectoriesTest, ContentsAreCompared) {
  both("differ", "aa", "ab");
  both("empty", "", "");
  both("same", "aa", "aa");
  both("size", "a", "aa");
  GlobalOptions::CMPContents = true;
  show();
  compare({{CompareTitle, {Key::Enter}}});
  EXPECT_EQ(tagged(left()), "differ size");
  EXPECT_EQ(tagged(right()), "differ size");
  EXPECT_EQ(left().taggedSize, 3);
}

TEST_F(CompareDirectoriesTest, AFileThatFailsTheMaskIsComparedAndNotTagged) {
  both("a.c", "aa", "ab");
  both("b.h", "aa", "ab");
  GlobalOptions::CMPContents = true;
  GlobalOptions::CMPMask = L"*.c";
  show();
  const FaultHook hook;
  compare({{CompareTitle, {Key::Enter}}});
  EXPECT_EQ(hook.calls("openAt"), 4);
  EXPECT_EQ(tagged(left()), "a.c");
}

TEST_F(CompareDirectoriesTest, EscLeavesTheTagsAlone) {
  both("f", "a", "bb");
  GlobalOptions::CMPSize = 3;
  show();
  tag("f");
  compare({{CompareTitle, {Key::Esc}}});
  EXPECT_EQ(tagged(left()), "f");
}

TEST_F(CompareDirectoriesTest, AFileThatCannotBeReadClearsAllTags) {
  both("a", "aa", "ab");
  both("b", "aa", "ab");
  GlobalOptions::CMPContents = true;
  show();
  tag("b");
  std::filesystem::remove(dir.path("right/b"));
  compare({{CompareTitle, {Key::Enter}}, {"No such file", {Key::Enter}}});
  EXPECT_EQ(tagged(left()) + tagged(right()), "");
}

TEST_F(CompareDirectoriesTest, TheKeysChooseTheRules) {
  both("f", "a", "bb");
  show();
  compare({{CompareTitle, {Key::Tab, Key::Down, Key::Enter}}});
  EXPECT_EQ(GlobalOptions::CMPSize, 1);
  EXPECT_EQ(tagged(left()), "");
  EXPECT_EQ(tagged(right()), "f");
}

TEST_F(CompareDirectoriesTest, APanelThatShowsNoFilesLeavesNothingToCompare) {
  show();
  right().type = PanelType::Info;
  compare({});
  right().type = PanelType::Files;
  right().style = PanelStyle::Tree;
  compare({});
}

TEST_F(CompareDirectoriesTest, AnArchiveHasNoContentsToCompare) {
  both("f", "aa", "ab");
  GlobalOptions::CMPContents = true;
  for (const int side : {0, 1}) {
    show();
    panelPair().side[side].archive =
        std::make_unique<FakeArchive>(L"/pack.zip", std::vector<std::string>(), nullptr);
    compare({{CompareTitle, {Key::Enter}, "compare_archive"}, {Nothing, {Key::Enter}}});
    panelPair().side[side].archive.reset();
    EXPECT_TRUE(GlobalOptions::CMPContents) << "for the next time";
  }
}

// What another program does between the listing and the comparison.
TEST_F(CompareDirectoriesTest, AFileThatChangesMeanwhileIsComparedAsItIs) {
  struct Row {
    std::function<void()> change;
    const char* tagged;
  };
  const Row rows[] = {{[this] { dir.write("right/f", "aa"); }, ""},
                      {[this] { dir.write("right/f", "a"); }, "f"},
                      {[this] { dir.write("left/f", "longer"); }, "f"},
                      {[this] {
                         std::filesystem::remove(dir.path("right/f"));
                         dir.makeDir("right/f");
                       },
                       "f"},
                      {[this] {
                         std::filesystem::remove(dir.path("right/f"));
                         std::filesystem::create_hard_link(dir.path("left/f"), dir.path("right/f"));
                       },
                       ""}};
  GlobalOptions::CMPContents = true;
  for (const Row& row : rows) {
    std::filesystem::remove(dir.path("right/f"));
    both("f", "aa", "ab");
    show();
    row.change();
    std::vector<Step> steps = {{CompareTitle, {Key::Enter}}};
    if (!*row.tagged) steps.push_back({Nothing, {Key::Enter}});
    compare(steps);
    EXPECT_EQ(tagged(left()), row.tagged);
    EXPECT_EQ(tagged(right()), row.tagged);
  }
}
