#include <fcntl.h>
#include <sys/resource.h>

#include <csignal>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

namespace {

class CopyFile : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    dir.makeDir("from");
    dir.makeDir("to");
    dir.write("from/a", "source of a");
  }
  void expectOldTarget() {
    EXPECT_EQ(dir.read("to/a"), "old target");
    expectNoLeftovers();
  }
  void makeOldTarget() { dir.write("to/a", "old target"); }
};

constexpr time_t OddTime = 1600000001;

}  // namespace

TEST_F(CopyFile, ACopyHasTheContentModeAndTimeOfItsSource) {
  dir.chmod("from/a", 0741);
  setTime(dir.path("from/a"), OddTime, 123456789);
  EXPECT_EQ(copy("from/a", "to/b"), Outcome::Done);
  EXPECT_EQ(dir.mode("to/b"), 0741U);
  EXPECT_EQ(statusOf(dir.path("to/b")).st_mtim.tv_sec, OddTime - 1);
  EXPECT_EQ(statusOf(dir.path("to/b")).st_mtim.tv_nsec, 0);
  EXPECT_EQ(statusOf(dir.path("to/b")).st_atim.tv_sec, OddTime - 1);
  EXPECT_EQ(dir.read("to/b"), "source of a");
  EXPECT_EQ(moved, 11);
  expectNoLeftovers();
}

TEST_F(CopyFile, SizesAroundEveryBlockAreCopiedWhole) {
  constexpr int Kernel = static_cast<int>(RunningOperation::BufferSize);
  for (const int size : {0, 1, 4095, 4096, 32768, Kernel - 1, Kernel, Kernel + 1, 3 << 20}) {
    std::string content(static_cast<size_t>(size), 0);
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7 + i / 251);
    dir.write("from/sized", content);
    EXPECT_EQ(copy("from/sized", "to/sized" + std::to_string(size)), Outcome::Done);
    EXPECT_TRUE(dir.read("to/sized" + std::to_string(size)) == content) << size;
    EXPECT_EQ(moved, size);
  }
}

TEST_F(CopyFile, TheKernelMovesTheBlocksOfALargeFile) {
  dir.write("from/large", std::string(5 << 20, 'x'));
  const FaultHook calls;
  EXPECT_EQ(copy("from/large", "to/large"), Outcome::Done);
  EXPECT_GT(calls.calls("copyRange"), 1);
  EXPECT_EQ(calls.calls("read"), 0);
}

TEST_F(CopyFile, WhereTheKernelCantMoveBlocksTheyGoThroughTheBuffer) {
  const std::string content(3 << 20, 'x');
  dir.write("from/large", content);
  for (const int error : {EXDEV, EINVAL, EOPNOTSUPP, ENOSYS, EPERM}) {
    const FaultHook faults("copyRange", error);
    EXPECT_EQ(copy("from/large", "to/large" + std::to_string(error)), Outcome::Done);
    EXPECT_TRUE(dir.read("to/large" + std::to_string(error)) == content);
    EXPECT_EQ(faults.calls("copyRange"), 1);
  }
}

TEST_F(CopyFile, HolesStayHoles) {
  constexpr off_t Size = off_t{1} << 40;
  const std::string source = dir.path("from/holes");
  writeFile(source, "");
  const int fd = ::open(source.c_str(), O_WRONLY | O_CLOEXEC);
  const std::pair<off_t, std::string> pieces[] = {
      {1 << 20, "early"}, {off_t{1} << 30, std::string(3 << 20, 'm')}, {Size - (1 << 20), "late"}};
  for (const auto& [place, text] : pieces) {
    ASSERT_EQ(pwrite(fd, text.data(), text.size(), place), static_cast<ssize_t>(text.size()));
  }
  ASSERT_EQ(ftruncate(fd, Size), 0);
  ::close(fd);
  const FaultHook notOffered("copyRange", EXDEV);
  for (const char* target : {"to/byBuffer", "to/byKernel"}) {
    if (std::string(target) == "to/byKernel") System::setHook(nullptr, nullptr);
    EXPECT_EQ(copy("from/holes", target), Outcome::Done);
    const struct stat copied = statusOf(dir.path(target));
    EXPECT_EQ(copied.st_size, Size);
    EXPECT_LT(copied.st_blocks, 16 << 11) << "16 MiB at most";
    EXPECT_EQ(moved, Size);
    const int back = ::open(dir.path(target).c_str(), O_RDONLY | O_CLOEXEC);
    for (const auto& [place, text] : pieces) {
      std::string read(text.size() + 1, 'x');
      EXPECT_EQ(pread(back, read.data(), read.size(), place), static_cast<ssize_t>(read.size()));
      EXPECT_TRUE(read == text + std::string(1, 0)) << place;
    }
    ::close(back);
  }
}

