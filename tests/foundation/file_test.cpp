#include "foundation/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "foundation/names.h"
#include "foundation/status.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr int ReadWrite = OpenFlag::Read | OpenFlag::Write | OpenFlag::Append;
constexpr int Rewrite = OpenFlag::Write | OpenFlag::Create;

std::string pattern(size_t bytes) {
  std::string text(bytes, 0);
  for (size_t i = 0; i < bytes; ++i) text[i] = static_cast<char>('a' + i % 23);
  return text;
}

class FileTest : public testing::Test {
 protected:
  TempDir dir;
  File file;
  char buffer[20000] = {};
  size_t got = 99;

  std::string readSome(size_t bytes) {
    file.read(buffer, bytes, &got);
    return std::string(buffer, got);
  }
};

TEST_F(FileTest, OpenFlagsDecideWhetherTheContentStays) {
  struct Row {
    int flags;
    int status;
    std::string content;
    int64_t position;
  };
  const Row rows[] = {
      {OpenFlag::Read, 0, "content", 0},
      {OpenFlag::Read | OpenFlag::Create, 0, "content", 0},
      {OpenFlag::Write, 0, "", 0},
      {OpenFlag::Write | OpenFlag::Create, 0, "", 0},
      {OpenFlag::Read | OpenFlag::Write, 0, "", 0},
      {OpenFlag::Write | OpenFlag::Append, 0, "content", 7},
      {OpenFlag::Write | OpenFlag::Create | OpenFlag::Append, 0, "content", 7},
      {OpenFlag::Read | OpenFlag::Append, 0, "content", 7},
  };
  for (const Row& row : rows) {
    dir.write("file", "content");
    EXPECT_EQ(file.open(dir.wide("file"), row.flags), row.status) << row.flags;
    EXPECT_EQ(file.tell(), row.position) << row.flags;
    file.close();
    EXPECT_EQ(dir.read("file"), row.content) << row.flags;
  }
}

TEST_F(FileTest, OnlyCreateMakesAFileAndWithoutRightsForOthers) {
  EXPECT_EQ(file.open(dir.wide("new"), OpenFlag::Write), ENOENT);
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(file.descriptor(), 0);
  EXPECT_EQ(file.close(), 0);
  const mode_t mask = umask(0);
  EXPECT_EQ(file.open(dir.wide("new"), OpenFlag::Write | OpenFlag::Create), 0);
  umask(mask);
  EXPECT_EQ(dir.mode("new"), 0660u);
}

TEST_F(FileTest, AppendingWithCreateKeepsWhatIsThere) {
  dir.write("file", "first\n");
  ASSERT_EQ(file.open(dir.wide("file"), Rewrite | OpenFlag::Append), 0);
  file.writeText("second\n");
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(dir.read("file"), "first\nsecond\n");
}

