#include "editor/text/edit_directory.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "foundation/data_paths.h"
#include "support/temp_dir.h"

namespace {

class EditDirectoryTest : public testing::Test {
 protected:
  void TearDown() override { setConfigurationFile(L""); }

  void useUserDirectory(const std::string& name) const {
    setConfigurationFile(dir.wide(name + "/td.ini"));
  }

  const TempDir dir;
  EditDirectoryFaults faults;
};

TEST_F(EditDirectoryTest, IsMadeForTheUserAlone) {
  useUserDirectory("user");
  dir.makeDir("user");
  EXPECT_EQ(makeEditDirectory(), 0);
  EXPECT_EQ(makeEditDirectory(), 0);
  EXPECT_EQ(dir.mode("user/edit"), 0700U);
}

TEST_F(EditDirectoryTest, WhatFailsInAGoodOneIsToldEachTime) {
  useUserDirectory("user");
  dir.makeDir("user");
  EXPECT_TRUE(faults.isToBeTold(ENOSPC));
  EXPECT_TRUE(faults.isToBeTold(ENOSPC));
}

TEST_F(EditDirectoryTest, OneThatCannotBeADirectoryIsToldOnce) {
  dir.write("file", "");
  dir.write("other", "");
  useUserDirectory("file");
  EXPECT_TRUE(faults.isToBeTold(ENOTDIR));
  EXPECT_FALSE(faults.isToBeTold(ENOTDIR));
  useUserDirectory("other");
  EXPECT_TRUE(faults.isToBeTold(ENOTDIR));
}

TEST_F(EditDirectoryTest, WithoutAHomeNothingIsTold) {
  useUserDirectory("missing/user");
  EXPECT_FALSE(faults.isToBeTold(ENOENT));
}

}  // namespace