TEST_F(CopyFile, AFileOfHolesAloneIsCopied) {
  writeFile(dir.path("from/empty"), "");
  ASSERT_EQ(truncate(dir.path("from/empty").c_str(), 10 << 20), 0);
  EXPECT_EQ(copy("from/empty", "to/empty"), Outcome::Done);
  EXPECT_EQ(statusOf(dir.path("to/empty")).st_size, 10 << 20);
  EXPECT_EQ(statusOf(dir.path("to/empty")).st_blocks, 0);
}

TEST_F(CopyFile, WhereHolesAreNotToldTheyAreCopiedAsZeros) {
  writeFile(dir.path("from/holes"), "text");
  ASSERT_EQ(truncate(dir.path("from/holes").c_str(), 3 << 20), 0);
  struct NoHoles {
    int left = 1;
    static int onCall(const char* call, const char*, void* context) {
      auto* self = static_cast<NoHoles*>(context);
      return std::string(call) == "seek" && self->left-- > 0 ? EINVAL : 0;
    }
  };
  NoHoles once;
  System::setHook(NoHoles::onCall, &once);
  EXPECT_EQ(copy("from/holes", "to/holes"), Outcome::Done);
  System::setHook(nullptr, nullptr);
  EXPECT_TRUE(dir.read("to/holes") == dir.read("from/holes"));
}

TEST_F(CopyFile, ButNoRoomIsFinal) {
  dir.write("from/large", std::string(3 << 20, 'x'));
  for (const int error : {ENOSPC, EDQUOT}) {
    const FaultHook faults("copyRange", error);
    ui.answers = {Answer::Skip};
    EXPECT_EQ(copy("from/large", "to/large"), Outcome::Failed);
    EXPECT_EQ(faults.calls("read"), 0);
    EXPECT_FALSE(dir.exists("to/large"));
  }
  EXPECT_EQ(ui.questions[0].text, "No room for");
}

TEST_F(CopyFile, WhenTheKernelDeliversNothingAPlainReadHasTheLastWord) {
  const std::string content(3 << 20, 'x');
  dir.write("from/large", content);
  ASSERT_EQ(truncate(dir.path("from/large").c_str(), 4 << 20), 0);
  // The file shrinks behind the first pieces; the kernel then moves nothing, and neither does a
  // read.
  ui.onLook = [&] {
    if (ui.looks != 1) return;
    ASSERT_EQ(truncate(dir.path("from/large").c_str(), 2 << 20), 0);
  };
  const FaultHook calls;
  EXPECT_EQ(copy("from/large", "to/large"), Outcome::Done);
  EXPECT_GE(calls.calls("read"), 1);
}

TEST_F(CopyFile, APseudoFileIsReadToItsEnd) {
  RunningOperation operation(ui);
  EXPECT_EQ(
      Transfer(operation, TransferKind::Copy).run("/proc/self/status", dir.path("to/status"), 1, 1),
      Outcome::Done);
  EXPECT_NE(dir.read("to/status").find("Umask:"), std::string::npos);
}

TEST_F(CopyFile, AnExistingFileIsAskedAboutAndOkReplacesIt) {
  makeOldTarget();
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(asked(), Texts{ExistsQuestion});
  EXPECT_EQ(ui.questions[0].caption, dir.path("to/a"));
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OverwriteMany);
  EXPECT_EQ(ui.questions[0].colour, AlertColour::Message);
  EXPECT_EQ(dir.read("to/a"), "source of a");
  expectNoLeftovers();
}

