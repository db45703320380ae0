#include "search/file_replacer.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <sys/xattr.h>

#include "foundation/path_info.h"
#include "foundation/status.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

bool never() {
  return false;
}

struct Replace {
  Westring text = L"old";
  Westring replacement = L"new";
  CaseRule rule = CaseRule::Exact;
  bool wholeWord = false;
  TextScanner::StopAsked stop = never;
};

class FileReplacerTest : public testing::Test {
 protected:
  ReplaceResult run(const Replace& wanted, const std::vector<std::string>& names = {"f"}) {
    FileReplacer replacer(wanted.text, wanted.rule, wanted.wholeWord, wanted.replacement,
                          wanted.stop);
    ReplaceResult result = ReplaceResult::Done;
    for (const std::string& name : names) {
      result = replacer.replaceIn(directory.path(name));
      if (result != ReplaceResult::Done) break;
    }
    replaced = replacer.replaced();
    error = replacer.error();
    errorPath = replacer.errorPath();
    return result;
  }
  std::string after(const std::string& content, const Replace& wanted) {
    directory.write("f", content);
    EXPECT_EQ(run(wanted), ReplaceResult::Done);
    EXPECT_EQ(directory.names(), std::vector<std::string>{"f"});
    return directory.read("f");
  }

  TempDir directory;
  int64_t replaced = 0;
  int error = 0;
  std::string errorPath;
};

// The encoding of what is put in has to be found out.
constexpr char OldText[] = "\x81 old text", NewText[] = "\x81 n\x8Aw text";

}  // namespace

TEST_F(FileReplacerTest, EveryMatchIsReplaced) {
  EXPECT_EQ(after("old and old, older", {}), "new and new, newer");
  EXPECT_EQ(replaced, 3);
}

TEST_F(FileReplacerTest, AnEmptyReplacementDeletesEveryMatch) {
  EXPECT_EQ(after("xoldyoldoldz", {.replacement = L""}), "xyz");
  EXPECT_EQ(after("old", {.replacement = L""}), "");
}

TEST_F(FileReplacerTest, ATextThatOccursInTheReplacementIsNotReplacedAgain) {
  EXPECT_EQ(after("old old", {.replacement = L"oldold"}), "oldold oldold");
  EXPECT_EQ(replaced, 2);
}

TEST_F(FileReplacerTest, WithoutWholeWordsLongerWordsChangeToo) {
  EXPECT_EQ(after("old older", {}), "new newer");
  EXPECT_EQ(after("old older", {.wholeWord = true}), "new older");
}

TEST_F(FileReplacerTest, LargeFilesAreWholeAroundTheirMatches) {
  std::string content, expected;
  for (int i = 0; i < 2000; ++i) {
    const std::string filling(static_cast<size_t>(i * 37 % 900), static_cast<char>('a' + i % 10));
    content += filling + "old";
    expected += filling + "a longer text";
  }
  EXPECT_EQ(after(content + "tail", {.replacement = L"a longer text"}), expected + "tail");
  EXPECT_EQ(replaced, 2000);
}

TEST_F(FileReplacerTest, BytesThatAreNoTextStayAsTheyAre) {
  const std::string content("\xFF\0old\x80\r\n\x1A", 10);
  std::string expected = content;
  expected.replace(expected.find("old"), 3, "new");
  EXPECT_EQ(after(content, {}), expected);
}

TEST_F(FileReplacerTest, TheReplacementGoesInTheEncodingOfItsMatch) {
  EXPECT_EQ(after("\x82 \xC3\xA9", {.text = L"\u00E9", .replacement = L"\u00E8"}), "\x8A \xC3\xA8");
  EXPECT_EQ(after("\u00FC old", {.replacement = L"\u00E8"}), "\u00FC \xC3\xA8");
  EXPECT_EQ(after("\x81 old", {.replacement = L"\u00E8"}), "\x81 \x8A");
  EXPECT_EQ(after("\x81 old\xFF\xC3", {.replacement = L"\u00E8"}), "\x81 \x8A\xFF\xC3");
}

