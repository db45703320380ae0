#include "fileops/target_name.h"

#include "fileops/fileops_test.h"

namespace {

struct NamedTarget {
  const char* source;
  const char* destination;
  const char* result;
};

std::string resolved(const std::string& source, const std::string& destination) {
  return toUtf8(targetName(decodeFileName(source.c_str()), decodeFileName(destination.c_str())))
      .data();
}

class TargetNameTest : public FileOpsTest {};

}  // namespace

TEST_F(TargetNameTest, MasksAreAppliedToTheLastComponent) {
  const NamedTarget rows[] = {
      {"/s/x.txt", "/d/*.bak", "/d/x.bak"},     {"/s/a.b.c", "/d/*.x", "/d/a.x"},
      {"/s/x.txt", "/d/*.*", "/d/x.txt"},       {"/s/noext", "/d/*.bak", "/d/noext.bak"},
      {"/s/abc.txt", "/d/??z.*", "/d/abz.txt"}, {"/s/a.b.c", "/d/*", "/d/a"},
      {"/s/a.b.c", "/d/*.*.*", "/d/a.b.c"},     {"/s/x.txt", "/d/new*.txt", "/d/newx.txt"},
      {"/s/x.txt", "/*.bak", "/x.bak"},         {"/s/x.txt", "/d/*.bak/", "/d/x.bak"},
  };
  for (const NamedTarget& row : rows) EXPECT_EQ(resolved(row.source, row.destination), row.result);
}

TEST_F(TargetNameTest, ADestinationThatIsNoDirectoryIsTheTarget) {
  EXPECT_EQ(resolved("/s/x", dir.path("missing")), dir.path("missing"));
  dir.write("file", "");
  EXPECT_EQ(resolved("/s/x", dir.path("file")), dir.path("file"));
}

TEST_F(TargetNameTest, AnExistingDirectoryTakesTheName) {
  dir.makeDir("d");
  EXPECT_EQ(resolved("/s/x", dir.path("d")), dir.path("d/x"));
  EXPECT_EQ(resolved("/s/x", dir.path("d/")), dir.path("d/x"));
}

TEST_F(TargetNameTest, ASlashAtTheEndAlwaysTakesTheName) {
  EXPECT_EQ(resolved("/s/x", dir.path("missing/")), dir.path("missing/x"));
  EXPECT_EQ(resolved("/s/x", "/"), "/x");
}

TEST_F(TargetNameTest, ADirectoryOntoItsNamesakeIsMerged) {
  dir.makeDir("d");
  EXPECT_EQ(resolved("/s/d", dir.path("d")), dir.path("d"));
  EXPECT_EQ(resolved("/s/d", dir.path("d/")), dir.path("d/d"));
  EXPECT_EQ(resolved(dir.path("d"), dir.path("d")), dir.path("d"));
}

TEST_F(TargetNameTest, ComparesNamesExactly) {
  dir.makeDir("Dir");
  EXPECT_EQ(resolved("/s/dir", dir.path("Dir")), dir.path("Dir/dir"));
}

TEST_F(TargetNameTest, TheEntrysOwnNameIsNoMask) {
  EXPECT_EQ(resolved("/s/a*b", "/d/a*b"), "/d/a*b");
  EXPECT_EQ(resolved("/s/what?.txt", "/d/what?.txt"), "/d/what?.txt");
  EXPECT_FALSE(isNameMask(L"/d/a*b", L"/s/a*b"));
  EXPECT_TRUE(isNameMask(L"/d/a*b", L"/s/ab"));
}

TEST_F(TargetNameTest, ARealDirectoryWithAStarInItsNameIsNoMaskWhenWrittenWithASlash) {
  dir.makeDir("od*d");
  EXPECT_EQ(resolved("/s/x", dir.path("od*d/")), dir.path("od*d/x"));
}

TEST_F(TargetNameTest, LongPathsAreNotCut) {
  const std::string deep = "/" + std::string(2000, 'a') + "/" + std::string(1500, 'b');
  EXPECT_EQ(resolved("/s/x", deep + "/"), deep + "/x");
}

TEST_F(TargetNameTest, ABackslashIsPartOfARealName) {
  EXPECT_EQ(resolved("/s/a\\b", "/d/"), "/d/a\\b");
}
