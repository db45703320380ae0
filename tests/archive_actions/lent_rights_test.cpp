#include "archive_actions/lent_rights.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/as_user.h"
#include "support/temp_dir.h"

namespace {

class LentRightsTest : public testing::Test {
 protected:
  LentRightsTest() {
    for (const char* name : {"from", "from/locked", "from/locked/sub", "from/open", "to"}) {
      dir.makeDir(name);
    }
    dir.write("from/locked/sub/file", "text");
    for (const char* name : {".", "from", "from/locked", "from/locked/sub", "from/open", "to"}) {
      EXPECT_TRUE(giveToUser(dir.path(name)));
    }
    dir.chmod("from/locked/sub", 0500);
    dir.chmod("from/locked", 0555);
  }
  // Whoever cleans up needs the right, too.
  ~LentRightsTest() override {
    for (const char* name : {"from/locked", "from/locked/sub", "to/locked", "to/locked/sub"}) {
      ::chmod(dir.path(name).c_str(), 0755);
    }
  }
  mode_t modeOf(const std::string& name) const {
    struct stat info {};
    EXPECT_EQ(lstat(dir.path(name).c_str(), &info), 0) << name;
    return info.st_mode & 07777;
  }

  TempDir dir;
};

}  // namespace

TEST_F(LentRightsTest, ALockedDirectoryCanBeMovedAndIsLockedThere) {
  const std::string from = dir.path("from/locked");
  const std::string to = dir.path("to/locked");
  EXPECT_EQ(runAsUser([&] {
              EXPECT_NE(rename(from.c_str(), to.c_str()), 0);
              LentRights rights;
              rights.lend(placeOf(from.c_str()));
              EXPECT_EQ(rename(from.c_str(), to.c_str()), 0);
              rights.takeBack(placeOf(to.c_str()));
            }),
            0);
  EXPECT_EQ(modeOf("to/locked"), 0555u);
  EXPECT_EQ(modeOf("to/locked/sub"), 0500u);
}

TEST_F(LentRightsTest, OnlyWhatWasLentIsTakenBack) {
  dir.chmod("to", 0777);
  LentRights rights;
  rights.lend(placeOf(dir.path("from").c_str()));
  EXPECT_EQ(modeOf("from/locked"), 0755u);
  EXPECT_EQ(modeOf("from/locked/sub"), 0700u);
  const mode_t open = modeOf("from/open");
  std::filesystem::rename(dir.path("from/locked/sub"), dir.path("to/sub"));
  rights.takeBack(placeOf(dir.path("to").c_str()));
  EXPECT_EQ(modeOf("to/sub"), 0500u);
  EXPECT_EQ(modeOf("to"), 0777u);
  EXPECT_EQ(modeOf("from/open"), open);
  rights.takeBack(placeOf(dir.path("from").c_str()));
  EXPECT_EQ(modeOf("from/locked"), 0555u);
}