TEST_F(CopyFile, SkipNoAndBlankLeaveTheTargetAndTheTag) {
  for (const int answer : {Answer::Skip, int{'n'}, int{' '}}) {
    makeOldTarget();
    ui.answers = {answer};
    EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
    expectOldTarget();
  }
  EXPECT_EQ(answers.overwrite, OverwriteMode::Ask);
}

TEST_F(CopyFile, EscCancelsAndTouchesNothing) {
  makeOldTarget();
  ui.answers = {Answer::Cancel};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Cancelled);
  expectOldTarget();
}

TEST_F(CopyFile, AllReplacesThisAndAllLaterFilesUnasked) {
  makeOldTarget();
  dir.write("to/b", "old b");
  ui.answers = {Answer::All};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(copy("from/a", "to/b"), Outcome::Done);
  EXPECT_EQ(dir.read("to/b"), "source of a");
  EXPECT_EQ(ui.questions.size(), 1U);
}

TEST_F(CopyFile, NoneLeavesThisAndAllLaterFilesUnasked) {
  makeOldTarget();
  ui.answers = {Answer::None};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(ui.questions.size(), 1U);
  expectOldTarget();
}

TEST_F(CopyFile, AllOlderReplacesOlderTargetsAndPassesOverTheOthers) {
  makeOldTarget();
  setTime(dir.path("from/a"), 1600000000);
  setTime(dir.path("to/a"), 1500000000);
  ui.answers = {Answer::AllOlder};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "source of a");

  dir.write("to/a", "newer");
  setTime(dir.path("to/a"), 1700000000);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done) << "handled without a word";
  EXPECT_EQ(dir.read("to/a"), "newer");
  EXPECT_EQ(ui.questions.size(), 1U);
}

TEST_F(CopyFile, AllOlderWithEqualTimesToTwoSecondsLeavesTheTargetAndCountsAsHandled) {
  makeOldTarget();
  setTime(dir.path("from/a"), 1600000001, 900000000);
  setTime(dir.path("to/a"), 1600000000);
  answers.overwrite = OverwriteMode::AllOlder;
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  expectOldTarget();
}

TEST_F(CopyFile, AllOlderAsksWhenATimeCantBeRead) {
  makeOldTarget();
  answers.overwrite = OverwriteMode::AllOlder;
  struct NthStat {
    int left = 4;  // source, target, and the two looks for one file
    int same = 2;
    static int onCall(const char* call, const char*, void* context) {
      auto* self = static_cast<NthStat*>(context);
      if (std::string(call) != "statAt") return 0;
      return --self->left + self->same < 0 ? EIO : 0;
    }
  };
  NthStat stats;
  System::setHook(NthStat::onCall, &stats);
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(asked(), Texts{ExistsQuestion});
  expectOldTarget();
}

TEST_F(CopyFile, OntoItselfByTheSamePathChangesNothing) {
  for (const auto mode : {OverwriteMode::Ask, OverwriteMode::All, OverwriteMode::AllOlder}) {
    answers.overwrite = mode;
    ui.answers = {Answer::Yes};
    EXPECT_EQ(copy("from/a", "from/a"), Outcome::LeftInPlace);
    EXPECT_EQ(dir.read("from/a"), "source of a");
  }
  EXPECT_EQ(ui.questions[0].text, "File cannot overwrite itself");
  EXPECT_EQ(ui.questions[0].caption, dir.path("from/a"));
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OkCancel);
  EXPECT_EQ(ui.questions.size(), 3U);
  ui.answers = {Answer::Cancel};
  EXPECT_EQ(copy("from/a", "from/a"), Outcome::Cancelled);
}

TEST_F(CopyFile, OntoItselfThroughTheWorkingDirectoryChangesNothing) {
  const std::string before = std::filesystem::current_path();
  ASSERT_EQ(chdir(dir.path("from").c_str()), 0);
  RunningOperation operation(ui);
  operation.answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Yes};
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run("a", dir.path("from/a"), 1, 1),
            Outcome::LeftInPlace);
  ASSERT_EQ(chdir(before.c_str()), 0);
  EXPECT_EQ(asked(), Texts{"File cannot overwrite itself"});
  EXPECT_EQ(dir.read("from/a"), "source of a");
}