TEST_F(FileTest, AppendingToAPipeNeedsNoEnd) {
  ASSERT_EQ(mkfifo(dir.path("pipe").c_str(), 0600), 0);
  const int reader = ::open(dir.path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_EQ(file.open(dir.wide("pipe"), OpenFlag::Write | OpenFlag::Append), 0);
  file.writeText("text");
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(::read(reader, buffer, sizeof buffer), 4);
  EXPECT_STREQ(buffer, "text");
  ::close(reader);
}

TEST_F(FileTest, OpeningAgainClosesTheFileBefore) {
  ASSERT_EQ(file.open(dir.wide("one"), Rewrite), 0);
  file.writeText("text");
  const int before = file.descriptor();
  ASSERT_EQ(file.open(dir.wide("two"), Rewrite), 0);
  EXPECT_EQ(dir.read("one"), "text");
  EXPECT_EQ(file.descriptor(), before);
  EXPECT_TRUE(sameName(file.name(), dir.wide("two")));
}

TEST_F(FileTest, TheDescriptorClosesOnExecUnlessAskedOtherwise) {
  ASSERT_EQ(file.open(dir.wide("file"), Rewrite), 0);
  EXPECT_EQ(fcntl(file.descriptor(), F_GETFD), FD_CLOEXEC);
  ASSERT_EQ(file.open(dir.wide("file"), Rewrite | OpenFlag::KeepOnExec), 0);
  EXPECT_EQ(fcntl(file.descriptor(), F_GETFD), 0);
}

TEST_F(FileTest, DescriptorZeroIsNeverUsedForAFile) {
  dir.write("file", "text");
  EXPECT_EQ(runInChild([&] {
              ::close(STDIN_FILENO);
              EXPECT_EQ(file.open(dir.wide("file"), OpenFlag::Read), 0);
              EXPECT_GT(file.descriptor(), STDERR_FILENO);
              EXPECT_EQ(fcntl(file.descriptor(), F_GETFD), FD_CLOEXEC);
              EXPECT_EQ(readSome(10), "text");
              File kept;
              EXPECT_EQ(kept.open(dir.wide("file"), OpenFlag::Read | OpenFlag::KeepOnExec), 0);
              EXPECT_GT(kept.descriptor(), STDERR_FILENO);
              EXPECT_EQ(fcntl(kept.descriptor(), F_GETFD), 0);
            }),
            0);
}

TEST_F(FileTest, NamesAreBytesAndNotText) {
  const std::string name = "raw\xff\xc0\x80 name";
  dir.write(name, "found");
  ASSERT_EQ(file.open(dir.wide(name), OpenFlag::Read), 0);
  EXPECT_EQ(readSome(10), "found");
  ASSERT_EQ(file.open(dir.path(name).c_str(), OpenFlag::Read), 0);
  EXPECT_EQ(readSome(10), "found");
}

TEST_F(FileTest, AReadAtTheEndSaysSo) {
  dir.write("file", "");
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(file.read(buffer, 1, &got), Status::EndOfFile);
  EXPECT_EQ(got, 0u);
}

TEST_F(FileTest, AShortReadIsNoError) {
  dir.write("file", "four");
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(file.read(buffer, 10, &got), 0);
  EXPECT_EQ(got, 4u);
  EXPECT_EQ(file.read(buffer, 10, &got), Status::EndOfFile);
  EXPECT_EQ(got, 0u);
}

TEST_F(FileTest, AnEmptyReadChangesNothing) {
  dir.write("file", "");
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(file.read(buffer, 0, &got), 0);
  EXPECT_EQ(got, 0u);
}

TEST_F(FileTest, ReadsCrossTheBuffersEnd) {
  const std::string text = pattern(10000);
  dir.write("file", text);
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(readSome(4000), text.substr(0, 4000));
  EXPECT_EQ(readSome(5000), text.substr(4000, 5000));
  EXPECT_EQ(file.tell(), 9000);
  EXPECT_EQ(readSome(5000), text.substr(9000));
  EXPECT_EQ(file.tell(), 10000);
}

TEST_F(FileTest, ReadsCostOneCallForEachFilledBuffer) {
  dir.write("file", pattern(8192));
  file.open(dir.wide("file"), OpenFlag::Read);
  const FaultHook hook;
  for (int i = 0; i < 8192; ++i) file.read(buffer, 1);
  EXPECT_EQ(hook.calls("read"), 2);
  EXPECT_EQ(hook.calls(), 2);
}

TEST_F(FileTest, AWriteAfterAReadGoesOnAtThePosition) {
  dir.write("file", "abcdefgh");
  file.open(dir.wide("file"), ReadWrite);
  file.rewind();
  EXPECT_EQ(readSome(3), "abc");
  EXPECT_EQ(file.write("XY", 2), 0);
  EXPECT_EQ(file.tell(), 5);
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(dir.read("file"), "abcXYfgh");
}

TEST_F(FileTest, AReadAfterAWriteSeesWhatFollows) {
  dir.write("file", "abcdefgh");
  file.open(dir.wide("file"), ReadWrite);
  file.rewind();
  file.write("XY", 2);
  EXPECT_EQ(readSome(3), "cde");
  file.rewind();
  EXPECT_EQ(readSome(8), "XYcdefgh");
}

TEST_F(FileTest, AFullBufferIsWrittenOut) {
  file.open(dir.wide("file"), Rewrite);
  const std::string text = pattern(9000);
  EXPECT_EQ(file.write(text.data(), text.size()), 0);
  EXPECT_EQ(dir.read("file").size(), 8192u);
  EXPECT_EQ(file.tell(), 9000);
  EXPECT_EQ(file.fileSize(), 8192);
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(file.fileSize(), 9000);
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(dir.read("file"), text);
}

TEST_F(FileTest, ADescriptorTakenOverGoesOnWhereItStands) {
  dir.write("file", "abcdef");
  const int fd = ::open(dir.path("file").c_str(), O_RDWR);
  ::lseek(fd, 2, SEEK_SET);
  file.attach(fd, dir.wide("file"));
  EXPECT_EQ(file.tell(), 2);
  EXPECT_EQ(readSome(2), "cd");
  file.write("X", 1);
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(dir.read("file"), "abcdXf");
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST_F(FileTest, AFileSizeLimitInTheMiddleOfABufferIsAnError) {
  // The write that crosses the limit is short, the next one fails: both belong to one buffer.
  EXPECT_EQ(runInChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{1000, 1000};
              setrlimit(RLIMIT_FSIZE, &limit);
              file.open(dir.wide("file"), Rewrite);
              EXPECT_EQ(file.write(buffer, 4096), EFBIG);
              EXPECT_EQ(file.tell(), 4096);
              EXPECT_EQ(file.close(), EFBIG);
            }),
            0);
  EXPECT_EQ(dir.read("file").size(), 1000u);
}

