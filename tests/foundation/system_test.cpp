#include "foundation/system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr mode_t Private = 0600;

TEST(System, AHookMakesOneNumberedCallFail) {
  const TempDir dir;
  dir.write("file", "text");
  const std::string path = dir.path("file");
  struct stat info;
  const FaultHook hook(2, EIO);
  EXPECT_EQ(System::stat(path.c_str(), &info), 0);
  EXPECT_EQ(System::lstat(path.c_str(), &info), -1);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(hook.hitCall(), "lstat");
  EXPECT_EQ(System::lstat(path.c_str(), &info), 0);
  EXPECT_EQ(hook.calls(), 3);
}

TEST(System, AFailedCloseClosesAllTheSame) {
  const TempDir dir;
  const int fd = System::open(dir.path("file").c_str(), O_CREAT | O_WRONLY, Private);
  ASSERT_GE(fd, 0);
  {
    const FaultHook hook("close", ENOSPC);
    EXPECT_EQ(System::close(fd), -1);
    EXPECT_EQ(errno, ENOSPC);
  }
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST(System, AnOpenedFileNeverTakesTheNumberOfAStandardStream) {
  const TempDir dir;
  dir.write("file", "text");
  EXPECT_EQ(runInChild([&] {
              ::close(STDIN_FILENO);
              const int fd = System::open(dir.path("file").c_str(), O_RDONLY | O_CLOEXEC);
              EXPECT_GT(fd, STDERR_FILENO);
              EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
              EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1);
            }),
            0);
}

TEST(System, ClosedStandardStreamsAreFilledAndOpenOnesStay) {
  EXPECT_EQ(runInChild([] {
              int ends[2];
              ASSERT_EQ(pipe(ends), 0);
              dup2(ends[1], STDOUT_FILENO);
              ::close(STDIN_FILENO);
              ::close(STDERR_FILENO);
              fillStandardStreams();
              struct stat input, errors, null;
              EXPECT_EQ(::stat("/dev/null", &null), 0);
              EXPECT_EQ(::fstat(STDIN_FILENO, &input), 0);
              EXPECT_EQ(::fstat(STDERR_FILENO, &errors), 0);
              EXPECT_EQ(input.st_rdev, null.st_rdev);
              EXPECT_EQ(errors.st_rdev, null.st_rdev);
              EXPECT_EQ(::write(STDOUT_FILENO, "x", 1), 1);
              char c = 0;
              EXPECT_EQ(::read(ends[0], &c, 1), 1);
            }),
            0);
}

TEST(System, RenameWithoutReplacingKeepsWhatIsThere) {
  const TempDir dir;
  dir.write("from", "new");
  dir.write("to", "old");
  dir.link("nowhere", "dangling");
  const std::string from = dir.path("from");
  EXPECT_EQ(System::renameNoReplace(from.c_str(), dir.path("to").c_str()), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(System::renameNoReplace(from.c_str(), dir.path("dangling").c_str()), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(dir.read("to"), "old");
  EXPECT_EQ(System::renameNoReplace(from.c_str(), dir.path("other").c_str()), 0);
  EXPECT_EQ(dir.read("other"), "new");
}

TEST(System, RenameWithoutReplacingLooksFirstWhereTheFileSystemCant) {
  const TempDir dir;
  dir.write("from", "new");
  dir.link("nowhere", "dangling");
  const std::string from = dir.path("from");
  const FaultHook hook("renameNoReplace", EINVAL);
  EXPECT_EQ(System::renameNoReplace(from.c_str(), dir.path("dangling").c_str()), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_TRUE(dir.exists("from"));
  EXPECT_EQ(System::renameNoReplace(from.c_str(), dir.path("other").c_str()), 0);
  EXPECT_EQ(dir.read("other"), "new");
  EXPECT_EQ(hook.calls("renameAt"), 1);
}

TEST(System, RenameWithoutReplacingNeverGuesses) {
  // Where the look before the rename fails, nobody knows what is there.
  const TempDir dir;
  dir.write("from", "new");
  dir.write("to", "old");
  System::setHook(
      [](const char* call, const char*, void*) {
        const std::string name = call;
        return name == "renameNoReplace" ? ENOSYS : name == "statAt" ? EIO : 0;
      },
      nullptr);
  const int result = System::renameNoReplace(dir.path("from").c_str(), dir.path("to").c_str());
  const int error = errno;
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(error, EIO);
  EXPECT_EQ(dir.read("from"), "new");
  EXPECT_EQ(dir.read("to"), "old");
}

TEST(System, ReservedRoomChangesNeitherSizeNorContent) {
  TempDir dir;
  dir.write("file", "text");
  const Descriptor file(System::open(dir.path("file").c_str(), O_RDWR));
  constexpr off_t Room = 1 << 20;
  ASSERT_EQ(System::reserve(file.get(), Room), 0);
  struct stat info;
  ASSERT_EQ(System::fstat(file.get(), &info), 0);
  EXPECT_EQ(info.st_size, 4);
  EXPECT_GE(info.st_blocks * 512, Room);
  EXPECT_EQ(dir.read("file"), "text");
}

TEST(System, TheEndOfADirectoryIsNoError) {
  const TempDir dir;
  DIR* directory = System::openDirectory(dir.path().c_str());
  ASSERT_NE(directory, nullptr);
  errno = EIO;
  while (System::readDirectory(directory)) {
  }
  EXPECT_EQ(errno, 0);
  EXPECT_EQ(System::closeDirectory(directory), 0);
}

TEST(System, ADescriptorClosesItselfAndReportsWhenAsked) {
  const TempDir dir;
  const std::string path = dir.path("file");
  int fd;
  {
    Descriptor owned(System::open(path.c_str(), O_CREAT | O_WRONLY, Private));
    fd = owned.get();
    Descriptor moved(std::move(owned));
    EXPECT_FALSE(owned.valid());
    EXPECT_TRUE(moved.valid());
  }
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
  Descriptor failing(System::open(path.c_str(), O_WRONLY));
  const FaultHook hook("close", EDQUOT);
  EXPECT_EQ(failing.close(), EDQUOT);
  EXPECT_FALSE(failing.valid());
  EXPECT_EQ(failing.close(), 0);
}

}  // namespace
