#include "fileops/fileops_test.h"
#include "fileops/other_device.h"
#include "support/mounts.h"

// What is mounted in a tree belongs to somebody else: it is neither deleted nor moved away.

namespace {

constexpr char Busy[] = "Device or resource busy (16)";

class MountPointsTest : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"tree", "tree/sub", "tree/sub/mount", "tree/sub/mount/deep", "to"}) {
      dir.makeDir(name);
    }
    dir.write("tree/a", "a");
    dir.write("tree/sub/b", "b");
    dir.write("tree/sub/mount/precious", "precious");
    dir.write("tree/sub/mount/deep/precious", "deep");
  }
  // While a question about the mount is up, the user can unmount it.
  void expectNothingOpenAtQuestions() {
    ui.onQuestion = [this](const auto&) {
      for (const auto& item : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed;
        const std::string open = std::filesystem::read_symlink(item.path(), closed);
        EXPECT_FALSE(open.starts_with(dir.path("tree/sub/mount"))) << open;
      }
    };
  }
  static const std::map<std::string, std::string>& mounted() {
    static const std::map<std::string, std::string> all{
        {"deep", "directory"}, {"deep/precious", "file deep"}, {"precious", "file precious"}};
    return all;
  }
  void expectMountWhole() { EXPECT_EQ(contents(dir.path("tree/sub/mount")), mounted()); }
  void expectToldOnce(const std::string& name) {
    ASSERT_EQ(asked(), Texts{Busy});
    EXPECT_EQ(ui.questions[0].caption, dir.path(name));
    EXPECT_EQ(ui.questions[0].buttons, AlertButtons::RetrySkip);
  }
};

}  // namespace

TEST_F(MountPointsTest, ADeletedTreeKeepsWhatIsMountedInItAndTheRestGoes) {
  expectNothingOpenAtQuestions();
  const InjectedMount mount(dir.path("tree/sub/mount"));
  ui.treeAnswers = {TreeAnswer::Yes};
  ui.answers = {Answer::Skip};
  EXPECT_EQ(removeDir("tree"), Outcome::LeftInPlace);
  expectToldOnce("tree/sub/mount");
  expectMountWhole();
  EXPECT_EQ(contents(dir.path("tree")).size(), 2U + mounted().size());
}

TEST_F(MountPointsTest, ARealMountOfTheSameFileSystemStays) {
  for (const char* name : {"real", "real/deep"}) dir.makeDir(name);
  dir.write("real/precious", "precious");
  dir.write("real/deep/precious", "deep");
  EXPECT_EQ(runInChild([&] {
              std::unique_ptr<InjectedMount> injected;
              if (!bindMount(dir.path("real"), dir.path("tree/sub/mount"))) {
                injected = std::make_unique<InjectedMount>(dir.path("tree/sub/mount"));
              }
              ui.treeAnswers = {TreeAnswer::Yes};
              ui.answers = {Answer::Skip, Answer::Skip};
              EXPECT_EQ(removeDir("tree"), Outcome::LeftInPlace);
              EXPECT_EQ(removeDir("tree/sub/mount"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts(2, Busy));
              EXPECT_EQ(ui.treeQuestions.size(), 1U);
              expectMountWhole();
              EXPECT_FALSE(dir.exists("tree/a"));
            }),
            0);
  EXPECT_EQ(contents(dir.path("real")), mounted());
}

TEST_F(MountPointsTest, AMountPointAsTheItemIsToldAndNotAskedAbout) {
  const InjectedMount mount(dir.path("tree/sub/mount"));
  ui.answers = {Answer::Skip, Answer::Cancel};
  EXPECT_EQ(removeDir("tree/sub/mount"), Outcome::Failed);
  EXPECT_EQ(removeDir("tree/sub/mount"), Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts(2, Busy));
  EXPECT_TRUE(ui.treeQuestions.empty());
  expectMountWhole();
}

TEST_F(MountPointsTest, AfterUnmountingRetryGoesOn) {
  auto mount = std::make_unique<InjectedMount>(dir.path("tree/sub/mount"));
  ui.treeAnswers = {TreeAnswer::Yes};
  ui.answers = {Answer::Retry};
  ui.onQuestion = [&](const auto&) { mount.reset(); };
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  expectToldOnce("tree/sub/mount");
  EXPECT_FALSE(dir.exists("tree"));
}

TEST_F(MountPointsTest, CancelAtAMountPointEndsTheDelete) {
  const InjectedMount mount(dir.path("tree/sub/mount"));
  ui.treeAnswers = {TreeAnswer::Yes};
  ui.answers = {Answer::Cancel};
  EXPECT_EQ(removeDir("tree"), Outcome::Cancelled);
  expectMountWhole();
}

TEST_F(MountPointsTest, ACleanUpLeavesAMountAlone) {
  const InjectedMount mount(dir.path("tree/sub/mount"));
  const std::string path = dir.path("tree");
  removeTreeQuietly(placeOf(path.c_str()));
  expectMountWhole();
  EXPECT_FALSE(dir.exists("tree/a"));
}

TEST_F(MountPointsTest, AMoveToAnotherDeviceLeavesTheMountAndTakesTheRest) {
  expectNothingOpenAtQuestions();
  const InjectedMount mount(dir.path("tree/sub/mount"));
  const OtherDevice other;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("tree", "to/tree"), Outcome::LeftInPlace);
  expectToldOnce("tree/sub/mount");
  expectMountWhole();
  EXPECT_EQ(contents(dir.path("tree")).size(), 2U + mounted().size());
  EXPECT_EQ(contents(dir.path("to")),
            (std::map<std::string, std::string>{{"tree", "directory"},
                                                {"tree/a", "file a"},
                                                {"tree/sub", "directory"},
                                                {"tree/sub/b", "file b"}}));
}

TEST_F(MountPointsTest, AMountPointAsTheItemOfAMoveStaysWhole) {
  const InjectedMount mount(dir.path("tree/sub/mount"));
  const OtherDevice other;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("tree/sub/mount", "to/mount"), Outcome::Failed);
  expectToldOnce("tree/sub/mount");
  expectMountWhole();
  EXPECT_TRUE(contents(dir.path("to")).empty());
}

TEST_F(MountPointsTest, AMoveThatMergesTakesNothingOutOfAMount) {
  for (const char* name : {"to/tree", "to/tree/sub", "to/tree/sub/mount"}) dir.makeDir(name);
  const InjectedMount mount(dir.path("tree/sub/mount"));
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("tree", "to/tree"), Outcome::LeftInPlace);
  expectToldOnce("tree/sub/mount");
  expectMountWhole();
  EXPECT_TRUE(contents(dir.path("to/tree/sub/mount")).empty());
  EXPECT_EQ(dir.read("to/tree/sub/b"), "b");
}

TEST_F(MountPointsTest, ACopyTakesWhatIsMounted) {
  const InjectedMount mount(dir.path("tree/sub/mount"));
  EXPECT_EQ(copy("tree", "to/tree"), Outcome::Done);
  EXPECT_EQ(contents(dir.path("to/tree")), contents(dir.path("tree")));
}
