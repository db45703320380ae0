#include "viewer/viewed_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>

#include "foundation/path_info.h"
#include "foundation/status.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "viewer/read_hook.h"

TEST(ViewedFile, OnlyFilesAreOpened) {
  TempDir dir;
  dir.makeDir("directory");
  ASSERT_EQ(mkfifo(dir.path("pipe").c_str(), 0600), 0);
  ViewedFile file;
  EXPECT_EQ(file.open(dir.wide("none")), ENOENT);
  EXPECT_EQ(file.open(dir.wide("directory")), EISDIR);
  EXPECT_EQ(file.open(dir.wide("pipe")), Status::NotRegularFile) << "and isn't waited for";
  EXPECT_EQ(file.open(L"/dev/zero"), Status::NotRegularFile);
  EXPECT_FALSE(file.isOpen());
  EXPECT_STREQ(errorTextShort(Status::NotRegularFile).data(), "Not a regular file");
}

TEST(ViewedFile, EachCallOfOpeningMayFail) {
  TempDir dir;
  dir.write("file", "text\n");
  int failures = 0;
  for (int number = 1; number < 20; ++number) {
    ViewedFile file;
    const FaultHook fault(number, EIO);
    const int result = file.open(dir.wide("file"));
    if (!fault.hit()) break;
    ++failures;
    // A read that fails is shown in its place.
    EXPECT_EQ(result, fault.hitCall() == "readAt" ? 0 : EIO) << fault.hitCall();
  }
  EXPECT_GE(failures, 3);
}

TEST(ViewedFile, TheSizeOfABlockDeviceIsFoundBySeeking) {
  TempDir dir;
  dir.write("device", std::string(1 << 20, 'x') + "end");
  // A device tells no size.
  System::setFoundHook(
      [](const char* call, void* found, ssize_t, void*) {
        if (strcmp(call, "fstat") != 0) return;
        auto* info = static_cast<struct ::stat*>(found);
        info->st_mode = S_IFBLK | 0600;
        info->st_size = 0;
      },
      nullptr);
  ViewedFile file;
  EXPECT_EQ(file.open(dir.wide("device"), {TextFormat::Utf8}), 0);
  EXPECT_EQ(file.size(), (1 << 20) + 3);
  EXPECT_EQ(file.text(file.lineAt(file.startOf(file.size())), 10), L"end");
  EXPECT_EQ(file.refresh(), FileChange::None);
  System::setFoundHook(nullptr, nullptr);
}

TEST(ViewedFile, AFileThatIsWrittenWhileItIsOpenedIsNoFileOfProc) {
  TempDir dir;
  dir.write("log", "line\n");
  // The first look comes just before the first line is written.
  int looks = 0;
  System::setFoundHook(
      [](const char* call, void* found, ssize_t, void* count) {
        if (strcmp(call, "fstat") != 0 || ++*static_cast<int*>(count) > 1) return;
        static_cast<struct ::stat*>(found)->st_size = 0;
      },
      &looks);
  ViewedFile file;
  EXPECT_EQ(file.open(dir.wide("log")), 0);
  System::setFoundHook(nullptr, nullptr);
  EXPECT_EQ(file.size(), 5);
  std::ofstream(dir.path("log"), std::ios::app) << "more\n";
  EXPECT_EQ(file.refresh(), FileChange::Grown);
  EXPECT_EQ(file.size(), 10);
}

TEST(ViewedFile, AFileOfProcIsReadToItsEnd) {
  ViewedFile file;
  ASSERT_EQ(file.open(L"/proc/self/status"), 0);
  EXPECT_GT(file.size(), 100);
  EXPECT_EQ(file.text(file.lineAt(0), 5), L"Name:");
  EXPECT_EQ(file.refresh(), FileChange::None);
}

TEST(ViewedFile, WhatIsShorterThanItSaysEndsWhereItEnds) {
  // Files of this kind claim a page.
  const std::string name = "/sys/class/net/lo/mtu";
  const std::string content = readFile(name);
  ASSERT_GT(statusOf(name).st_size, static_cast<off_t>(content.size()));
  ViewedFile file;
  ASSERT_EQ(file.open(decodeFileName(name.c_str())), 0);
  EXPECT_EQ(file.size(), static_cast<int64_t>(content.size()));
  EXPECT_EQ(file.nextLine(0), static_cast<int64_t>(content.size()));
}

TEST(ViewedFile, AMarkIsNoTextWhateverTheFormat) {
  TempDir dir;
  dir.write("file",
            "\xEF\xBB\xBF"
            "a\n");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf16Le}), 0);
  EXPECT_EQ(file.encoding().format, TextFormat::Utf8) << "the mark wins";
  EXPECT_EQ(file.textStart(), 3);
  EXPECT_EQ(file.text(file.lineAt(3), 10), L"a");
  const int64_t version = file.version();
  file.setEncoding({TextFormat::Utf16Le});
  EXPECT_EQ(file.textStart(), 0) << "no mark of this format";
  EXPECT_NE(file.version(), version);
}

TEST(ViewedFile, ANulReadsAsASpaceAndARawByteAsItself) {
  TempDir dir;
  dir.write("file", std::string("a\0b\xFF", 4));
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
  EXPECT_EQ(file.text(file.lineAt(0), 10), std::wstring(L"a b") + static_cast<wchar_t>(-1));
}

