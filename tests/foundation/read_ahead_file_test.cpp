#include "foundation/read_ahead_file.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "foundation/status.h"
#include "foundation/system.h"
#include "support/temp_dir.h"
#include "support/wait_until.h"

namespace {

constexpr int64_t Block = ReadAheadFile::BlockSize;
using Growing = ReadAheadFile::Growing;

unsigned char byteOf(int64_t position) {
  return static_cast<unsigned char>(position * 7 + position / 251);
}

std::string content(int64_t bytes) {
  std::string text(static_cast<size_t>(bytes), 0);
  for (int64_t i = 0; i < bytes; ++i) text[static_cast<size_t>(i)] = static_cast<char>(byteOf(i));
  return text;
}

// Counts and delays nothing; may fail reads. Used by the thread that fetches ahead, too.
struct ReadHook {
  std::atomic<int> reads{0};
  std::atomic<int> error{0};

  ReadHook() { System::setHook(onCall, this); }
  ~ReadHook() { System::setHook(nullptr, nullptr); }
  static int onCall(const char* call, const char*, void* context) {
    if (strcmp(call, "readAt") != 0) return 0;
    auto* hook = static_cast<ReadHook*>(context);
    ++hook->reads;
    return hook->error;
  }
};

class ReadAheadFileTest : public testing::Test {
 protected:
  void openWith(int64_t bytes, Growing growing = Growing::No) {
    dir.write("file", content(bytes));
    ASSERT_EQ(file.open(dir.wide("file"), growing), 0);
  }