TEST_F(CopyFile, OntoAHardLinkOrALinkToItselfChangesNothing) {
  ASSERT_EQ(link(dir.path("from/a").c_str(), dir.path("to/hard").c_str()), 0);
  dir.link(dir.path("from/a"), "to/soft");
  dir.link(dir.path("from"), "todir");
  answers.overwrite = OverwriteMode::All;
  for (const char* target : {"to/hard", "to/soft", "todir/a"}) {
    ui.answers = {Answer::Yes};
    EXPECT_EQ(copy("from/a", target), Outcome::LeftInPlace) << target;
  }
  // And the other way round: what a link leads to.
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("to/soft", "from/a"), Outcome::LeftInPlace);
  EXPECT_EQ(ui.questions.size(), 4U);
  EXPECT_EQ(dir.read("from/a"), "source of a");
  EXPECT_TRUE(S_ISLNK(statusOf(dir.path("to/soft")).st_mode));
}

TEST_F(CopyFile, OverwritingALinkReplacesTheLinkAndNotWhatItLeadsTo) {
  dir.write("bystander", "untouched");
  dir.link("../bystander", "to/a");
  dir.link("nowhere", "to/b");
  for (const char* target : {"to/a", "to/b"}) {
    ui.answers = {Answer::Yes};
    EXPECT_EQ(copy("from/a", target), Outcome::Done);
    EXPECT_TRUE(S_ISREG(statusOf(dir.path(target)).st_mode)) << target;
  }
  EXPECT_EQ(ui.questions.size(), 2U) << "a dangling link is in the way as well";
  EXPECT_EQ(dir.read("bystander"), "untouched");
  EXPECT_FALSE(dir.exists("to/nowhere"));
}

TEST_F(CopyFile, OverwritingAHardLinkLeavesItsOtherNameAlone) {
  dir.write("bystander", "untouched");
  ASSERT_EQ(link(dir.path("bystander").c_str(), dir.path("to/a").c_str()), 0);
  answers.overwrite = OverwriteMode::All;
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "source of a");
  EXPECT_EQ(dir.read("bystander"), "untouched");
}

TEST_F(CopyFile, AFileIsNotCopiedOverADirectory) {
  dir.makeDir("to/a");
  dir.write("to/a/inside", "kept");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"Access Denied", "Is a directory (21)"}));
  EXPECT_EQ(dir.read("to/a/inside"), "kept");
}

TEST_F(CopyFile, AMissingSourceIsReportedAndTheTargetStays) {
  makeOldTarget();
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Yes, Answer::Cancel};
  EXPECT_EQ(copy("from/missing", "to/a"), Outcome::Failed);
  EXPECT_EQ(copy("from/missing", "to/a"), Outcome::Cancelled);
  EXPECT_EQ(ui.questions[0].text, "File not found");
  EXPECT_EQ(ui.questions[0].caption, dir.path("from/missing"));
  expectOldTarget();
}

TEST_F(CopyFile, AnUnreadableSourceNeverCostsTheTarget) {
  makeOldTarget();
  dir.openToAll();
  dir.chmod("from/a", 0000);
  for (const char* name : {"from", "to"}) dir.chmod(name, 0777);
  dir.chmod("to/a", 0666);
  EXPECT_EQ(runAsUser([&] {
              answers.overwrite = OverwriteMode::All;
              ui.answers = {Answer::Retry, Answer::Skip, Answer::Cancel};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Cancelled);
              EXPECT_EQ(asked(), (Texts{"Access Denied", "Access Denied", "Access Denied"}));
              EXPECT_EQ(ui.questions[0].caption, dir.path("from/a"));
            }),
            0);
  expectOldTarget();
}

TEST_F(CopyFile, ATargetDirectoryWithoutPermissionIsAccessDenied) {
  dir.openToAll();
  dir.chmod("from/a", 0644);
  dir.chmod("to", 0555);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
              EXPECT_EQ(ui.questions[0].caption, dir.path("to/a"));
            }),
            0);
  EXPECT_FALSE(dir.exists("to/a"));
}

