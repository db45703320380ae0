#include "archive_actions/written_files.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/temp_dir.h"

namespace {

class WrittenFiles : public testing::Test {
 protected:
  void SetUp() override {
    place.makeDir("top");
    directory = Descriptor(System::open(place.path("top").c_str(), O_RDONLY | O_DIRECTORY));
    ASSERT_TRUE(directory.valid());
  }
  int top() const { return directory.get(); }
  int find(const std::string& path, NameMatch match = NameMatch::Exact) {
    return findWritten(top(), path, match, found);
  }
  int findFor(const char* shown, const char* stored) {
    return findMember(top(), decodeFileName(shown), {{.path = decodeFileName(stored)}}, found);
  }
  void write(const std::string& path) const { place.write("top/" + path, path); }
  void makeDir(const std::string& path) const { place.makeDir("top/" + path); }

  TempDir place;
  Descriptor directory;
  FoundPlace found;
};

TEST_F(WrittenFiles, NothingIsFoundThroughALink) {
  place.makeDir("outside");
  place.write("outside/file", "");
  place.link("../outside", "top/link");
  EXPECT_NE(find("link/file"), 0);
  EXPECT_NE(find("link/file", NameMatch::Likely), 0);
  EXPECT_NE(find("../outside/file"), 0);
  EXPECT_EQ(find("link"), 0);
  EXPECT_NE(checkRegular(found), 0);
}

TEST_F(WrittenFiles, AFileWithAnotherNameIsNoMember) {
  write("file");
  ASSERT_EQ(find("file"), 0);
  EXPECT_EQ(checkRegular(found), 0);
  ASSERT_EQ(link(place.path("top/file").c_str(), place.path("other").c_str()), 0);
  ASSERT_EQ(find("file"), 0);
  EXPECT_EQ(checkRegular(found), EINVAL);
}

TEST_F(WrittenFiles, ANameInOtherCharactersIsFoundWhenItIsTheOnlyOne) {
  makeDir("d\xe9");
  write("d\xe9/f");
  EXPECT_EQ(find("d\x82/f"), ENOENT);
  EXPECT_EQ(find("d\x82/f", NameMatch::Likely), 0);
  EXPECT_EQ(found.path, "d\xe9/f");
  makeDir("d\xea");
  EXPECT_EQ(find("d\x82/f", NameMatch::Likely), ENOENT);
}

TEST_F(WrittenFiles, AMemberIsFoundUnderEachNameThatItMayHave) {
  const struct {
    const char* written;
    const char* shown;
    const char* stored;
  } table[] = {{"as shown", "as shown", "other"},
               {"st\x82red", "shown", "st\x82red"},
               {"back\\slash", "back/slash", "back\\slash"},
               {"gr\xfcn", "gr\u00fcn", "gr\x81n"},
               {"gr\xfcn2.txt", "gr\u00fcn2.txt", "gr\x81n2.txt"}};
  for (const auto& row : table) {
    write(row.written);
    EXPECT_EQ(findFor(row.shown, row.stored), 0) << row.written;
    EXPECT_EQ(found.path, row.written);
  }
  makeDir("d\xe9r");
  write("d\xe9r/x");
  EXPECT_EQ(findFor("d\u00e9r/x", "d\x82r\\x"), 0);
  EXPECT_EQ(found.path, "d\xe9r/x");
  EXPECT_EQ(findFor("d\u00e9r/y", "d\x82r\\y"), ENOENT);
}

TEST_F(WrittenFiles, TheOnlyFileIsFoundInWhateverDirectories) {
  EXPECT_EQ(findOnlyFile(top(), found), ENOENT);
  makeDir("a");
  EXPECT_EQ(findOnlyFile(top(), found), ENOENT);
  makeDir("a/b");
  write("a/b/c");
  EXPECT_EQ(findOnlyFile(top(), found), 0);
  EXPECT_EQ(found.path, "a/b/c");
  EXPECT_EQ(checkRegular(found), 0);
  write("a/d");
  EXPECT_EQ(findOnlyFile(top(), found), ENOENT);
}

TEST_F(WrittenFiles, TheOnlyFileIsLookedForThroughNoLink) {
  place.makeDir("outside");
  place.write("outside/file", "");
  place.link("../outside", "top/link");
  EXPECT_EQ(findOnlyFile(top(), found), 0);
  EXPECT_EQ(found.path, "link");
  EXPECT_NE(checkRegular(found), 0);
}

TEST_F(WrittenFiles, WhatIsMovedReplacesNothingAndStaysBelow) {
  place.makeDir("outside");
  place.link("../outside", "top/link");
  write("file");
  write("there");
  ASSERT_EQ(find("file"), 0);
  EXPECT_EQ(moveWritten(top(), found, "there"), EEXIST);
  EXPECT_NE(moveWritten(top(), found, "link/file"), 0);
  EXPECT_NE(moveWritten(top(), found, "x/../../outside/file"), 0);
  EXPECT_EQ(moveWritten(top(), found, "new/deep/file"), 0);
  EXPECT_EQ(place.read("top/new/deep/file"), "file");
  EXPECT_EQ(place.read("top/there"), "there");
  EXPECT_TRUE(std::filesystem::is_empty(place.path("outside")));
}

TEST_F(WrittenFiles, FilesWithBackslashesGoWhereTheyAreListed) {
  write("a\\b\\c");
  write("plain");
  EXPECT_EQ(turnBackslashes(top(), {{.path = L"a\\b\\c"}, {.path = L"plain"}, {.path = L"n\\o"}}),
            0);
  EXPECT_EQ(place.read("top/a/b/c"), "a\\b\\c");
  write("a\\b\\c");
  EXPECT_EQ(turnBackslashes(top(), {{.path = L"a\\b\\c"}}), EEXIST);
  EXPECT_TRUE(place.exists("top/a\\b\\c"));
}

}  // namespace
