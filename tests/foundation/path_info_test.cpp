#include "foundation/path_info.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ostream>

#include "foundation/file_unlock.h"
#include "foundation/names.h"
#include "foundation/status.h"
#include "foundation/users.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"
#include "support/wait_until.h"

namespace {

class PathInfoTest : public testing::Test {
 protected:
  TempDir dir;
};

std::string narrowed(const Westring& text) {
  return toUtf8(text).data();
}

TEST_F(PathInfoTest, ADanglingLinkExists) {
  dir.write("file", "");
  dir.link("nowhere", "dangling");
  EXPECT_TRUE(pathExists(dir.wide("file")));
  EXPECT_TRUE(pathExists(dir.wide("dangling")));
  EXPECT_TRUE(pathExists(dir.wide()));
  EXPECT_FALSE(pathExists(dir.wide("nowhere")));
  EXPECT_FALSE(pathExists(dir.wide("file/below")));
}

TEST_F(PathInfoTest, PathsAreTakenAsTheyAre) {
  for (const char* name : {"...", "x\\y", "12:30", "[a]*?", "\xff"}) {
    dir.write(name, "");
    EXPECT_TRUE(pathExists(dir.wide(name))) << name;
    EXPECT_EQ(removeFile(dir.wide(name)), 0) << name;
    EXPECT_FALSE(pathExists(dir.wide(name))) << name;
  }
  EXPECT_EQ(makeDir(dir.wide("..:\\")), 0);
  EXPECT_TRUE(isDirectoryPath(dir.wide("..:\\")));
  EXPECT_EQ(removeDir(dir.wide("..:\\")), 0);
}

TEST_F(PathInfoTest, DevicesAreWhatIsNeitherFileNorDirectoryNorLink) {
  dir.write("file", "");
  ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
  dir.link("fifo", "link");
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  strcpy(address.sun_path, dir.path("socket").c_str());
  ASSERT_EQ(bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(socket);
  EXPECT_TRUE(isDevice(dir.wide("fifo")));
  EXPECT_TRUE(isDevice(dir.wide("socket")));
  EXPECT_TRUE(isDevice(L"/dev/null"));
  EXPECT_FALSE(isDevice(dir.wide("file")));
  EXPECT_FALSE(isDevice(dir.wide()));
  EXPECT_FALSE(isDevice(dir.wide("link")));
  EXPECT_FALSE(isDevice(dir.wide("missing")));
}

TEST_F(PathInfoTest, TheSameFileIsKnownByAnyPath) {
  dir.write("file", "");
  dir.write("other", "");
  dir.link("file", "link");
  ASSERT_EQ(::link(dir.path("file").c_str(), dir.path("hard").c_str()), 0);
  EXPECT_TRUE(sameFile(dir.wide("file"), dir.wide("link")));
  EXPECT_TRUE(sameFile(dir.wide("file"), dir.wide("hard")));
  EXPECT_TRUE(sameFile(dir.wide("file"), dir.wide("../") + lastComponent(dir.wide()) + L"/file"));
  EXPECT_FALSE(sameFile(dir.wide("file"), dir.wide("other")));
  EXPECT_FALSE(sameFile(dir.wide("missing"), dir.wide("missing")));
}

TEST_F(PathInfoTest, ALinksTextComesWhole) {
  std::string longest;
  while (longest.size() < 4000) longest += "directory/";
  for (const std::string& target : {std::string("x"), std::string(511, 'a'), std::string(512, 'b'),
                                    longest, std::string("raw\xff")}) {
    dir.link(target, "link");
    EXPECT_EQ(narrowed(readLinkTarget(dir.wide("link"))), target);
    removeFile(dir.wide("link"));
  }
  dir.write("file", "");
  EXPECT_TRUE(readLinkTarget(dir.wide("file")).empty());
  EXPECT_TRUE(readLinkTarget(dir.wide("missing")).empty());
}

TEST(ModeString, ShowsTheTriplesAndTheSpecialBits) {
  struct Row {
    unsigned mode;
    const wchar_t* text;
  };
  const Row rows[] = {
      {04755, L"rwsr-xr-x"},   {01777, L"rwxrwxrwt"}, {0644, L"rw-r--r--"},  {0, L"---------"},
      {0777, L"rwxrwxrwx"},    {02755, L"rwxr-sr-x"}, {04644, L"rwSr--r--"}, {02644, L"rw-r-Sr--"},
      {01644, L"rw-r--r-T"},   {07777, L"rwsrwsrwt"}, {07000, L"--S--S--T"}, {0421, L"r---w---x"},
      {0100644, L"rw-r--r--"},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(sameName(modeString(row.mode), row.text)) << std::oct << row.mode;
  }
}

TEST_F(PathInfoTest, ChangesReportTheirErrors) {
  dir.write("file", "");
  EXPECT_EQ(makeDir(dir.wide("file")), EEXIST);
  EXPECT_EQ(makeDir(dir.wide("a/b")), ENOENT);
  EXPECT_EQ(makeDir(dir.wide("sub")), 0);
  EXPECT_EQ(removeDir(dir.wide()), ENOTEMPTY);
  EXPECT_EQ(removeDir(dir.wide("file")), ENOTDIR);
  EXPECT_EQ(removeDir(dir.wide("sub")), 0);
  EXPECT_EQ(removeFile(dir.wide("missing")), ENOENT);
  EXPECT_EQ(changeDir(dir.wide("file")), ENOTDIR);
}

TEST_F(PathInfoTest, ANewDirectoryIsOpenToAllButForTheMask) {
  const mode_t mask = umask(0);
  EXPECT_EQ(makeDir(dir.wide("open")), 0);
  umask(027);
  EXPECT_EQ(makeDir(dir.wide("sub")), 0);
  umask(mask);
  EXPECT_EQ(dir.mode("open"), 0777u);
  EXPECT_EQ(dir.mode("sub"), 0750u);
}

TEST_F(PathInfoTest, RenamingOntoAnExistingNameTouchesNeither) {
  dir.write("from", "new");
  dir.write("to", "old");
  dir.link("nowhere", "dangling");
  EXPECT_EQ(renameFile(dir.wide("from"), dir.wide("to")), EEXIST);
  EXPECT_EQ(renameFile(dir.wide("from"), dir.wide("dangling")), EEXIST);
  EXPECT_EQ(dir.read("from"), "new");
  EXPECT_EQ(dir.read("to"), "old");
  EXPECT_EQ(narrowed(readLinkTarget(dir.wide("dangling"))), "nowhere");
  EXPECT_EQ(renameFile(dir.wide("from"), dir.wide("free")), 0);
  EXPECT_EQ(dir.read("free"), "new");
  EXPECT_EQ(renameFile(dir.wide("from"), dir.wide("other")), ENOENT);
}

TEST_F(PathInfoTest, TheWorkingDirectoryIsReadHoweverLong) {
  EXPECT_EQ(runInChild([&] {
              std::string path = dir.path();
              ASSERT_EQ(changeDir(dir.wide()), 0);
              EXPECT_TRUE(sameName(currentDir(), dir.wide()));
              // One step at a time the working directory gets deeper than a path may be long.
              const std::string name(200, 'd');
              for (int level = 0; level < 22; ++level) {
                ASSERT_EQ(makeDir(decodeFileName(name.c_str())), 0);
                ASSERT_EQ(changeDir(decodeFileName(name.c_str())), 0);
                path += "/" + name;
              }
              EXPECT_EQ(narrowed(currentDir()), path);
              for (int level = 0; level < 22; ++level) {
                ASSERT_EQ(changeDir(L".."), 0);
                ASSERT_EQ(removeDir(decodeFileName(name.c_str())), 0);
              }
            }),
            0);
}

TEST_F(PathInfoTest, AFilesTimeIsThatOfALinksTarget) {
  dir.write("file", "");
  dir.link("file", "link");
  const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
  utimensat(AT_FDCWD, dir.path("file").c_str(), times, 0);
  DosTime words;
  EXPECT_EQ(getFileTime(dir.wide("link"), words), 0);
  EXPECT_EQ(compareDosTime(words, timeToDos(1000000000)), 0);
  EXPECT_EQ(getFileTime(dir.wide("missing"), words), ENOENT);
}

TEST_F(PathInfoTest, DiskSpaceIsInBytes) {
  uint64_t total = 0;
  uint64_t free = 0;
  uint64_t unit = 0;
  ASSERT_EQ(diskSpace(dir.wide(), total, free, unit), 0);
  EXPECT_GE(unit, 512u);
  EXPECT_GT(total, 0u);
  EXPECT_LE(free, total);
  EXPECT_EQ(total % unit, 0u);
  EXPECT_EQ(diskSpace(dir.wide("missing"), total, free, unit), ENOENT);
}

TEST_F(PathInfoTest, FreeSpaceIsWhatAnOrdinaryUserMayFill) {
  uint64_t total = 0;
  uint64_t free = 0;
  uint64_t unit = 0;
  struct statfs before;
  struct statfs after;
  // Others may write to the same disk meanwhile: what counts is a look during which it stood still.
  ASSERT_TRUE(waitUntil([&] {
    return statfs(dir.path().c_str(), &before) == 0 &&
           diskSpace(dir.wide(), total, free, unit) == 0 &&
           statfs(dir.path().c_str(), &after) == 0 && before.f_bavail == after.f_bavail;
  }));
  EXPECT_EQ(unit, static_cast<uint64_t>(before.f_frsize ? before.f_frsize : before.f_bsize));
  EXPECT_EQ(total, before.f_blocks * unit);
  EXPECT_EQ(free, before.f_bavail * unit);
}

TEST(ErrorText, IsTheSystemsTextWithItsNumber) {
  EXPECT_TRUE(sameName(errorText(ENOENT), L"No such file or directory (2)"));
  EXPECT_STREQ(errorTextShort(EACCES).data(), "Permission denied");
  EXPECT_STREQ(errorTextShort(12345).data(), "Unknown error 12345");
  EXPECT_TRUE(sameName(errorText(Status::TooLarge), L"File is too large to edit"));
  EXPECT_TRUE(sameName(errorText(Status::NotRegularFile), L"Not a regular file"));
}

TEST_F(PathInfoTest, ListNamesSeesEveryNameAsItsBytes) {
  std::vector<std::string> wanted{".hidden", "..x", "...", "\xff", "new\nline", "dangling", "sub"};
  for (const std::string& name : wanted) {
    if (name != "dangling" && name != "sub") dir.write(name, "");
  }
  dir.link("nowhere", "dangling");
  dir.makeDir("sub");
  std::vector<std::string> names{"left over"};
  EXPECT_EQ(listNames(dir.path().c_str(), names), 0);
  std::sort(wanted.begin(), wanted.end());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, wanted);
}

TEST_F(PathInfoTest, ListNamesLooksAtNothingAndClosesTheDirectory) {
  for (int i = 0; i < 1000; ++i) dir.write(std::to_string(i), "");
  const FaultHook hook;
  std::vector<std::string> names;
  EXPECT_EQ(listNames(dir.path().c_str(), names), 0);
  EXPECT_EQ(names.size(), 1000u);
  EXPECT_EQ(hook.calls("openDirectory"), 1);
  EXPECT_EQ(hook.calls("closeDirectory"), 1);
  EXPECT_EQ(hook.calls(), 2 + hook.calls("readDirectory"));
}

TEST_F(PathInfoTest, ListNamesReportsWhatItCouldntRead) {
  dir.write("file", "");
  std::vector<std::string> names;
  EXPECT_EQ(listNames(dir.path("missing").c_str(), names), ENOENT);
  EXPECT_EQ(listNames(dir.path("file").c_str(), names), ENOTDIR);
  const FaultHook hook("readDirectory", EIO);
  EXPECT_EQ(listNames(dir.path().c_str(), names), EIO);
  EXPECT_EQ(hook.calls("closeDirectory"), 1);
}

TEST_F(PathInfoTest, OnePathBecomesAnEntry) {
  dir.write(".hidden", "1234");
  dir.makeDir("sub");
  dir.link("sub", "tosub");
  dir.link("nowhere", "dangling");
  int error = -1;
  const EntryPtr hidden = entryOfPath(dir.wide(".hidden"), error);
  ASSERT_EQ(error, 0);
  EXPECT_TRUE(sameName(hidden->name(), L".hidden"));
  EXPECT_EQ(hidden->size, 4u);
  EXPECT_EQ(hidden->attributes, Attribute::Hidden);
  EXPECT_EQ(entryOfPath(dir.wide("tosub"), error)->attributes,
            Attribute::Directory | Attribute::Link);
  const EntryPtr dangling = entryOfPath(dir.wide("dangling"), error);
  EXPECT_EQ(dangling->attributes, Attribute::Link);
  EXPECT_EQ(dangling->size, 7u);
  EXPECT_EQ(entryOfPath(dir.wide("missing"), error), nullptr);
  EXPECT_EQ(error, ENOENT);
  EXPECT_TRUE(entryOfPath(L"/", error)->isDirectory());
}

TEST(FillEntry, ForgetsACountedTotal) {
  const EntryPtr item(newEntry(L"sub"));
  item->size = 5000;
  item->total = 5000;
  item->level = 1;
  struct stat info {};
  info.st_mode = S_IFDIR | 0755;
  info.st_size = 4096;
  fillEntry(item.get(), info);
  EXPECT_EQ(item->size, 0u);
  EXPECT_EQ(item->total, -1);
  EXPECT_EQ(item->level, 0);
}

TEST(FillEntry, WhatItsOwnerMayNotWriteIsReadOnly) {
  const EntryPtr item(newEntry(L".name"));
  struct stat info {};
  info.st_mode = S_IFREG | 0466;
  fillEntry(item.get(), info);
  EXPECT_EQ(item->attributes, Attribute::Hidden | Attribute::ReadOnly);
  info.st_mode = S_IFDIR | 0755;
  fillEntry(item.get(), info);
  EXPECT_EQ(item->attributes, Attribute::Hidden | Attribute::Directory);
}

TEST(FillEntry, KeepsOwnersAbove65535Whole) {
  const EntryPtr item(newEntry(L"name"));
  item->tagged = 1;
  struct stat info {};
  info.st_mode = S_IFREG | 0644;
  info.st_uid = 4000000000u;
  info.st_gid = 100000;
  info.st_size = int64_t{1} << 50;
  fillEntry(item.get(), info);
  EXPECT_EQ(item->owner, 4000000000u);
  EXPECT_EQ(item->group, 100000u);
  EXPECT_EQ(item->size, uint64_t{1} << 50);
  EXPECT_EQ(item->mode, S_IFREG | 0644);
  EXPECT_EQ(item->tagged, 1);
}

TEST(Users, NamesAndNumbersGoBothWays) {
  EXPECT_EQ(userId(L"root"), 0);
  EXPECT_EQ(groupId(L"root"), 0);
  EXPECT_TRUE(sameName(userName(0), L"root"));
  EXPECT_TRUE(sameName(groupName(0), L"root"));
}

TEST(Users, UnknownOnesAreMinusOneAndTheirNumber) {
  EXPECT_EQ(userId(L"no such user"), -1);
  EXPECT_EQ(groupId(L"no such group"), -1);
  EXPECT_TRUE(sameName(userName(4123456789u), L"4123456789"));
  EXPECT_TRUE(sameName(groupName(4123456789u), L"4123456789"));
}

TEST(Users, EachIsLookedUpOnceInARun) {
  EXPECT_EQ(runInChild([] {
              const Westring user = userName(1);
              const Westring group = groupName(1);
              // From here on the data base can't be opened.
              const rlimit none{0, 0};
              setrlimit(RLIMIT_NOFILE, &none);
              EXPECT_EQ(userId(user), -1);
              EXPECT_EQ(groupId(group), -1);
              EXPECT_TRUE(sameName(userName(1), user));
              EXPECT_TRUE(sameName(groupName(1), group));
            }),
            0);
}

class FileUnlockTest : public PathInfoTest {};

TEST_F(FileUnlockTest, AFileIsWritableForAWhile) {
  dir.write("file", "");
  dir.chmod("file", 0444);
  FileUnlock lock;
  EXPECT_EQ(lock.unlock(dir.wide("file")), 0);
  EXPECT_TRUE(lock.locked());
  EXPECT_EQ(dir.mode("file"), 0644u);
  EXPECT_EQ(lock.relock(), 0);
  EXPECT_EQ(dir.mode("file"), 0444u);
  EXPECT_FALSE(lock.locked());
  EXPECT_EQ(lock.relock(), 0);
}

TEST_F(FileUnlockTest, AFileAlreadyWritableForItsOwnerWasRefusedForAnotherReason) {
  dir.write("file", "");
  dir.chmod("file", 0200);
  FileUnlock lock;
  EXPECT_EQ(lock.unlock(dir.wide("file")), EACCES);
  EXPECT_FALSE(lock.locked());
  EXPECT_EQ(dir.mode("file"), 0200u);
}

TEST_F(FileUnlockTest, TheModeReturnsAtTheEndOfTheScope) {
  dir.write("file", "");
  dir.chmod("file", 04511);
  {
    FileUnlock lock;
    EXPECT_EQ(lock.unlock(dir.wide("file")), 0);
    EXPECT_EQ(dir.mode("file"), 04711u);
  }
  EXPECT_EQ(dir.mode("file"), 04511u);
}

TEST_F(FileUnlockTest, AnotherFileOfTheNameIsLeftAlone) {
  dir.write("file", "");
  dir.write("new", "");
  dir.chmod("file", 0444);
  dir.chmod("new", 0640);
  FileUnlock lock;
  EXPECT_EQ(lock.unlock(dir.wide("file")), 0);
  ASSERT_EQ(rename(dir.path("new").c_str(), dir.path("file").c_str()), 0);
  EXPECT_EQ(lock.relock(), 0);
  EXPECT_EQ(dir.mode("file"), 0640u);
}

TEST_F(FileUnlockTest, WhatItsOwnerAloneMayChangeIsRefused) {
  EXPECT_EQ(runAsUser([] {
              FileUnlock lock;
              EXPECT_EQ(lock.unlock(L"/proc/version"), EPERM);
              EXPECT_FALSE(lock.locked());
            }),
            0);
  FileUnlock lock;
  EXPECT_EQ(lock.unlock(dir.wide("missing")), ENOENT);
}

}  // namespace