TEST(ViewedFile, GrowthIsFoundByLooking) {
  TempDir dir;
  dir.write("log", "one\ntw");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("log")), 0);
  EXPECT_EQ(file.nextLine(4), 6);
  EXPECT_EQ(file.refresh(), FileChange::None);
  dir.write("log", "one\ntwo\nthree\n");
  EXPECT_EQ(file.size(), 6);
  EXPECT_EQ(file.refresh(), FileChange::Grown);
  EXPECT_EQ(file.size(), 14);
  EXPECT_EQ(file.nextLine(4), 8);
  EXPECT_EQ(file.startOf(14), 8);
}

TEST(ViewedFile, AnEmptyFileMayGrowToo) {
  TempDir dir;
  dir.write("log", "");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("log")), 0);
  EXPECT_EQ(file.size(), 0);
  EXPECT_EQ(file.nextLine(0), 0);
  dir.write("log", "line\n");
  EXPECT_EQ(file.refresh(), FileChange::Grown);
  EXPECT_EQ(file.nextLine(0), 5);
}

TEST(ViewedFile, AShorterFileIsReadAnew) {
  TempDir dir;
  dir.write("log", "first line\nsecond line\nthird line\n");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("log")), 0);
  ASSERT_EQ(file.previousLine(34), 23);
  ASSERT_EQ(truncate(dir.path("log").c_str(), 5), 0);
  EXPECT_EQ(file.refresh(), FileChange::Shrunk);
  EXPECT_EQ(file.size(), 5);
  EXPECT_EQ(file.startOf(23), 0) << "a place behind the end is that of the last line";
  EXPECT_EQ(file.text(file.lineAt(0), 100), L"first");
  EXPECT_EQ(file.nextLine(23), 23) << "there is nothing";
}

TEST(ViewedFile, ATruncationBetweenTwoReadsEndsTheFile) {
  TempDir dir;
  dir.write("log", std::string(100'000, 'x'));
  ViewedFile file({1024, 1 << 20});
  ASSERT_EQ(file.open(dir.wide("log"), {TextFormat::Utf8}), 0);
  ASSERT_EQ(truncate(dir.path("log").c_str(), 60'500), 0);
  EXPECT_EQ(file.nextLine(0), 60'500);
  EXPECT_EQ(file.size(), 60'500);
  EXPECT_EQ(file.refresh(), FileChange::Shrunk);
}

TEST(ViewedFile, ARewrittenFileOfTheSameSizeIsReadAnew) {
  TempDir dir;
  dir.write("file", "aaaa\n");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file")), 0);
  ASSERT_EQ(file.text(file.lineAt(0), 9), L"aaaa");
  dir.write("file", "bbbb\n");
  setTime(dir.path("file"), 1'000'000'000);
  EXPECT_EQ(file.refresh(), FileChange::Rewritten);
  EXPECT_EQ(file.text(file.lineAt(0), 9), L"bbbb");
}

TEST(ViewedFile, AnotherFileOfTheSameNameIsNoticed) {
  TempDir dir;
  dir.write("log", "old\n");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("log")), 0);
  EXPECT_FALSE(file.replaced());
  ASSERT_EQ(rename(dir.path("log").c_str(), dir.path("log.1").c_str()), 0);
  EXPECT_FALSE(file.replaced()) << "nothing has the name yet";
  dir.write("log", "new\n");
  EXPECT_TRUE(file.replaced());
  EXPECT_EQ(file.text(file.lineAt(0), 9), L"old") << "the open one stays";
}

TEST(ViewedFile, LinesOf16MibAreSeenInParts) {
  constexpr int64_t Mib = int64_t{1} << 20;
  TempDir dir;
  {
    std::ofstream out(dir.path("file"), std::ios::binary);
    const std::string line = std::string(16 * Mib - 4, 'x') + "end\n";
    out << line << line << "last";
  }
  ViewedFile file;
  const ReadHook hook;
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
  EXPECT_EQ(file.nextLine(0), Mib);
  EXPECT_EQ(file.startOf(16 * Mib), 16 * Mib);
  EXPECT_EQ(file.previousLine(16 * Mib), 15 * Mib);
  const ViewedLine part = file.lineAt(15 * Mib);
  EXPECT_EQ(part.textEnd, 16 * Mib - 1) << "behind it comes the line end";
  EXPECT_EQ(part.next, 16 * Mib);
  EXPECT_EQ(file.startOf(32 * Mib), 32 * Mib);
  EXPECT_EQ(file.text(file.lineAt(32 * Mib), 10), L"last");
  EXPECT_EQ(file.characters(part.start, part.textEnd), Mib - 1);
  EXPECT_LE(hook.reads(), 160) << "of 513 blocks";
}

TEST(ViewedFile, TheEndOfASparseFileOfTenGibIsNear) {
  TempDir dir;
  dir.write("file", "first\n");
  const int64_t size = int64_t{10} << 30;
  ASSERT_EQ(truncate(dir.path("file").c_str(), size), 0);
  ViewedFile file;
  const ReadHook hook;
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
  int64_t at = size;
  for (int row = 0; row < 50; ++row) {
    at = file.previousLine(at);
    EXPECT_EQ(at, size - (row + 1) * (int64_t{1} << 20));
  }
  // Each byte of these rows is read once, and of one row more.
  EXPECT_LE(hook.reads(), 52 * 16);
  EXPECT_EQ(file.text(file.lineAt(at), 80), std::wstring(80, L' '));
  EXPECT_EQ(file.startOf(5), 0);
}
