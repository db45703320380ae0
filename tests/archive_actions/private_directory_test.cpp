#include "archive_actions/private_directory.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/temp_dir.h"

namespace {

class PrivateDirectoryTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(directory.make(place.wide()), 0); }
  std::string name() const { return place.names().at(0); }
  int find(const std::string& path, NameMatch match = NameMatch::Exact) {
    return findWritten(directory.fd(), path, match, found);
  }
  void write(const std::string& path) const { place.write(name() + "/" + path, ""); }
  void makeDir(const std::string& path) const { place.makeDir(name() + "/" + path); }

  TempDir place;
  PrivateDirectory directory;
  FoundPlace found;
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

TEST_F(PrivateDirectoryTest, NothingIsFoundThroughALink) {
  place.makeDir("outside");
  place.write("outside/file", "");
  place.link("../outside", name() + "/link");
  EXPECT_NE(find("link/file"), 0);
  EXPECT_NE(find("link/file", NameMatch::Likely), 0);
  EXPECT_NE(find("../outside/file"), 0);
  EXPECT_EQ(find("link"), 0);
  EXPECT_NE(findWrittenFile(directory.fd(), "link", NameMatch::Exact, found), 0);
}

TEST_F(PrivateDirectoryTest, AFileWithAnotherNameIsNoMember) {
  write("file");
  EXPECT_EQ(findWrittenFile(directory.fd(), "file", NameMatch::Exact, found), 0);
  ASSERT_EQ(link(place.path(name() + "/file").c_str(), place.path("other").c_str()), 0);
  EXPECT_NE(findWrittenFile(directory.fd(), "file", NameMatch::Exact, found), 0);
}

TEST_F(PrivateDirectoryTest, ANameInOtherCharactersIsFoundWhenItIsTheOnlyOne) {
  makeDir("d\xe9");
  write("d\xe9/f");
  EXPECT_EQ(find("d\x82/f"), ENOENT);
  EXPECT_EQ(find("d\x82/f", NameMatch::Likely), 0);
  EXPECT_EQ(found.path, "d\xe9/f");
  makeDir("d\xea");
  EXPECT_EQ(find("d\x82/f", NameMatch::Likely), ENOENT);
}

}  // namespace