TEST_F(FileReplacerTest, WhatTheEncodingCannotHoldIsRefused) {
  directory.write("f", "\x82 text");
  EXPECT_EQ(run({.text = L"\u00E9 text", .replacement = L"\u4E00"}), ReplaceResult::Failed);
  EXPECT_EQ(error, EILSEQ);
  EXPECT_EQ(directory.read("f"), "\x82 text");
  EXPECT_EQ(directory.names(), std::vector<std::string>{"f"});
}

TEST_F(FileReplacerTest, AFileWithoutAMatchIsUntouched) {
  directory.write("f", "nothing");
  const struct stat before = statusOf(directory.path("f"));
  EXPECT_EQ(run({}), ReplaceResult::Done);
  const struct stat now = statusOf(directory.path("f"));
  EXPECT_EQ(before.st_ino, now.st_ino);
  EXPECT_EQ(before.st_ctim.tv_nsec, now.st_ctim.tv_nsec);
}

TEST_F(FileReplacerTest, ModeAndAttributesStayAndTheTimeIsFresh) {
  directory.write("f", "old");
  directory.chmod("f", 0751);
  const bool hasAttributes = setxattr(directory.path("f").c_str(), "user.td.test", "v", 1, 0) == 0;
  setTime(directory.path("f"), 1000000000);
  EXPECT_EQ(run({}), ReplaceResult::Done);
  EXPECT_EQ(directory.mode("f"), 0751u);
  EXPECT_GT(statusOf(directory.path("f")).st_mtime, 1000000000);
  char value = 0;
  EXPECT_EQ(getxattr(directory.path("f").c_str(), "user.td.test", &value, 1),
            hasAttributes ? 1 : -1);
}

TEST_F(FileReplacerTest, ALinkStaysAndItsTargetIsReplacedOnce) {
  directory.write("f", "old");
  directory.link("f", "link");
  EXPECT_EQ(run({.replacement = L"old old"}, {"link", "f"}), ReplaceResult::Done);
  EXPECT_EQ(directory.read("f"), "old old");
  EXPECT_EQ(replaced, 1);
  EXPECT_EQ(readLinkTarget(directory.wide("link")), L"f");
}

TEST_F(FileReplacerTest, AnOlderTemporaryFileIsInNobodysWay) {
  directory.write("f", "old");
  directory.write("precious", "kept");
  directory.link("precious", "f.td@@@.tmp");
  EXPECT_EQ(run({}), ReplaceResult::Done);
  EXPECT_EQ(directory.read("f"), "new");
  EXPECT_EQ(directory.read("precious"), "kept");
  EXPECT_FALSE(directory.exists("f.td@@@.tmp"));
}

TEST_F(FileReplacerTest, ALongNameGetsAShortTemporaryOne) {
  const std::string name(250, 'n');
  directory.write(name, "old");
  EXPECT_EQ(run({}, {name}), ReplaceResult::Done);
  EXPECT_EQ(directory.read(name), "new");
  EXPECT_EQ(directory.names(), std::vector<std::string>{name});
}

TEST_F(FileReplacerTest, ADirectoryThatTakesNoFileNamesTheTemporaryOne) {
  directory.write("f", "old");
  directory.openToAll();
  System::setHook(
      [](const char* call, const char* path, void*) {
        return strcmp(call, "openAt") == 0 && strstr(path, ".td@@@.tmp") ? EACCES : 0;
      },
      nullptr);
  EXPECT_EQ(run({}), ReplaceResult::Failed);
  EXPECT_EQ(error, EACCES);
  EXPECT_EQ(errorPath, directory.path("f.td@@@.tmp"));
  EXPECT_EQ(directory.read("f"), "old");
}

TEST_F(FileReplacerTest, APipeIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(directory.path("f").c_str(), 0600), 0);
  EXPECT_EQ(run({}), ReplaceResult::Failed);
  EXPECT_EQ(error, Status::NotRegularFile);
}

