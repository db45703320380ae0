#include "viewer/syntax_positions.h"

#include <unistd.h>

#include "support/temp_dir.h"
#include "syntax/definitions_reader.h"
#include "viewer/read_hook.h"

namespace {

constexpr char Rules[] =
    "[Comments:*]\nblockcomment:red:(:)\nlinecomment:green:#\nblockcomment:blue:<:>\n";

// A file with comments in brackets, viewed with colours on.
struct Coloured {
  explicit Coloured(const std::string& bytes) {
    dir.write("file", bytes);
    EXPECT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
    syntax.use(readSyntax(Rules, L"file", 7));
  }

  // What is open at a place, as the walk from the beginning finds it.
  CContextStack walked(int64_t position) {
    syntax.reset();
    for (int64_t at = file.textStart(); at < position; at = file.nextLine(at)) {
      syntax.skip(file.text(file.lineAt(at), INT64_MAX));
    }
    return syntax.state();
  }

  TempDir dir;
  ViewedFile file;
  CSyntax syntax;
  SyntaxPositions positions{file, syntax};
};

std::string manyLines(size_t bytes) {
  std::string text;
  for (int i = 0; text.size() < bytes; ++i) {
    text += i % 50 == 3    ? "open ( and < some\n"
            : i % 50 == 40 ? "close > and ) all\n"
                           : "plain # text\n";
  }
  return text;
}

}  // namespace

TEST(SyntaxPositions, NothingIsOpenAtTheStartOrBehindAMark) {
  Coloured text("\xEF\xBB\xBF(a\nb\n");
  text.positions.bringTo(text.file.textStart());
  EXPECT_TRUE(text.syntax.state().empty());
  text.positions.bringTo(text.file.nextLine(3));
  EXPECT_EQ(text.syntax.state().depth(), 1);
}

TEST(SyntaxPositions, EveryLineHasTheStateOfAWalkFromTheStart) {
  Coloured text(manyLines(60'000));
  std::vector<int64_t> starts;
  for (int64_t at = 0; at < text.file.size(); at = text.file.nextLine(at)) starts.push_back(at);
  // Here and there, forward and backward.
  for (size_t i = 0; i < starts.size(); i += 37) {
    const int64_t start = starts[i * 7919 % starts.size()];
    const CContextStack expected = text.walked(start);
    text.positions.bringTo(start);
    EXPECT_TRUE(text.syntax.state() == expected) << start;
  }
}

TEST(SyntaxPositions, AStretchThatWasSeenIsNotReadAgain) {
  Coloured text(manyLines(3 << 20));
  text.positions.bringTo(text.file.startOf(3 << 20));
  const int64_t near = text.file.startOf((3 << 20) - 100'000);
  const ReadHook hook;
  text.positions.bringTo(near);
  EXPECT_LE(hook.reads(), 1) << "a record is at most some 4 KiB away";
}

TEST(SyntaxPositions, FarFromAllThatIsKnownItBeginsShortlyBefore) {
  // The comment is opened in the first line and never closed.
  Coloured text("(\n" + std::string(6 << 20, '\n'));
  const int64_t far = 5 << 20;
  const ReadHook hook;
  text.positions.bringTo(far);
  EXPECT_TRUE(text.syntax.state().empty()) << "as if nothing were open";
  EXPECT_LE(hook.reads(), 3);
  text.positions.reached(far);
  text.positions.bringTo(far - 1);
  EXPECT_TRUE(text.syntax.state().empty()) << "a guess isn't remembered";
  text.positions.bringTo(3 << 20);
  EXPECT_EQ(text.syntax.state().depth(), 1);
  text.positions.bringTo(far);
  EXPECT_EQ(text.syntax.state().depth(), 1) << "it can be walked to by now";
}

TEST(SyntaxPositions, WhatTheScreenHasColouredIsKnown) {
  Coloured text(manyLines(3 << 20));
  const int64_t top = text.file.startOf(2 << 20);
  text.positions.bringTo(top);
  int64_t at = top;
  for (int row = 0; row < 1000; ++row) {
    text.syntax.skip(text.file.text(text.file.lineAt(at), 1000));
    at = text.file.nextLine(at);
  }
  const CContextStack state = text.syntax.state();
  text.positions.reached(at);
  text.positions.bringTo(at);
  EXPECT_TRUE(text.syntax.state() == state);
}

TEST(SyntaxPositions, AnotherEncodingOrALossForgetsAllButGrowthDoesNot) {
  Coloured text("(\n" + manyLines(20'000));
  const int64_t place = text.file.startOf(15'000);
  text.positions.bringTo(place);
  ASSERT_GE(text.syntax.state().depth(), 1);
  text.dir.write("file", "x\n" + manyLines(10'000));
  ASSERT_EQ(text.file.refresh(), FileChange::Shrunk);
  const int64_t start = text.file.startOf(5'000);
  const CContextStack expected = text.walked(start);
  text.positions.bringTo(start);
  EXPECT_TRUE(text.syntax.state() == expected);
  const int64_t rewrites = text.file.rewrites();
  std::ofstream(text.dir.path("file"), std::ios::app) << "more\n";
  ASSERT_EQ(text.file.refresh(), FileChange::Grown);
  EXPECT_EQ(text.file.rewrites(), rewrites);
}

TEST(SyntaxPositions, ALineThatIsStillWrittenIsNotRemembered) {
  Coloured text(manyLines(5'000) + "half a line");
  const int64_t size = text.file.size();
  text.positions.bringTo(text.file.startOf(size));
  text.syntax.skip(L"half a line");
  text.positions.reached(size);
  std::ofstream(text.dir.path("file"), std::ios::app) << " (\nnext\n";
  ASSERT_EQ(text.file.refresh(), FileChange::Grown);
  const int64_t next = text.file.startOf(text.file.size());
  const CContextStack expected = text.walked(next);
  text.positions.bringTo(next);
  EXPECT_TRUE(text.syntax.state() == expected);
  EXPECT_FALSE(expected.empty());
}

TEST(SyntaxPositions, WithColoursOffNothingIsRead) {
  Coloured text(manyLines(1 << 20));
  text.syntax.off();
  const ReadHook hook;
  text.positions.bringTo(text.file.size());
  EXPECT_EQ(hook.reads(), 0);
}
