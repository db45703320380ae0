#include "archive_actions/private_directory.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace {

class PrivateDirectoryTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(directory.make(place.wide()), 0); }
  std::string name() const { return place.names().at(0); }
  void write(const std::string& path) const { place.write(name() + "/" + path, ""); }
  void makeDir(const std::string& path) const { place.makeDir(name() + "/" + path); }

  TempDir place;
  PrivateDirectory directory;
};

TEST_F(PrivateDirectoryTest, ItIsForThisUserAloneAndGoesWithWhatItHolds) {
  EXPECT_TRUE(name().starts_with("TD#"));
  EXPECT_EQ(place.mode(name()), 0700u);
  makeDir("sub");
  write("sub/file");
  directory.remove();
  EXPECT_EQ(place.names(), std::vector<std::string>{});
}

TEST_F(PrivateDirectoryTest, OneThatIsKeptStays) {
  directory.keep();
  directory.remove();
  EXPECT_EQ(place.names().size(), 1u);
}

}  // namespace