TEST_F(FileReplacerTest, AFileThatChangesMeanwhileIsKept) {
  directory.write("f", "old");
  static std::string path;
  path = directory.path("f");
  System::setHook(
      [](const char* call, const char*, void*) {
        if (strcmp(call, "sync") == 0) writeFile(path, "somebody else's old");
        return 0;
      },
      nullptr);
  EXPECT_EQ(run({}), ReplaceResult::Failed);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(error, Status::ChangedMeanwhile);
  EXPECT_EQ(errorPath, path);
  EXPECT_EQ(directory.read("f"), "somebody else's old");
  EXPECT_EQ(directory.names(), std::vector<std::string>{"f"});
}

// Its end isn't known, so nothing could tell whether the new file has all of it.
TEST_F(FileReplacerTest, AFileThatHasMoreThanItTellsIsNeverMadeAnew) {
  directory.write("f", "");
  static std::string path;
  path = directory.path("f");
  static int opened;
  opened = 0;
  System::setHook(
      [](const char* call, const char*, void*) {
        if (strcmp(call, "openAt") == 0) ++opened;
        if (strcmp(call, "readAt") == 0) writeFile(path, "old and more");
        return 0;
      },
      nullptr);
  EXPECT_EQ(run({}), ReplaceResult::Failed);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(error, Status::ChangedMeanwhile);
  EXPECT_EQ(errorPath, path);
  EXPECT_EQ(opened, 2) << "its directory and itself";
  EXPECT_EQ(directory.read("f"), "old and more");
}

TEST_F(FileReplacerTest, StoppingBetweenBlocksLeavesTheFileWhole) {
  const std::string content = "old" + std::string(1 << 20, '.') + "old";
  for (int looks = 0; looks < 12; ++looks) {
    directory.write("f", content);
    int asked = 0;
    const ReplaceResult result = run({.stop = [&] { return asked++ >= looks; }});
    if (result == ReplaceResult::Done) {
      EXPECT_GT(looks, 4);
      return;
    }
    EXPECT_EQ(result, ReplaceResult::Stopped);
    EXPECT_EQ(directory.read("f"), content);
    EXPECT_EQ(directory.names(), std::vector<std::string>{"f"});
  }
  FAIL() << "it was never done";
}

TEST_F(FileReplacerTest, WhateverCallFailsTheOldOrTheNewFileIsWhole) {
  for (const Fault::Reach reach :
       {Fault::Reach::Once, Fault::Reach::SameName, Fault::Reach::Below}) {
    for (int number = 1;; ++number) {
      std::filesystem::remove(directory.path("f.td@@@.tmp"));
      directory.write("f", OldText);
      Fault fault{.number = number, .error = ENOSPC, .reach = reach, .directory = directory.path()};
      System::setPlaceHook(Fault::onCall, &fault);
      const ReplaceResult result = run({.replacement = L"n\u00E8w"});
      System::setPlaceHook(nullptr, nullptr);
      if (fault.seen < number) {
        ASSERT_GT(number, 10);
        break;
      }
      const std::string content = directory.read("f");
      EXPECT_EQ(content, result == ReplaceResult::Done ? NewText : OldText)
          << fault.call << " " << number;
      const bool mayStay = fault.refused({"unlinkAt"}, directory.path());
      if (!mayStay) {
        EXPECT_EQ(directory.names(), std::vector<std::string>{"f"}) << fault.call;
      }
    }
  }
}

TEST_F(FileReplacerTest, KilledAtAnyCallTheOldOrTheNewFileIsWhole) {
  for (int number = 1;; ++number) {
    directory.write("f", OldText);
    const pid_t child = fork();
    if (child == 0) {
      Fault fault{.number = number, .reach = Fault::Reach::Kill, .directory = directory.path()};
      System::setPlaceHook(Fault::onCall, &fault);
      static_cast<void>(run({.replacement = L"n\u00E8w"}));
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const std::string content = directory.read("f");
    EXPECT_TRUE(content == OldText || content == NewText) << content;
    if (WEXITSTATUS(status) != Fault::Killed) {
      ASSERT_GT(number, 10);
      EXPECT_EQ(content, NewText);
      break;
    }
  }
}
