#include "fileops/directory_size.h"

#include "fileops/fileops_test.h"
#include "support/deep_tree.h"

namespace {

class DirectorySizeTest : public FileOpsTest {
 protected:
  std::optional<int64_t> sizeOf(const std::string& name) {
    RunningOperation operation(ui);
    const std::string path = dir.path(name);
    return directorySize(operation, placeOf(path.c_str()));
  }
};

}  // namespace

TEST_F(DirectorySizeTest, CountsPlainFilesAtEveryDepthAndFollowsNoLink) {
  for (const char* name : {"d", "d/sub", "d/sub/deep", "other"}) dir.makeDir(name);
  dir.write("d/a", "12345");
  dir.write("d/sub/b", "123");
  dir.write("d/sub/deep/c", "1");
  dir.write("other/large", std::string(1000, 'x'));
  dir.link("../other", "d/link");
  dir.link("..", "d/sub/up");
  dir.link("../other/large", "d/file");
  EXPECT_EQ(sizeOf("d"), 9);
  EXPECT_EQ(sizeOf("missing"), 0);
}

TEST_F(DirectorySizeTest, EscGivesNoSize) {
  for (const char* name : {"d", "d/sub"}) dir.makeDir(name);
  ui.escapeAtLook = 1;
  EXPECT_FALSE(sizeOf("d"));
}

TEST_F(DirectorySizeTest, CountsBeyondTheLongestPath) {
  constexpr int Levels = 60;
  makeDeepTree(dir.path("deep"), Levels, std::string(100, 'n'));
  EXPECT_EQ(sizeOf("deep"), Levels);
  const std::string path = dir.path("deep");
  removeTreeQuietly(placeOf(path.c_str()));
  EXPECT_FALSE(dir.exists("deep"));
}

TEST_F(DirectorySizeTest, WhatCantBeReadCountsAsEmpty) {
  for (const char* name : {"d", "d/closed"}) dir.makeDir(name);
  dir.write("d/a", "12345");
  dir.write("d/closed/b", "123");
  struct Closed {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "openAt" && std::string(path) == "closed" ? EACCES : 0;
    }
  };
  System::setHook(Closed::onCall, nullptr);
  EXPECT_EQ(sizeOf("d"), 5);
  System::setHook(nullptr, nullptr);
}