TEST_F(FileTest, AFullDiskIsReportedByWriteOrClose) {
  ASSERT_EQ(file.open(L"/dev/full", OpenFlag::Write), 0);
  EXPECT_EQ(file.write("x", 1), 0);
  EXPECT_EQ(file.close(), ENOSPC);
  ASSERT_EQ(file.open(L"/dev/full", OpenFlag::Write), 0);
  EXPECT_EQ(file.write(buffer, 5000), ENOSPC);
  EXPECT_EQ(file.close(), ENOSPC);
}

TEST_F(FileTest, AnErrorSticksUntilASeekClearsIt) {
  file.open(dir.wide("file"), Rewrite);
  file.write("ab", 2);
  {
    const FaultHook hook("write", EIO);
    EXPECT_EQ(file.flush(), EIO);
  }
  EXPECT_EQ(file.write("cd", 2), EIO);
  EXPECT_EQ(file.status(), EIO);
  EXPECT_EQ(file.seek(0), EIO);  // what couldn't be written is dropped, and told
  EXPECT_EQ(file.seek(0), 0);
  EXPECT_EQ(file.write("ef", 2), 0);
  EXPECT_EQ(file.close(), 0);
  EXPECT_EQ(dir.read("file"), "ef");
}

TEST_F(FileTest, BytesLostOnTheWayAreStillToldAtTheEnd) {
  file.open(dir.wide("file"), ReadWrite | OpenFlag::Create);
  file.write("ab", 2);
  {
    const FaultHook hook("write", EDQUOT);
    EXPECT_EQ(file.read(buffer, 1), EDQUOT);
  }
  EXPECT_EQ(file.close(), EDQUOT);
}

TEST_F(FileTest, AnErrorOfTheFlushWinsOverOneOfClose) {
  struct Errors {
    static int onCall(const char* call, const char*, void*) {
      return std::string(call) == "write" ? ENOSPC : std::string(call) == "close" ? EIO : 0;
    }
  };
  file.open(dir.wide("file"), Rewrite);
  file.write("ab", 2);
  System::setHook(Errors::onCall, nullptr);
  EXPECT_EQ(file.close(), ENOSPC);
  EXPECT_EQ(file.status(), ENOSPC);
  System::setHook(nullptr, nullptr);
  file.open(dir.wide("file"), Rewrite);
  System::setHook(Errors::onCall, nullptr);
  EXPECT_EQ(file.close(), EIO);
  System::setHook(nullptr, nullptr);
  EXPECT_FALSE(file.isOpen());
}

TEST_F(FileTest, AReadErrorIsTheStatus) {
  dir.write("file", "text");
  file.open(dir.wide("file"), OpenFlag::Read);
  {
    const FaultHook hook("read", EIO);
    EXPECT_EQ(file.read(buffer, 1, &got), EIO);
    EXPECT_EQ(got, 0u);
  }
  EXPECT_EQ(file.read(buffer, 1, &got), EIO);
  EXPECT_EQ(file.rewind(), 0);
  EXPECT_EQ(file.read(buffer, 1, &got), 0);
}

TEST_F(FileTest, ASeekInsideTheReadBufferDoesntTouchTheDescriptor) {
  const std::string text = pattern(9000);
  dir.write("file", text);
  file.open(dir.wide("file"), OpenFlag::Read);
  readSome(5000);
  const FaultHook hook;
  for (int64_t position : {4096, 8000, 4500}) {
    EXPECT_EQ(file.seek(position), 0);
    EXPECT_EQ(file.tell(), position);
    EXPECT_EQ(readSome(100), text.substr(static_cast<size_t>(position), 100));
  }
  EXPECT_EQ(file.seekBy(-50), 0);
  EXPECT_EQ(file.tell(), 4550);
  EXPECT_EQ(hook.calls(), 0);
  EXPECT_EQ(file.seek(10), 0);
  EXPECT_EQ(hook.calls("seek"), 1);
  EXPECT_EQ(readSome(5), text.substr(10, 5));
}