TEST_F(CopyFile, WhereTheDirectoryTakesNoNewNameAllWritesIntoTheFileItself) {
  dir.openToAll();
  makeOldTarget();
  dir.chmod("to/a", 0666);
  dir.chmod("to", 0555);
  EXPECT_EQ(runAsUser([&] {
              answers.overwrite = OverwriteMode::All;
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
            }),
            0);
  EXPECT_EQ(dir.read("to/a"), "source of a");
}

TEST_F(CopyFile, AFileWithAnotherNameElsewhereIsNotWrittenInto) {
  dir.openToAll();
  makeOldTarget();
  ASSERT_EQ(link(dir.path("to/a").c_str(), dir.path("bystander").c_str()), 0);
  dir.chmod("to/a", 0666);
  dir.chmod("to", 0555);
  EXPECT_EQ(runAsUser([&] {
              answers.overwrite = OverwriteMode::All;
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
            }),
            0);
  EXPECT_EQ(dir.read("bystander"), "old target");
  expectOldTarget();
}

TEST_F(CopyFile, WhereTheDirectoryTakesNoNewNameAReadOnlyTargetIsAskedAboutAndStays) {
  dir.openToAll();
  makeOldTarget();
  dir.chmod("to/a", 0444);
  dir.chmod("to", 0555);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Yes, Answer::Yes};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), (Texts{ExistsQuestion, "File is Read Only, Delete anyway?"}));
              ui.answers = {Answer::Yes, Answer::Cancel};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::Cancelled);
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
            }),
            0);
  expectOldTarget();
}

TEST_F(CopyFile, NewerByDateButRefusedAsksAndNoMeansNo) {
  dir.openToAll();
  makeOldTarget();
  setTime(dir.path("to/a"), 1000000000);
  dir.chmod("to/a", 0666);
  dir.chmod("to", 0555);
  for (const auto& [answer, outcome] : {std::pair(Answer::Skip, Outcome::LeftInPlace),
                                        std::pair(Answer::None, Outcome::LeftInPlace),
                                        std::pair(Answer::Cancel, Outcome::Cancelled)}) {
    EXPECT_EQ(runAsUser([&] {
                answers.overwrite = OverwriteMode::AllOlder;
                ui.answers = {answer};
                EXPECT_EQ(copy("from/a", "to/a"), outcome);
                EXPECT_EQ(asked(), Texts{ExistsQuestion});
              }),
              0);
    expectOldTarget();
    EXPECT_EQ(dir.read("from/a"), "source of a");
  }
}

// Some servers let names be removed from a directory that takes no new ones.
TEST_F(CopyFile, NothingIsRemovedToMakeRoomForWhatIsRefused) {
  struct NoNewName {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "openAt" && std::string(path).find(".td-") != std::string::npos
                 ? EACCES
                 : 0;
    }
  };
  makeOldTarget();
  dir.chmod("to/a", 0444);
  for (const int answer : {Answer::Yes, Answer::All, Answer::AllOlder}) {
    setTime(dir.path("to/a"), 1000000000);
    answers = {};
    ui.questions.clear();
    ui.answers = {answer, Answer::Yes};
    if (answer == Answer::AllOlder) ui.answers = {answer, Answer::Yes, Answer::Yes};
    System::setHook(NoNewName::onCall, nullptr);
    EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace) << answer;
    System::setHook(nullptr, nullptr);
    EXPECT_EQ(ui.questions.back().text, "File is Read Only, Delete anyway?");
    expectOldTarget();
  }
}

