#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <ostream>
#include <string>

#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "support/as_user.h"
#include "support/temp_dir.h"

namespace {

std::string canonical(const char* path, const wchar_t* base = L"/base/dir") {
  Westring result = decodeFileName(path);
  const Westring start(base);
  return canonicalPath(result, &start) == 0 ? toUtf8(result).data() : "(fails)";
}

TEST(CanonicalPath, TypedTextBecomesAnAbsolutePath) {
  struct Row {
    const char* typed;
    const char* result;
  };
  const Row rows[] = {
      {"", "/base/dir"},
      {".", "/base/dir"},
      {"x", "/base/dir/x"},
      {"x/", "/base/dir/x"},
      {"x//y", "/base/dir/x/y"},
      {"./x/.", "/base/dir/x"},
      {"..", "/base"},
      {"../x", "/base/x"},
      {"...", "/"},
      {"....", "(fails)"},
      {"x/...", "/base"},
      {"x/..../y", "/y"},
      {"/", "/"},
      {"/..", "(fails)"},
      {"/x/..", "/"},
      {"/x/...", "(fails)"},
      {"/etc/./x", "/etc/x"},
      {"//etc", "/etc"},
      {"a\\b", "/base/dir/a/b"},
      {"\\a", "/a"},
      {"..\\x", "/base/x"},
      {"c:", "/base/dir/c:"},
      {"c:/x", "/base/dir/c:/x"},
      {":x", "(fails)"},
      {"ab:c", "(fails)"},
      {"/a:", "(fails)"},
      {"/:", "/:"},
      {"12:30", "(fails)"},
      {"..x", "/base/dir/..x"},
      {".x", "/base/dir/.x"},
      {"x..", "/base/dir/x.."},
      {"a b", "/base/dir/a b"},
      {"\xff\xfe", "/base/dir/\xff\xfe"},
  };
  for (const Row& row : rows) EXPECT_EQ(canonical(row.typed), row.result) << row.typed;
}

TEST(CanonicalPath, TheBaseIsARealDirectoryAndStaysAsItIs) {
  EXPECT_EQ(canonical("x", L"/a:b/c\\d/..."), "/a:b/c\\d/.../x");
  EXPECT_EQ(canonical("..", L"/a:b/..."), "/a:b");
  EXPECT_EQ(canonical("x", L"/"), "/x");
  EXPECT_EQ(canonical("..", L"/"), "(fails)");
  EXPECT_EQ(canonical("x", L"/a//"), "/a/x");
}

TEST(CanonicalPath, WithoutABaseTheWorkingDirectoryCounts) {
  const TempDir dir;
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path().c_str()), 0);
              Westring path(L"sub/../file");
              EXPECT_EQ(canonicalPath(path), 0);
              EXPECT_TRUE(sameName(path, dir.wide("file")));
            }),
            0);
}

TEST(CanonicalPath, AVanishedWorkingDirectoryFailsForRelativePathsOnly) {
  const TempDir dir;
  dir.makeDir("gone");
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path("gone").c_str()), 0);
              ASSERT_EQ(rmdir(dir.path("gone").c_str()), 0);
              EXPECT_TRUE(currentDir().empty());
              Westring relative(L"x");
              EXPECT_EQ(canonicalPath(relative), -1);
              EXPECT_TRUE(sameName(relative, L"x"));
              Westring absolute(L"/x");
              EXPECT_EQ(canonicalPath(absolute), 0);
            }),
            0);
}

TEST(CanonicalPath, AFailureLeavesThePathUnchanged) {
  Westring path(L"a\\b:c");
  EXPECT_EQ(canonicalPath(path), -1);
  EXPECT_TRUE(sameName(path, L"a\\b:c"));
}

TEST(CanonicalPath, WhatCantBeHeldIsRefusedAndNeverCut) {
  Westring longest(std::wstring(L"/" + std::wstring(4094, L'x')).c_str());
  EXPECT_EQ(canonicalPath(longest), 0);
  EXPECT_EQ(longest.length(), 4095);
  Westring longer(std::wstring(L"/" + std::wstring(4095, L'x')).c_str());
  EXPECT_EQ(canonicalPath(longer), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ(longer.length(), 4096);
}

TEST(WrittenPath, KeepsEverythingThatANameMayHold) {
  struct Row {
    const char* written;
    const char* result;
  };
  const Row rows[] = {{"...", "/base/dir/..."},
                      {".../x", "/base/dir/.../x"},
                      {"a\\b", "/base/dir/a\\b"},
                      {"a:b", "/base/dir/a:b"},
                      {"$HOME/~", "/base/dir/$HOME/~"},
                      {"..", "/base"},
                      {".", "/base/dir"},
                      {"", "/base/dir"},
                      {"../..", "/"},
                      {"../../..", "(fails)"},
                      {"/a//b/./c/../...///", "/a/b/..."},
                      {"/", "/"},
                      {" x ", "/base/dir/ x "}};
  for (const Row& row : rows) {
    Westring path = decodeFileName(row.written);
    const Westring base(L"/base/dir");
    const bool done = writtenPath(path, &base) == 0;
    EXPECT_STREQ(done ? toUtf8(path).data() : "(fails)", row.result) << row.written;
  }
}

}  // namespace