TEST_F(FileTest, ASeekWritesWhatWaits) {
  file.open(dir.wide("file"), Rewrite);
  file.write("abcd", 4);
  EXPECT_EQ(file.seek(1), 0);
  EXPECT_EQ(dir.read("file"), "abcd");
  file.write("X", 1);
  EXPECT_EQ(file.seekBy(1), 0);
  file.write("Y", 1);
  file.close();
  EXPECT_EQ(dir.read("file"), "aXcY");
}

TEST_F(FileTest, ASeekToNowhereIsRefused) {
  dir.write("file", "text");
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(file.seek(-1), EINVAL);
  EXPECT_EQ(file.seek(2), 0);
  EXPECT_EQ(file.seekBy(INT64_MAX), EINVAL);
  EXPECT_EQ(file.rewind(), 0);
  EXPECT_EQ(readSome(4), "text");
}

TEST_F(FileTest, ASeekClearsTheEndOfTheFile) {
  dir.write("file", "text");
  file.open(dir.wide("file"), OpenFlag::Read);
  readSome(4);
  readSome(4);
  EXPECT_EQ(file.status(), Status::EndOfFile);
  EXPECT_EQ(file.seek(2), 0);
  EXPECT_EQ(readSome(4), "xt");
}

TEST_F(FileTest, ReadLineDropsTheLinesEnd) {
  dir.write("file", "ab\r\n\r\ncd\nef");
  file.open(dir.wide("file"), OpenFlag::Read);
  const char* lines[] = {"ab", "", "cd", "ef"};
  for (const char* line : lines) {
    EXPECT_EQ(file.readLine(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, line);
  }
  EXPECT_EQ(file.readLine(buffer, sizeof buffer), Status::EndOfFile);
  EXPECT_STREQ(buffer, "");
}

TEST_F(FileTest, ALineLongerThanTheBufferComesOutInPieces) {
  dir.write("file", "abcdefgh\nij\n");
  file.open(dir.wide("file"), OpenFlag::Read);
  const char* pieces[] = {"abc", "def", "gh", "ij"};
  for (const char* piece : pieces) {
    EXPECT_EQ(file.readLine(buffer, 4), 0);
    EXPECT_STREQ(buffer, piece);
  }
  EXPECT_EQ(file.readLine(buffer, 4), Status::EndOfFile);
}

TEST_F(FileTest, ReadLineEndsAtAZeroByte) {
  dir.write("file", std::string("ab\0cd\n", 6));
  file.open(dir.wide("file"), OpenFlag::Read);
  EXPECT_EQ(file.readLine(buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "ab");
  EXPECT_EQ(file.readLine(buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "cd");
}

TEST_F(FileTest, ALineThatAnErrorCutsIsGivenBeforeTheErrorIsTold) {
  const std::string text = pattern(4096) + "rest\n";
  dir.write("file", text);
  file.open(dir.wide("file"), OpenFlag::Read);
  {
    const FaultHook hook(2, EIO);  // the buffer's second filling
    EXPECT_EQ(file.readLine(buffer, sizeof buffer), 0);
    EXPECT_TRUE(hook.hit());
    EXPECT_EQ(std::string(buffer), text.substr(0, 4096));
  }
  {
    const FaultHook hook("read", EIO);
    EXPECT_EQ(file.readLine(buffer, sizeof buffer), EIO);
    EXPECT_STREQ(buffer, "");
  }
}

TEST_F(FileTest, ALineOfLineEndsOnlyIsEmpty) {
  dir.write("file", "a\r\r\r\n\nb\r");
  file.open(dir.wide("file"), OpenFlag::Read);
  for (const char* line : {"a", "", "b"}) {
    EXPECT_EQ(file.readLine(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, line);
  }
}

TEST_F(FileTest, ReadLineNeverWritesBeyondItsBuffer) {
  dir.write("file", "abc");
  file.open(dir.wide("file"), OpenFlag::Read);
  buffer[0] = 'x';
  EXPECT_EQ(file.readLine(buffer, 0), EINVAL);
  EXPECT_EQ(buffer[0], 'x');
  file.rewind();
  buffer[1] = 'y';
  EXPECT_EQ(file.readLine(buffer, 1), 0);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(buffer[1], 'y');
}

TEST_F(FileTest, TextModeWritesEachLineFeedWithACarriageReturn) {
  file.open(dir.wide("file"), Rewrite | OpenFlag::Text);
  EXPECT_EQ(file.writeText("a\nb\n\nc"), 0);
  EXPECT_EQ(file.writeLine("d\nd"), 0);
  EXPECT_EQ(file.write("e\n", 2), 0);
  file.close();
  EXPECT_EQ(dir.read("file"), "a\r\nb\r\n\r\ncd\r\nd\r\ne\n");
}

TEST_F(FileTest, OutsideTextModeATextStaysAsItIs) {
  file.open(dir.wide("file"), Rewrite);
  file.writeText("a\nb");
  file.writeLine("c");
  file.close();
  EXPECT_EQ(dir.read("file"), "a\nbc\r\n");
}

TEST_F(FileTest, TruncateCutsWhatWasWrittenAndWhatWasReadAhead) {
  dir.write("file", "abcdefgh");
  file.open(dir.wide("file"), ReadWrite);
  file.rewind();
  EXPECT_EQ(readSome(2), "ab");
  EXPECT_EQ(file.truncate(4), 0);
  EXPECT_EQ(file.tell(), 2);
  EXPECT_EQ(readSome(9), "cd");
  file.seek(4);
  file.write("xyz", 3);
  EXPECT_EQ(file.truncate(6), 0);
  EXPECT_EQ(file.fileSize(), 6);
  file.close();
  EXPECT_EQ(dir.read("file"), "abcdxy");
}

TEST_F(FileTest, TheTimeIsSetAfterWhatWaitsIsWritten) {
  file.open(dir.wide("file"), Rewrite);
  file.write("text", 4);
  const DosTime wanted{(2001 - 1980) << 9 | 2 << 5 | 3, 4 << 11 | 5 << 5 | 3};
  EXPECT_EQ(file.setTime(wanted), 0);
  EXPECT_EQ(file.close(), 0);
  file.open(dir.wide("file"), OpenFlag::Read);
  DosTime found;
  EXPECT_EQ(file.getTime(found), 0);
  EXPECT_EQ(compareDosTime(found, wanted), 0);
  EXPECT_EQ(file.fileSize(), 4);
}

TEST_F(FileTest, SettingTheTimeOfWritingMakesTheTimeOfReadingNow) {
  dir.write("file", "text");
  const timespec old[2] = {{1000000000, 0}, {1000000000, 0}};
  utimensat(AT_FDCWD, dir.path("file").c_str(), old, 0);
  ASSERT_EQ(file.open(dir.wide("file"), ReadWrite), 0);
  const time_t before = time(nullptr);
  EXPECT_EQ(file.setTime(timeToDos(1100000000)), 0);
  file.close();
  struct stat info;
  ASSERT_EQ(stat(dir.path("file").c_str(), &info), 0);
  EXPECT_EQ(info.st_mtime, 1100000000);
  EXPECT_GE(info.st_atime, before - 1);  // the clock of files may lag by a tick
}

TEST_F(FileTest, AFileThatIsntOpenRefusesEverything) {
  DosTime words;
  EXPECT_EQ(file.truncate(0), EBADF);
  EXPECT_EQ(file.setTime(words), EBADF);
  EXPECT_EQ(file.read(buffer, 1, &got), EBADF);
  EXPECT_EQ(got, 0u);
  EXPECT_EQ(file.write("x", 1), EBADF);
  EXPECT_EQ(file.seek(0), EBADF);
  EXPECT_EQ(file.getTime(words), EBADF);
  EXPECT_EQ(file.readLine(buffer, 10), EBADF);
  EXPECT_EQ(file.close(), 0);
}

TEST_F(FileTest, AFileThatIsntOpenHasNoSizeWhateverStandardInputIs) {
  dir.write("input", "text");
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(dup2(::open(dir.path("input").c_str(), O_RDONLY), STDIN_FILENO), 0);
              EXPECT_EQ(file.fileSize(), 0);
            }),
            0);
}

TEST_F(FileTest, EveryFailedCallOfAWriteIsReported) {
  // Open, write, seek back, write, close: whichever call fails, some result tells.
  for (int number = 1;; ++number) {
    dir.write("file", "");
    bool told = false;
    {
      const FaultHook hook(number, EIO);
      told |= file.open(dir.wide("file"), Rewrite) != 0;
      told |= file.write(buffer, 5000) != 0;
      told |= file.seek(100) != 0;
      told |= file.write(buffer, 5000) != 0;
      told |= file.close() != 0;
      if (!hook.hit()) break;
    }
    EXPECT_TRUE(told) << number;
    EXPECT_FALSE(file.isOpen());
  }
  EXPECT_EQ(dir.read("file").size(), 5100u);
}

}  // namespace