TEST_F(CopyFile, AFileOpenForWritingIsAskedAboutWithAllAnswers) {
  struct FirstOpen {
    int seen = 0;
    static int onCall(const char* call, const char* path, void* context) {
      auto* self = static_cast<FirstOpen*>(context);
      if (std::string(call) != "openAt" || std::string(path).find("from/a") == std::string::npos) {
        return 0;
      }
      return ++self->seen % 2 == 1 ? EAGAIN : 0;
    }
  };
  const struct {
    int answer;
    Outcome outcome;
    StandingAnswer standing;
  } rows[] = {{Answer::Yes, Outcome::Done, StandingAnswer::Ask},
              {Answer::Cancel, Outcome::Cancelled, StandingAnswer::Ask},
              {Answer::Skip, Outcome::LeftInPlace, StandingAnswer::Ask},
              {Answer::All, Outcome::Done, StandingAnswer::All},
              {Answer::None, Outcome::LeftInPlace, StandingAnswer::None}};
  for (const auto& row : rows) {
    FirstOpen opens;
    answers = {};
    ui.questions.clear();
    ui.answers = {row.answer};
    System::setHook(FirstOpen::onCall, &opens);
    EXPECT_EQ(copy("from/a", "to/new"), row.outcome) << row.answer;
    opens.seen = 0;
    if (row.standing != StandingAnswer::Ask) {
      ui.answers.clear();
      std::filesystem::remove(dir.path("to/new"));
      EXPECT_EQ(copy("from/a", "to/new"), row.outcome) << "without asking";
    }
    System::setHook(nullptr, nullptr);
    EXPECT_EQ(asked(), Texts{"File is open for writing, copy anyway?"});
    EXPECT_EQ(ui.questions[0].caption, dir.path("from/a"));
    EXPECT_EQ(answers.openFile, row.standing);
    EXPECT_EQ(dir.exists("to/new"), row.outcome == Outcome::Done);
    std::filesystem::remove(dir.path("to/new"));
  }
}

TEST_F(CopyFile, AReadErrorIsRetriedTwiceInSilenceAndThenAsked) {
  struct ReadErrors {
    int left;
    static int onCall(const char* call, const char*, void* context) {
      auto* self = static_cast<ReadErrors*>(context);
      return std::string(call) == "read" && self->left-- > 0 ? EIO : 0;
    }
  };
  for (const int errors : {1, 2, 3, 6}) {
    ReadErrors faults{errors};
    ui.questions.clear();
    ui.rule = [](const auto&) { return Answer::Retry; };
    System::setHook(ReadErrors::onCall, &faults);
    EXPECT_EQ(copy("from/a", "to/n" + std::to_string(errors)), Outcome::Done);
    System::setHook(nullptr, nullptr);
    EXPECT_EQ(ui.questions.size(), static_cast<size_t>(errors / 3)) << errors;
    EXPECT_EQ(dir.read("to/n" + std::to_string(errors)), "source of a");
  }
  EXPECT_EQ(ui.questions[0].text, "Error reading disk");
  EXPECT_EQ(ui.questions[0].caption, dir.path("from/a"));
}

TEST_F(CopyFile, GivingUpAfterAReadErrorLeavesNoPartialTargetAndAsksOnce) {
  makeOldTarget();
  for (const auto& [answer, outcome] :
       {std::pair(Answer::Skip, Outcome::Failed), std::pair(Answer::Cancel, Outcome::Cancelled)}) {
    const FaultHook faults("read", EIO);
    ui.answers = {Answer::Yes, answer};
    ui.questions.clear();
    EXPECT_EQ(copy("from/a", "to/a"), outcome);
    EXPECT_EQ(asked(), (Texts{ExistsQuestion, "Error reading disk"}));
    expectOldTarget();
  }
}

TEST_F(CopyFile, TheSameReadErrorsCountWhenTheKernelMovesTheBlocks) {
  dir.write("from/large", std::string(3 << 20, 'x'));
  const FaultHook faults("copyRange", EIO);
  ui.answers = {Answer::Retry, Answer::Skip};
  EXPECT_EQ(copy("from/large", "to/large"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"Error reading disk", "Error reading disk"}));
  EXPECT_EQ(faults.calls("copyRange"), 6);
  EXPECT_FALSE(dir.exists("to/large"));
  expectNoLeftovers();
}

