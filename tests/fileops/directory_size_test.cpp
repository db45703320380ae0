#include "fileops/directory_size.h"

#include "fileops/fileops_test.h"

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
