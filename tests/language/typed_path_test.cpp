#include "language/typed_path.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "language/environment.h"
#include "support/temp_dir.h"

namespace {

std::vector<std::string> meanings(const char* text) {
  std::vector<std::string> result;
  for (const Westring& path : pathMeanings(decodeFileName(text), L"/base/dir")) {
    result.emplace_back(toUtf8(path).data());
  }
  return result;
}

TEST(TypedPath, IsMeantAsWrittenFirstThenByTheRulesThenWithItsVariables) {
  using Paths = std::vector<std::string>;
  sessionEnvironment().set("TDTEST", "/set/a:b");
  EXPECT_EQ(meanings("plain"), (Paths{"/base/dir/plain"}));
  EXPECT_EQ(meanings("/plain//x/"), (Paths{"/plain/x"}));
  EXPECT_EQ(meanings(".."), (Paths{"/base"}));
  EXPECT_EQ(meanings("..."), (Paths{"/base/dir/...", "/"}));
  EXPECT_EQ(meanings("a\\b"), (Paths{"/base/dir/a\\b", "/base/dir/a/b"}));
  EXPECT_EQ(meanings("aa:b"), (Paths{"/base/dir/aa:b"}));
  EXPECT_EQ(meanings("$TDTEST"), (Paths{"/base/dir/$TDTEST", "/set/a:b"}));
  EXPECT_EQ(meanings("$TDTEST/c\\d"),
            (Paths{"/base/dir/$TDTEST/c\\d", "/base/dir/$TDTEST/c/d", "/set/a:b/c\\d"}));
  EXPECT_EQ(meanings("/../.."), Paths());
  sessionEnvironment().set("TDTEST", nullptr);
}

TEST(TypedPath, SomethingOfExactlyThatNameIsFoundAsWritten) {
  const TempDir dir;
  for (const char* name : {"...", "a\\b", "a:b", "$HOME", "~", " x "}) {
    Westring path = L"unchanged";
    EXPECT_FALSE(existsAsWritten(decodeFileName(name), dir.wide(), path)) << name;
    EXPECT_EQ(toUtf8(path), "unchanged");
    dir.link("nowhere", name);
    EXPECT_TRUE(existsAsWritten(decodeFileName(name), dir.wide(), path)) << name;
    EXPECT_STREQ(toUtf8(path).data(), dir.path(name).c_str());
  }
}

}  // namespace
