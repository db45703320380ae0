#include "foundation/bounded_lines.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& content) {
  std::vector<std::string> result;
  BoundedLines lines(content);
  for (std::string line; lines.next(line);) result.push_back(line + (lines.wasCut() ? "..." : ""));
  return result;
}

using Lines = std::vector<std::string>;

TEST(BoundedLines, EndAtAnyLineEndAndTheLastNeedsNone) {
  EXPECT_EQ(linesOf(""), Lines{});
  EXPECT_EQ(linesOf("a"), Lines{"a"});
  EXPECT_EQ(linesOf("a\n"), Lines{"a"});
  EXPECT_EQ(linesOf("a\r\nb\n\nc\r"), (Lines{"a", "b", "", "c"}));
  EXPECT_EQ(linesOf("a\r\r\nb\rc\n"), (Lines{"a\r", "b\rc"}));
  EXPECT_EQ(linesOf(std::string("a\0b\n", 4)), Lines{std::string("a\0b", 3)});
}

TEST(BoundedLines, BeginBehindAByteOrderMark) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_EQ(linesOf(mark), Lines{});
  EXPECT_EQ(linesOf(mark + "a\n" + mark + "b"), (Lines{"a", mark + "b"}));
  EXPECT_EQ(linesOf(mark.substr(0, 2)), Lines{mark.substr(0, 2)});
}

TEST(BoundedLines, CountUpTo4096Bytes) {
  const std::string most(4096, 'x');
  for (const std::string end : {"\n", "\r\n", ""}) {
    EXPECT_EQ(linesOf(most.substr(1) + end), Lines{most.substr(1)});
    EXPECT_EQ(linesOf(most + end), Lines{most});
    EXPECT_EQ(linesOf(most + "y" + end), Lines{most + "..."});
  }
  EXPECT_EQ(linesOf(most + most + most + "\nnext"), (Lines{most + "...", "next"}));
}

TEST(BoundedLines, TellWhetherTheLastOneHadAnEnd) {
  std::string line;
  BoundedLines lines("a\nb");
  EXPECT_TRUE(lines.next(line));
  EXPECT_TRUE(lines.hadEnd());
  EXPECT_TRUE(lines.next(line));
  EXPECT_FALSE(lines.hadEnd());
}

}  // namespace