TEST_F(CopyFile, AFullDiskIsToldAndTheOldTargetLives) {
  makeOldTarget();
  answers.overwrite = OverwriteMode::All;
  for (const char* call : {"write", "sync"}) {
    const FaultHook faults(call, ENOSPC);
    ui.answers = {Answer::Retry, Answer::Skip};
    EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed) << call;
    expectOldTarget();
  }
  EXPECT_EQ(ui.questions[0].text, "No room for");
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::RetrySkip);
}

TEST_F(CopyFile, AFileSizeLimitIsAnErrorAndNoEnd) {
  dir.write("from/large", std::string(3 << 20, 'x'));
  EXPECT_EQ(runInChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{1 << 20, 1 << 20};
              setrlimit(RLIMIT_FSIZE, &limit);
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("from/large", "to/large"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"File too large (27)"});
            }),
            0);
  EXPECT_FALSE(dir.exists("to/large"));
  expectNoLeftovers();
}

TEST_F(CopyFile, EscDuringTheCopyLeavesNoPartialTarget) {
  dir.write("from/large", std::string(40 << 20, 'x'));
  makeOldTarget();
  for (const int look : {1, 2, 3}) {
    ui.looks = 0;
    ui.escapeAtLook = look;
    EXPECT_EQ(copy("from/large", "to/large"), Outcome::Cancelled) << look;
    EXPECT_FALSE(dir.exists("to/large"));
    ui.looks = 0;
    ui.answers = {Answer::Yes};
    EXPECT_EQ(copy("from/large", "to/a"), Outcome::Cancelled) << look;
    expectOldTarget();
  }
}

TEST_F(CopyFile, BreakDuringTheCopyLeavesNoPartialTarget) {
  dir.write("from/large", std::string(40 << 20, 'x'));
  ui.onLook = [] { requestBreak(); };
  EXPECT_EQ(copy("from/large", "to/large"), Outcome::Cancelled);
  EXPECT_FALSE(dir.exists("to/large"));
  expectNoLeftovers();
  EXPECT_EQ(breakState.load(), BreakState::Idle);
}

TEST_F(CopyFile, ASourceThatShrinksWhileItIsReadGivesWhatIsThere) {
  dir.write("from/large", std::string(40 << 20, 'x'));
  ui.onLook = [&] {
    if (ui.looks != 1) return;
    ASSERT_EQ(truncate(dir.path("from/large").c_str(), 2 << 20), 0);
  };
  EXPECT_EQ(copy("from/large", "to/large"), Outcome::Done);
  EXPECT_LE(statusOf(dir.path("to/large")).st_size, 40 << 20);
  EXPECT_EQ(dir.read("from/large").size(), size_t{2} << 20);
  expectNoLeftovers();
}

TEST_F(CopyFile, ASourceThatTurnsIntoSomethingElseIsRefused) {
  struct Swap {
    const TempDir& dir;
    bool done = false;
    static int onCall(const char* call, const char* path, void* context) {
      auto* self = static_cast<Swap*>(context);
      if (self->done || std::string(call) != "openAt" ||
          std::string(path).find("from/a") == std::string::npos) {
        return 0;
      }
      self->done = true;
      std::filesystem::remove(self->dir.path("from/a"));
      EXPECT_EQ(mkfifo(self->dir.path("from/a").c_str(), 0600), 0);
      return 0;
    }
  };
  Swap swap{dir};
  makeOldTarget();
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip};
  System::setHook(Swap::onCall, &swap);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Failed);
  System::setHook(nullptr, nullptr);
  expectOldTarget();
}

TEST_F(CopyFile, ACopyInTheMakingIsPrivate) {
  dir.chmod("from/a", 0600);
  const mode_t before = umask(0);
  ui.onLook = [&] {
    for (const auto& item : std::filesystem::directory_iterator(dir.path("to"))) {
      EXPECT_EQ(statusOf(item.path()).st_mode & 077, mode_t{0}) << item.path();
    }
  };
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  umask(before);
  EXPECT_EQ(dir.mode("to/a"), 0600U);
}

TEST_F(CopyFile, TheUmaskDoesntReachTheFinishedCopy) {
  dir.chmod("from/a", 0666);
  const mode_t before = umask(077);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  umask(before);
  EXPECT_EQ(dir.mode("to/a"), 0666U);
}

