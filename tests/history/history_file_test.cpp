// The file of the histories: loading, adding, writing it anew, several programs at once.

#include "history/history_file.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "foundation/data_paths.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

using Texts = std::vector<std::string>;

Texts textsOf(const FnStringStore& store) {
  Texts texts;
  for (int i = 0; i < store.count(); ++i) texts.emplace_back(toUtf8(*store.peek(i)).data());
  return texts;
}

class HistoryOnDisk : public testing::Test {
 protected:
  void SetUp() override {
    forget();
    setenv("HOME", dir.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
    dir.makeDir(".tdx");
    keepHistoryIn(dataFilePath(DataFile::History));
  }
  void TearDown() override {
    keepHistoryIn(L"");
    forget();
  }
  static void forget() {
    for (int i = 0; i < FieldHistoryCount; ++i) fieldHistory(static_cast<FieldHistory>(i))->clear();
    commandHistory().clear();
  }
  void writeFile(const std::string& text) const { dir.write(Name, text); }
  std::string file() const { return dir.read(Name); }
  void load(int most = 500) const {
    forget();
    loadHistory(most);
  }
  static Texts commands() { return textsOf(commandHistory()); }
  Texts names() const {
    Texts result;
    for (const auto& item : std::filesystem::directory_iterator(dir.path(".tdx"))) {
      result.push_back(item.path().filename().string());
    }
    return result;
  }

  static constexpr char Name[] = ".tdx/td.hst";
  TempDir dir;
};

TEST_F(HistoryOnDisk, WhatIsAddedIsThereAtTheNextStart) {
  addCommand(L"  ls -l");
  addField(FieldHistory::Filter, L"*.c");
  addCommand(L"make");
  addCommand(L"ls -l");
  addField(FieldHistory::Destination, L"/tmp");
  EXPECT_EQ(file(), "ls -l\r\n7\x19*.c\r\nmake\r\nls -l\r\n10\x19/tmp\r\n");
  load();
  EXPECT_EQ(commands(), (Texts{"make", "ls -l"}));
  EXPECT_EQ(textsOf(*fieldHistory(FieldHistory::Filter)), Texts{"*.c"});
  EXPECT_EQ(textsOf(*fieldHistory(FieldHistory::Destination)), Texts{"/tmp"});
  EXPECT_EQ(file(), "ls -l\r\n7\x19*.c\r\nmake\r\nls -l\r\n10\x19/tmp\r\n")
      << "loading writes nothing";
}

TEST_F(HistoryOnDisk, ALoadedCommandThatIsTypedAgainMovesToTheEnd) {
  writeFile("a\nb\nc\n");
  load();
  addCommand(L"a");
  EXPECT_EQ(commands(), (Texts{"b", "c", "a"}));
  addCommand(L"d");
  addCommand(L"b");
  EXPECT_EQ(commands(), (Texts{"c", "a", "d", "b"}));
  load();
  EXPECT_EQ(commands(), (Texts{"c", "a", "d", "b"}));
  addCommand(L"c");
  EXPECT_EQ(commands(), (Texts{"a", "d", "b", "c"}));
}

TEST_F(HistoryOnDisk, WhatCannotBeWrittenIsRememberedForThisRun) {
  addCommand(L"echo a\tb");
  EXPECT_EQ(commands(), Texts{"echo a\tb"});
  EXPECT_FALSE(dir.exists(Name));
}

TEST_F(HistoryOnDisk, WithoutAPlaceNothingIsWritten) {
  keepHistoryIn(L"");
  addCommand(L"ls");
  EXPECT_FALSE(dir.exists(Name));
  loadHistory(500);
  EXPECT_EQ(commands(), Texts{"ls"});
}

TEST_F(HistoryOnDisk, TheFirstCommandMakesPrivateFilesAndDirectories) {
  std::filesystem::remove(dir.path(".tdx"));
  addCommand(L"ls");
  EXPECT_EQ(dir.mode(".tdx"), 0700u);
  EXPECT_EQ(dir.mode(Name), 0600u);
}

TEST_F(HistoryOnDisk, AFileWithoutALineEndGetsOneFirst) {
  writeFile("ls\r\nmake");
  addCommand(L"echo");
  EXPECT_EQ(file(), "ls\r\nmake\r\necho\r\n");
}

TEST_F(HistoryOnDisk, AnAdditionIsOneWrite) {
  writeFile("ls");
  FaultHook count;
  addCommand(L"make");
  EXPECT_EQ(count.calls("write"), 1);
}

TEST_F(HistoryOnDisk, AFullDiskLeavesNoHalfLine) {
  writeFile("ls\r\n");
  // The limit lets a part of the line through.
  EXPECT_EQ(runInChild([] {
              signal(SIGXFSZ, SIG_IGN);
              const struct rlimit limit = {8, 8};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
              addCommand(L"a command that doesn't fit");
              return 0;
            }),
            0);
  EXPECT_EQ(file(), "ls\r\n");
}

TEST_F(HistoryOnDisk, AFailureToWriteIsIgnored) {
  writeFile("ls\r\n");
  for (const char* call : {"open", "fstat", "write", "lock"}) {
    const FaultHook fault(call, EIO);
    addCommand(L"make");
    EXPECT_TRUE(fault.hit()) << call;
  }
  EXPECT_EQ(commands(), Texts{"make"});
  EXPECT_EQ(file(), "ls\r\n");
}

TEST_F(HistoryOnDisk, WhereThereAreNoLocksLinesAreAddedWithoutThem) {
  const FaultHook fault("lock", EOPNOTSUPP);
  addCommand(L"make");
  EXPECT_EQ(file(), "make\r\n");
}

TEST_F(HistoryOnDisk, NoOtherKindOfFileIsTouchedOrWaitedFor) {
  ASSERT_EQ(mkfifo(dir.path(Name).c_str(), 0600), 0);
  addCommand(L"ls");
  load();
  EXPECT_EQ(commands(), Texts{});
}

TEST_F(HistoryOnDisk, UpToTheLimitTheFileGrows) {
  writeFile("a\nb\na\n4\x19x\n");
  load(3);
  EXPECT_EQ(file(), "a\nb\na\n4\x19x\n");
  EXPECT_EQ(commands(), (Texts{"b", "a"}));
}

TEST_F(HistoryOnDisk, AboveTheLimitTheFileShrinks) {
  std::string lines = "a\nb\nc\nd\n";
  for (int i = 0; i < 30; ++i) lines += "4\x19" + std::to_string(i) + "\n";
  writeFile(lines);
  dir.chmod(Name, 0640);
  load(3);
  EXPECT_EQ(commands(), (Texts{"b", "c", "d"}));
  EXPECT_EQ(textsOf(*fieldHistory(FieldHistory::GroupSelect)).size(), 30u);
  EXPECT_TRUE(
      file().starts_with("b\r\nc\r\nd\r\n4\x19"
                         "10\r\n"))
      << file();
  EXPECT_EQ(dir.mode(Name), 0640u);
  load(3);
  EXPECT_EQ(textsOf(*fieldHistory(FieldHistory::GroupSelect)).size(), 20u);
  EXPECT_EQ(names(), Texts{"td.hst"});
}

TEST_F(HistoryOnDisk, ALimitBelowOneKeepsOne) {
  writeFile("a\nb\n");
  load(0);
  EXPECT_EQ(commands(), Texts{"b"});
}

TEST_F(HistoryOnDisk, ALinkStaysWhenItsTargetIsWrittenAnew) {
  dir.write("real", "a\nb\nc\n");
  dir.link("../real", Name);
  load(2);
  EXPECT_EQ(dir.read("real"), "b\r\nc\r\n");
  addCommand(L"d");
  EXPECT_EQ(dir.read("real"), "b\r\nc\r\nd\r\n");
  EXPECT_TRUE(std::filesystem::is_symlink(dir.path(Name)));
}

TEST_F(HistoryOnDisk, AFileThatAnotherProgramKeepsIsNotWrittenAnew) {
  const std::string lines = "a\nb\nc\n";
  writeFile(lines);
  const Descriptor other(open(dir.path(Name).c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
  load(2);
  EXPECT_EQ(commands(), (Texts{"b", "c"}));
  EXPECT_EQ(file(), lines);
}

// What another program adds in the middle of it.
TEST_F(HistoryOnDisk, ALineAddedBeforeTheFileIsWrittenAnewIsKept) {
  writeFile("a\nb\nc\n");
  struct Other {
    const TempDir& dir;
    bool added = false;
    static int onCall(const char* call, const char*, void* context) {
      auto* other = static_cast<Other*>(context);
      if (std::string(call) != "lock" || other->added) return 0;
      other->added = true;
      other->dir.write(Name, "a\nb\nc\nby another\n");
      return 0;
    }
  } other{dir};
  System::setHook(Other::onCall, &other);
  load(2);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(file(), "c\r\nby another\r\n");
}

TEST_F(HistoryOnDisk, ALineIsAddedToTheFileThatStandsThereWhenTheLockIsHad) {
  writeFile("old\n");
  struct Other {
    const TempDir& dir;
    bool replaced = false;
    static int onCall(const char* call, const char*, void* context) {
      auto* other = static_cast<Other*>(context);
      if (std::string(call) != "lock" || other->replaced) return 0;
      other->replaced = true;
      other->dir.write(".tdx/new", "new\n");
      std::filesystem::rename(other->dir.path(".tdx/new"), other->dir.path(Name));
      return 0;
    }
  } other{dir};
  System::setHook(Other::onCall, &other);
  addCommand(L"mine");
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(file(), "new\nmine\r\n");
}

TEST_F(HistoryOnDisk, ProgramsThatAddAndWriteAnewAtOnceLoseNothing) {
  constexpr int programs = 4, linesEach = 60, most = 20;
  std::vector<pid_t> children;
  for (int program = 0; program < programs; ++program) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0; i < linesEach; ++i) {
        addField(FieldHistory::Filter, Westring(Estring(static_cast<long>(program))) + L"-" +
                                           Westring(Estring(static_cast<long>(i % 5))));
        addCommand(Westring(Estring(static_cast<long>(i))));
        if (i % 10 == 0) loadHistory(most);
      }
      _exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  load(1000);
  EXPECT_EQ(textsOf(*fieldHistory(FieldHistory::Filter)).size(), programs * 5u) << file();
}

TEST_F(HistoryOnDisk, AKillAtAnyCallLeavesAWholeFile) {
  const std::string old = "a\nb\nc\nd\n", compacted = "c\r\nd\r\n";
  int calls = 0;
  for (int number = 1;; ++number) {
    // A killed program leaves what it had in the making.
    std::filesystem::remove_all(dir.path(".tdx"));
    dir.makeDir(".tdx");
    writeFile(old);
    Fault fault{.number = number, .reach = Fault::Reach::Kill};
    const int status = runInChild([&] {
      System::setPlaceHook(Fault::onCall, &fault);
      loadHistory(2);
      addCommand(L"e");
    });
    if (status == 0) break;
    ASSERT_EQ(status, Fault::Killed);
    calls = number;
    const std::string now = file();
    EXPECT_TRUE(now == old || now == compacted || now == compacted + "e\r\n") << number << now;
  }
  EXPECT_EQ(file(), compacted + "e\r\n");
  EXPECT_GT(calls, 15);
}

TEST_F(HistoryOnDisk, WhicheverCallFailsTheFileIsWhole) {
  const std::string old = "a\nb\nc\nd\n", compacted = "c\r\nd\r\n";
  for (int number = 1;; ++number) {
    writeFile(old);
    const FaultHook fault(number, ENOSPC);
    load(2);
    addCommand(L"e");
    if (!fault.hit()) break;
    const std::string now = file();
    EXPECT_TRUE(now == old || now == old + "e\r\n" || now == compacted ||
                now == compacted + "e\r\n")
        << fault.hitCall() << now;
    EXPECT_EQ(names(), Texts{"td.hst"}) << fault.hitCall();
  }
}

}  // namespace
