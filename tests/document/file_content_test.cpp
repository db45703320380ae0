#include "editor/text/file_content.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <string_view>

#include "foundation/path_info.h"
#include "foundation/status.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr size_t PartsOfAFile = 700'001;

std::string longText() {
  std::string text;
  for (size_t i = 0; text.size() < PartsOfAFile; ++i) text += "line " + std::to_string(i) + "\n";
  return text;
}

class FileContentTest : public testing::Test {
 protected:
  int load(const char* name = "file") { return readFileContent(dir.wide(name), content); }
  void expectNothing() const {
    EXPECT_EQ(content.bytes, "");
    EXPECT_FALSE(content.stamp.exists);
  }

  TempDir dir;
  FileContent content;
};

TEST_F(FileContentTest, EveryByteIsRead) {
  const std::string text = longText() + std::string("\0\xFF\r", 3);
  dir.write("file", text);
  ASSERT_EQ(load(), 0);
  EXPECT_TRUE(content.bytes == text);
  EXPECT_TRUE(content.tellsSize);
  EXPECT_FALSE(content.isReadOnly);
  ContentHash hash;
  hash.add(text);
  EXPECT_EQ(content.hash, hash.value());
  struct stat info;
  ASSERT_EQ(statPath(dir.wide("file"), info), 0);
  EXPECT_EQ(content.stamp, FileStamp::of(info));
}

TEST_F(FileContentTest, AnEmptyFileIsOneLikeOthers) {
  dir.write("file", "");
  ASSERT_EQ(load(), 0);
  EXPECT_EQ(content.bytes, "");
  EXPECT_TRUE(content.tellsSize);
  EXPECT_TRUE(content.stamp.exists);
}

TEST_F(FileContentTest, ALinkIsFollowed) {
  dir.write("file", "text");
  dir.link("file", "link");
  ASSERT_EQ(load("link"), 0);
  EXPECT_EQ(content.bytes, "text");
}

TEST_F(FileContentTest, AFileThatCannotBeWrittenIsReadOnly) {
  dir.write("file", "text");
  dir.openToAll();
  giveToUser(dir.path("file"));
  dir.chmod("file", 0444);
  EXPECT_EQ(runAsUser([&] {
              EXPECT_EQ(load(), 0);
              EXPECT_TRUE(content.isReadOnly);
              EXPECT_EQ(content.bytes, "text");
            }),
            0);
}

TEST_F(FileContentTest, WhatIsNoFileIsRefusedAtOnce) {
  dir.makeDir("directory");
  ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  dir.path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(load("nothing"), ENOENT);
  EXPECT_EQ(load("directory"), EISDIR);
  EXPECT_EQ(load("fifo"), Status::NotRegularFile);
  EXPECT_EQ(load("socket"), Status::NotRegularFile);
  EXPECT_EQ(readFileContent(L"/dev/null", content), Status::NotRegularFile);
  EXPECT_STREQ(errorTextShort(Status::NotRegularFile).data(), "Not a regular file");
  close(server);
}

TEST_F(FileContentTest, ATooLargeFileIsRefusedBeforeItIsRead) {
  dir.write("file", "");
  ASSERT_EQ(truncate(dir.path("file").c_str(), LargestEdited + 1), 0);
  FaultHook calls;
  EXPECT_EQ(load(), Status::TooLarge);
  EXPECT_EQ(calls.calls("readAt"), 0);
  EXPECT_STREQ(errorTextShort(Status::TooLarge).data(), "File is too large to edit");
  expectNothing();
}

// As long as it lives, the machine has no memory left that could be had.
class NoMemoryLeft {
 public:
  NoMemoryLeft() { System::setFoundHook(onFound, nullptr); }
  ~NoMemoryLeft() { System::setFoundHook(nullptr, nullptr); }

 private:
  static void onFound(const char* call, void* found, ssize_t length, void*) {
    if (std::string_view(call) != "read") return;
    const std::string_view table(static_cast<char*>(found), static_cast<size_t>(length));
    const size_t figure = table.find("MemAvailable:");
    if (figure == std::string_view::npos) return;
    for (size_t at = figure; at < table.size() && table[at] != '\n'; ++at) {
      if (isdigit(table[at])) static_cast<char*>(found)[at] = '0';
    }
  }
};

TEST_F(FileContentTest, AFileThatIsLargerThanTheMemoryLeftIsRefusedBeforeItIsRead) {
  dir.write("file", longText());
  dir.write("empty", "");
  {
    const NoMemoryLeft none;
    const FaultHook calls;
    EXPECT_EQ(load(), Status::TooLarge);
    EXPECT_EQ(calls.calls("readAt"), 0);
    expectNothing();
    EXPECT_EQ(load("empty"), 0);
  }
  EXPECT_EQ(load(), 0);
}

