#include "foundation/regular_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

class RegularFileTest : public testing::Test {
 protected:
  int read(const std::string& name, size_t limit = 1 << 20) {
    return readRegularFile(dir.wide(name), content, limit);
  }

  TempDir dir;
  std::string content = "left over";
};

TEST_F(RegularFileTest, ComesWholeWhateverItsLength) {
  for (size_t size : {0, 1, 65535, 65536, 65537, 200000}) {
    const std::string text(size, 'x');
    dir.write("file", text);
    EXPECT_EQ(read("file"), 0);
    EXPECT_EQ(content, text);
  }
}

TEST_F(RegularFileTest, OneLongerThanTheLimitIsRefused) {
  dir.write("file", "12345");
  EXPECT_EQ(read("file", 5), 0);
  EXPECT_EQ(content, "12345");
  EXPECT_EQ(read("file", 4), EFBIG);
  EXPECT_TRUE(content.empty());
  dir.write("empty", "");
  EXPECT_EQ(read("empty", 0), 0);
  EXPECT_EQ(read("file", 0), EFBIG);
}

TEST_F(RegularFileTest, LinksPipesAndDirectoriesAreLeftAlone) {
  dir.write("file", "text");
  dir.link("file", "link");
  ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
  EXPECT_EQ(read("link"), ELOOP);
  EXPECT_EQ(read("fifo"), EINVAL);  // and doesn't wait for a writer
  EXPECT_EQ(read(""), EISDIR);
  EXPECT_EQ(read("missing"), ENOENT);
  EXPECT_EQ(readRegularFile(L"/dev/zero", content, 100), EINVAL);
}

TEST_F(RegularFileTest, ALinkIsFollowedWhereThatIsWanted) {
  dir.write("file", "text");
  dir.link("file", "link");
  dir.makeDir("directory");
  dir.link("directory", "other");
  FileStamp stamp;
  EXPECT_EQ(readRegularFile(dir.wide("link"), content, 100, Links::Follow, &stamp), 0);
  EXPECT_EQ(content, "text");
  EXPECT_TRUE(stamp.exists);
  EXPECT_EQ(stamp.size, 4);
  EXPECT_EQ(readRegularFile(dir.wide("other"), content, 100, Links::Follow), EISDIR);
  EXPECT_EQ(readRegularFile(L"/dev/null", content, 100, Links::Follow), EINVAL);
}

TEST_F(RegularFileTest, EveryFailedCallIsReported) {
  dir.write("file", "text");
  for (int number = 1;; ++number) {
    const FaultHook hook(number, EIO);
    const int result = read("file");
    if (!hook.hit()) break;
    if (hook.hitCall() == "close") continue;  // nothing is lost when reading
    EXPECT_EQ(result, EIO) << hook.hitCall();
    EXPECT_TRUE(content.empty());
  }
}

}  // namespace