  TempDir dir;
  ReadAheadFile file;
};

TEST_F(ReadAheadFileTest, GivesEveryByteForwards) {
  openWith(6 * Block + 100);
  EXPECT_EQ(file.size(), 6 * Block + 100);
  for (int64_t i = 0; i < file.size(); ++i) ASSERT_EQ(file.byteAt(i), byteOf(i)) << i;
  EXPECT_EQ(file.byteAt(file.size()), -1);
}

TEST_F(ReadAheadFileTest, GivesEveryByteBackwards) {
  openWith(6 * Block + 100);
  for (int64_t i = file.size() - 1; i >= 0; --i) ASSERT_EQ(file.byteAt(i), byteOf(i)) << i;
  EXPECT_EQ(file.byteAt(-1), -1);
}

TEST_F(ReadAheadFileTest, GivesBytesInAnyOrder) {
  openWith(9 * Block + 5);
  uint64_t random = 1;
  for (int i = 0; i < 20000; ++i) {
    random = random * 6364136223846793005u + 1442695040888963407u;
    const auto position = static_cast<int64_t>((random >> 33) % (9 * Block + 5));
    ASSERT_EQ(file.byteAt(position), byteOf(position));
  }
}

TEST_F(ReadAheadFileTest, TheFirstBlockFetchesTheOneAbove) {
  openWith(8 * Block);
  file.byteAt(3 * Block);
  EXPECT_EQ(file.prefetchPosition(), 4 * Block);
  file.byteAt(4 * Block);
  EXPECT_EQ(file.prefetchPosition(), 5 * Block);
}

TEST_F(ReadAheadFileTest, WalkingBackwardsFetchesTheLowerBlocks) {
  openWith(8 * Block);
  file.byteAt(7 * Block);
  for (int64_t block = 6; block > 0; --block) {
    file.byteAt(block * Block);
    EXPECT_EQ(file.prefetchPosition(), (block - 1) * Block);
  }
  file.byteAt(0);
  EXPECT_EQ(file.prefetchPosition(), -1);
}

TEST_F(ReadAheadFileTest, AJumpFetchesNothing) {
  openWith(8 * Block);
  file.byteAt(0);
  file.byteAt(5 * Block);
  EXPECT_EQ(file.prefetchPosition(), -1);
}

TEST_F(ReadAheadFileTest, AShortBlockFetchesNothing) {
  openWith(Block + 1);
  file.byteAt(Block);
  EXPECT_EQ(file.prefetchPosition(), -1);
}

TEST_F(ReadAheadFileTest, ABlockFetchedAheadIsNotReadAgain) {
  openWith(8 * Block);
  ReadHook hook;
  file.byteAt(3 * Block);
  ASSERT_TRUE(waitUntil([&] { return hook.reads == 2; }));
  EXPECT_EQ(file.prefetchPosition(), 4 * Block);  // and by now it has arrived
  hook.error = EIO;
  for (int64_t i = 4 * Block; i < 5 * Block; ++i) ASSERT_EQ(file.byteAt(i), byteOf(i));
  EXPECT_EQ(file.status(), 0);
}

TEST_F(ReadAheadFileTest, AShortBlockFetchedAheadOfAGrowingFileIsReadAnew) {
  openWith(Block + 10, Growing::Yes);
  const ReadHook hook;
  file.byteAt(0);
  ASSERT_TRUE(waitUntil([&] { return hook.reads >= 2; }));
  EXPECT_EQ(file.prefetchPosition(), Block);
  dir.write("file", content(Block + 100));
  EXPECT_EQ(file.byteAt(Block + 99), byteOf(Block + 99));
  EXPECT_EQ(file.size(), Block + 100);
}

TEST_F(ReadAheadFileTest, KeepsTheFourBlocksUsedLast) {
  openWith(40 * Block);
  for (int64_t block : {0, 10, 20, 30}) file.byteAt(block * Block);
  file.byteAt(0);  // used again: the one at 10 is the oldest now
  file.byteAt(35 * Block);
  const ReadHook hook;
  for (int64_t block : {0, 20, 30, 35})
    EXPECT_EQ(file.byteAt(block * Block), byteOf(block * Block));
  EXPECT_EQ(hook.reads, 0);
  file.byteAt(10 * Block);
  EXPECT_EQ(hook.reads, 1);
}

TEST_F(ReadAheadFileTest, AFileThatGrowsIsNoticedWhenAsked) {
  openWith(100, Growing::Yes);
  EXPECT_EQ(file.byteAt(99), byteOf(99));
  EXPECT_EQ(file.byteAt(100), -1);
  dir.write("file", content(Block + 50));
  EXPECT_EQ(file.byteAt(100), byteOf(100));
  EXPECT_EQ(file.byteAt(Block + 49), byteOf(Block + 49));
  EXPECT_EQ(file.size(), Block + 50);
}

TEST_F(ReadAheadFileTest, WithoutAskingABlockHeldStaysAsItWas) {
  openWith(100);
  EXPECT_EQ(file.byteAt(0), byteOf(0));
  dir.write("file", content(200));
  EXPECT_EQ(file.byteAt(150), -1);
  EXPECT_EQ(file.size(), 100);
}

TEST_F(ReadAheadFileTest, AFileThatShrinksEndsEarlier) {
  openWith(3 * Block);
  dir.write("file", content(10));
  EXPECT_EQ(file.byteAt(2 * Block), -1);
  EXPECT_EQ(file.byteAt(9), byteOf(9));
  EXPECT_EQ(file.byteAt(10), -1);
}

TEST_F(ReadAheadFileTest, ABlockThatCantBeReadIsFilledAndReported) {
  openWith(3 * Block);
  ReadHook hook;
  hook.error = EIO;
  EXPECT_EQ(file.byteAt(Block), 0xFF);
  EXPECT_EQ(file.status(), EIO);
  EXPECT_EQ(file.prefetchPosition(), -1);
  EXPECT_EQ(file.byteAt(3 * Block), -1);
  hook.error = 0;
  EXPECT_EQ(file.byteAt(0), byteOf(0));
  EXPECT_EQ(file.status(), 0);
}

TEST_F(ReadAheadFileTest, ReadNextGoesOnBehindWhatItGave) {
  openWith(Block + 10);
  char buffer[Block];
  EXPECT_EQ(file.readNext(buffer, Block), 0);
  EXPECT_EQ(file.linePos(), Block);
  EXPECT_EQ(file.readNext(buffer, Block), 0);
  EXPECT_EQ(file.linePos(), Block + 10);
  EXPECT_EQ(static_cast<unsigned char>(buffer[9]), byteOf(Block + 9));
  EXPECT_EQ(file.readNext(buffer, Block), Status::EndOfFile);
  EXPECT_EQ(file.linePos(), Block + 10);
  EXPECT_EQ(file.readAt(5, buffer, 1), 0);
  EXPECT_EQ(static_cast<unsigned char>(buffer[0]), byteOf(5));
  EXPECT_EQ(file.readAt(-1, buffer, 1), EINVAL);
  ASSERT_EQ(file.open(dir.wide("file"), Growing::No), 0);
  EXPECT_EQ(file.linePos(), 0);
  EXPECT_EQ(file.readNext(buffer, 1), 0);
  EXPECT_EQ(static_cast<unsigned char>(buffer[0]), byteOf(0));
}

TEST_F(ReadAheadFileTest, ReadLineNextDropsTheLinesEnd) {
  dir.write("file", std::string("ab\r\n\r\nlonger line\nz\0last", 24));
  ASSERT_EQ(file.open(dir.wide("file"), Growing::No), 0);
  char buffer[8];
  const char* lines[] = {"ab", "", "longer ", "line", "z", "last"};
  for (const char* line : lines) {
    EXPECT_EQ(file.readLineNext(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, line);
  }
  EXPECT_EQ(file.readLineNext(buffer, sizeof buffer), Status::EndOfFile);
  EXPECT_STREQ(buffer, "");
}

TEST_F(ReadAheadFileTest, ClosesAndOpensAgainAtAnyMoment) {
  openWith(8 * Block);
  for (int i = 0; i < 200; ++i) {
    ASSERT_EQ(file.open(dir.wide("file"), Growing::No), 0);
    for (int block = 0; block < i % 5; ++block) file.byteAt(block * Block);
    if (i % 3 == 0) {
      EXPECT_EQ(file.close(), 0);
      EXPECT_EQ(file.byteAt(0), -1);
    }
  }
}

TEST_F(ReadAheadFileTest, AFileThatCantBeOpenedGivesNothing) {
  EXPECT_EQ(file.open(dir.wide("missing"), Growing::No), ENOENT);
  EXPECT_EQ(file.byteAt(0), -1);
  char buffer[4];
  EXPECT_EQ(file.readNext(buffer, 4), EBADF);
  EXPECT_EQ(file.close(), 0);
}

TEST_F(ReadAheadFileTest, AnEmptyFileHasNoBytes) {
  openWith(0);
  EXPECT_EQ(file.byteAt(0), -1);
  EXPECT_EQ(file.byteAt(INT64_MAX), -1);
}

}  // namespace