TEST_F(FileContentTest, WhereTheSystemDoesNotTellItsMemoryFilesAreRead) {
  dir.write("file", longText());
  const FaultHook untold("read", EIO);
  EXPECT_EQ(load(), 0);
  EXPECT_TRUE(untold.hit());
}

// A sanitizer takes more room than the limit gives, and ends the program itself.
#ifndef TD_SANITIZED
TEST_F(FileContentTest, WithoutMemoryTheFileIsTooLarge) {
  dir.write("file", "");
  ASSERT_EQ(truncate(dir.path("file").c_str(), off_t{1} << 30), 0);
  EXPECT_EQ(runInChild([&] {
              constexpr rlim_t most = rlim_t{512} << 20;  // of addresses
              const rlimit limit{most, most};
              ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
              EXPECT_EQ(load(), Status::TooLarge);
              expectNothing();
            }),
            0);
}
#endif

TEST_F(FileContentTest, AFileThatTellsNoSizeIsReadToItsEnd) {
  ASSERT_EQ(readFileContent(L"/proc/self/status", content), 0);
  EXPECT_NE(content.bytes.find("Name:"), std::string::npos);
  EXPECT_FALSE(content.tellsSize);
}

TEST_F(FileContentTest, AFileWithoutSizeAndEndIsTooLarge) {
  EXPECT_EQ(readFileContent(L"/proc/self/pagemap", content), Status::TooLarge);
  expectNothing();
}

TEST_F(FileContentTest, ProgressIsToldAndCanStop) {
  dir.write("file", longText());
  int64_t last = 0;
  int64_t whole = 0;
  int parts = 0;
  ASSERT_EQ(readFileContent(dir.wide("file"), content,
                            [&](int64_t done, int64_t total) {
                              EXPECT_GT(done, last);
                              last = done;
                              whole = total;
                              ++parts;
                              return true;
                            }),
            0);
  EXPECT_EQ(last, static_cast<int64_t>(content.bytes.size()));
  EXPECT_EQ(whole, last);
  EXPECT_GT(parts, 1);
  EXPECT_EQ(readFileContent(dir.wide("file"), content, [](int64_t, int64_t) { return false; }),
            ECANCELED);
  expectNothing();
}

// Cuts the file off as soon as reading it has begun.
struct CutOff {
  std::string path;
  static int onCall(const char* call, const char*, void* context) {
    const auto* self = static_cast<CutOff*>(context);
    if (std::string(call) == "readAt" && truncate(self->path.c_str(), 5) != 0) abort();
    return 0;
  }
};

TEST_F(FileContentTest, FewerBytesThanTheFileHasAreAnError) {
  dir.write("file", longText());
  CutOff cut{dir.path("file")};
  System::setHook(CutOff::onCall, &cut);
  const int result = load();
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(result, Status::ChangedMeanwhile);
  expectNothing();
}

TEST_F(FileContentTest, WhicheverCallFailsNothingIsLoadedHalf) {
  const std::string text = longText();
  dir.write("file", text);
  int failures = 0;
  for (int number = 1;; ++number) {
    FaultHook fault(number, EIO);
    const int result = load();
    if (!fault.hit()) break;
    ++failures;
    // What memory there is, and who may write, are asked for; an error there is no answer.
    if (result == 0) {
      EXPECT_TRUE(content.bytes == text) << fault.hitCall();
      EXPECT_NE(fault.hitCall(), "readAt");
    } else {
      EXPECT_EQ(result, EIO) << fault.hitCall();
      expectNothing();
    }
  }
  EXPECT_GT(failures, 5);
}

TEST(ContentHash, DoesNotDependOnThePartsButOnEachByte) {
  std::string text = longText().substr(0, 200);
  ContentHash whole;
  whole.add(text);
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    ContentHash parts;
    parts.add(std::string_view(text).substr(0, cut));
    parts.add(std::string_view(text).substr(cut, 7));
    if (cut + 7 < text.size()) parts.add(std::string_view(text).substr(cut + 7));
    ASSERT_EQ(parts.value(), whole.value()) << cut;
  }
  for (size_t i = 0; i < text.size(); ++i) {
    std::string other = text;
    other[i] ^= 1;
    ContentHash changed;
    changed.add(other);
    ASSERT_NE(changed.value(), whole.value()) << i;
    ContentHash shorter;
    shorter.add(std::string_view(text).substr(0, i));
    ASSERT_NE(shorter.value(), whole.value()) << i;
  }
}

TEST(ContentHash, ZeroesAtTheEndCount) {
  ContentHash one;
  one.add(std::string_view("\0", 1));
  ContentHash two;
  two.add(std::string_view("\0\0", 2));
  EXPECT_NE(one.value(), two.value());
  EXPECT_NE(one.value(), ContentHash().value());
}

}  // namespace