TEST_F(CopyFile, AReadOnlySourceIsCopiedWithItsMode) {
  dir.chmod("from/a", 0444);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.mode("to/a"), 0444U);
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done) << "over a read-only target";
}

TEST_F(CopyFile, ReplacingFlushesBeforeTheNameChangesAndAFreshCopyDoesnt) {
  makeOldTarget();
  const FaultHook calls;
  EXPECT_EQ(copy("from/a", "to/new"), Outcome::Done);
  EXPECT_EQ(calls.calls("sync"), 0);
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(calls.calls("sync"), 1);
}

TEST_F(CopyFile, ATargetThatAppearsInTheMeantimeIsNotOverwritten) {
  ui.onLook = [&] {
    if (ui.looks == 1) dir.write("to/a", "somebody else's");
  };
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(asked(), Texts{ExistsQuestion});
  EXPECT_EQ(dir.read("to/a"), "somebody else's");
  expectNoLeftovers();
}

TEST_F(CopyFile, HostileNamesAreCopiedMovedAndDeleted) {
  const std::string names[] = {" leading",
                               "trailing ",
                               "a\nb",
                               "a\tb\x01\x7f",
                               "-rf",
                               "quote\"d",
                               "it's",
                               "x\\y",
                               "12:30",
                               "...",
                               "....",
                               "a*b",
                               "what?.txt",
                               "[x]",
                               "{a,b}",
                               "$HOME",
                               "~",
                               "\xff\xfe",
                               "\xc3\x28",
                               "\xed\xa0\x80",
                               "e\xcc\x81",
                               "\xe6\x97\xa5",
                               "\xf0\x9f\x98\x80",
                               std::string(255, 'n'),
                               "; rm -rf x",
                               "%s%n"};
  for (const std::string& name : names) {
    dir.write("from/" + name, "content of " + name);
    EXPECT_EQ(copy("from/" + name, "to/" + name), Outcome::Done) << name;
    EXPECT_EQ(dir.read("to/" + name), "content of " + name);
    EXPECT_EQ(move("to/" + name, "to/moved"), Outcome::Done) << name;
    EXPECT_EQ(move("to/moved", "to/" + name), Outcome::Done) << name;
    EXPECT_EQ(remove("to/" + name), Outcome::Done) << name;
    EXPECT_FALSE(dir.exists("to/" + name));
    EXPECT_EQ(dir.read("from/" + name), "content of " + name);
  }
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(CopyFile, TheDescriptionGoesAlong) {
  dir.write("from/descript.ion", "a about a\r\n\"b c\" about b\r\n");
  dir.write("from/b c", "");
  EXPECT_EQ(copy("from/a", "to/x y"), Outcome::Done);
  EXPECT_EQ(copy("from/b c", "to/plain"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "\"x y\" about a\r\nplain about b\r\n");
  EXPECT_EQ(dir.read("from/descript.ion"), "a about a\r\n\"b c\" about b\r\n");
}

TEST_F(CopyFile, WhatIsReplacedOnTheUsersWordTakesItsDescriptionAlong) {
  makeOldTarget();
  const std::string lines = "a about the old a\r\nother stays\r\n";
  dir.write("to/descript.ion", lines);
  ui.answers = {Answer::Skip, Answer::Yes};
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/descript.ion"), lines);
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "other stays\r\n");
}

TEST_F(CopyFile, WithAllInForceOnlyTheContentIsAnotherOne) {
  makeOldTarget();
  dir.write("to/descript.ion", "a about a\r\n");
  answers.overwrite = OverwriteMode::All;
  EXPECT_EQ(copy("from/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), dir.read("from/a"));
  EXPECT_EQ(dir.read("to/descript.ion"), "a about a\r\n");
}

TEST_F(CopyFile, EachItemIsShownWithItsPlace) {
  EXPECT_EQ(copy("from/a", "to/a", 2, 5), Outcome::Done);
  EXPECT_EQ(ui.shown, Texts{"Copy " + dir.path("from/a") + "|" + dir.path("to/a") + "|2/5"});
}
