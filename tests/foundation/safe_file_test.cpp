#include "foundation/safe_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "foundation/names.h"
#include "foundation/status.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

constexpr mode_t UsualMode = 0644;
const std::string OldText = "the old one";
const std::string NewText = "the new one, which is longer";
using Names = std::vector<std::string>;

class SafeFileTest : public testing::Test {
 protected:
  // One whole replacement. 0 or the first error.
  int replace(const Westring& target) {
    SafeFile file;
    if (const int error = file.create(target)) return error;
    if (const int error = file.write(NewText.data(), NewText.size())) return error;
    return file.commit(UsualMode);
  }

  int replaceUnder(Fault& fault) {
    System::setPlaceHook(Fault::onCall, &fault);
    const int result = replace(dir.wide("target"));
    System::setPlaceHook(nullptr, nullptr);
    return result;
  }
  static int wanted(const Fault& fault) { return fault.refusals.empty() ? 0 : fault.error; }
  // Only the flush of the directory comes when the target is the new one already.
  void expectWhole(int result, const std::string& where) {
    const std::string text = dir.read("target");
    EXPECT_TRUE(text == OldText || text == NewText) << where;
    if (result == 0) {
      EXPECT_EQ(text, NewText) << where;
    }
    EXPECT_EQ(dir.names(), Names{"target"}) << where;
  }

  TempDir dir;
};

TEST_F(SafeFileTest, TheTargetIsReplacedAtTheCommit) {
  dir.write("target", OldText);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  EXPECT_EQ(file.write(NewText.data(), NewText.size()), 0);
  EXPECT_EQ(dir.read("target"), OldText);
  EXPECT_EQ(file.commit(UsualMode), 0);
  EXPECT_EQ(dir.read("target"), NewText);
  EXPECT_EQ(dir.mode("target"), UsualMode);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, WithoutACommitNothingChanges) {
  dir.write("target", OldText);
  {
    SafeFile file;
    ASSERT_EQ(file.create(dir.wide("target")), 0);
    file.write(NewText.data(), NewText.size());
    EXPECT_EQ(dir.names().size(), 2u);
  }
  EXPECT_EQ(dir.read("target"), OldText);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, TheFileInTheMakingIsPrivateAndRecognisable) {
  const mode_t mask = umask(0);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  umask(mask);
  const std::string name = file.temporaryPath().substr(dir.path().size() + 1);
  EXPECT_EQ(name.size(), 12u);
  EXPECT_EQ(name.substr(0, 4), ".td-");
  EXPECT_EQ(name.find_first_not_of("0123456789abcdef", 4), std::string::npos);
  EXPECT_EQ(dir.mode(name), 0600u);
  EXPECT_EQ(fcntl(file.descriptor(), F_GETFD), FD_CLOEXEC);
}

TEST_F(SafeFileTest, ATargetInTheWorkingDirectoryNeedsNoSlash) {
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path().c_str()), 0);
              EXPECT_EQ(replace(L"target"), 0);
            }),
            0);
  EXPECT_EQ(dir.read("target"), NewText);
}

TEST_F(SafeFileTest, ADirectoryIsNeverReplaced) {
  dir.makeDir("target");
  EXPECT_EQ(replace(dir.wide("target")), EISDIR);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, AModeWithoutRightsStaysPrivate) {
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  EXPECT_EQ(file.commit(0400), 0);
  EXPECT_EQ(dir.mode("target"), 0400u);
}

TEST_F(SafeFileTest, EveryNameIsTriedOnceMoreWhenItIsTaken) {
  struct TakenTwice {
    int opens = 0;
    static int onCall(const char* call, const char* path, void* context) {
      if (std::string(call) != "openAt" || strncmp(path, ".td-", 4) != 0) return 0;
      return ++static_cast<TakenTwice*>(context)->opens <= 2 ? EEXIST : 0;
    }
  } taken;
  System::setHook(TakenTwice::onCall, &taken);
  EXPECT_EQ(replace(dir.wide("target")), 0);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(taken.opens, 3);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, NamesInTheMakingDiffer) {
  const std::string first = temporaryNameBeside("/some/where/target", 0);
  const std::string second = temporaryNameBeside("/some/where/target", 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.substr(0, 16), "/some/where/.td-");
  EXPECT_EQ(temporaryNameBeside("target", 0).substr(0, 4), ".td-");
  EXPECT_EQ(temporaryNameBeside("/target", 0).substr(0, 5), "/.td-");
}

// After any failure the target is the old or the new one, whole, and nothing else lies beside it.
TEST_F(SafeFileTest, WhicheverCallFailsTheTargetIsWhole) {
  for (const int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
    for (int number = 1;; ++number) {
      dir.write("target", OldText);
      Fault fault{number, error};
      const int result = replaceUnder(fault);
      const std::string where = fault.call + " " + std::to_string(number);
      expectWhole(result, where);
      // What only frees a descriptor, or looks once more, decides nothing.
      if (fault.call != "close" && fault.call != "statAt") {
        EXPECT_EQ(result, wanted(fault)) << where;
      }
      if (fault.refusals.empty()) {
        EXPECT_GE(number, 12);
        break;
      }
    }
  }
}

// A disk that is gone stays gone: what would clean up fails as well.
TEST_F(SafeFileTest, WhicheverCallFailsForEverTheTargetIsWhole) {
  for (const auto reach : {Fault::Reach::SameName, Fault::Reach::Below}) {
    for (int number = 1;; ++number) {
      dir.write("target", OldText);
      Fault fault{number, EIO, reach, dir.path()};
      const int result = replaceUnder(fault);
      const std::string text = dir.read("target");
      EXPECT_TRUE(text == OldText || text == NewText) << fault.call << number;
      if (result == 0) {
        EXPECT_EQ(text, NewText) << fault.call << number;
      }
      for (const std::string& name : dir.names()) {
        EXPECT_TRUE(name == "target" || name.starts_with(".td-")) << name;
        if (name != "target") std::filesystem::remove(dir.path(name));
      }
      if (fault.refusals.empty()) break;
    }
  }
}

TEST_F(SafeFileTest, KilledAtAnyCallTheTargetIsTheOldOrTheNewOne) {
  for (int number = 1;; ++number) {
    dir.write("target", OldText);
    const int status = runInChild([&] {
      Fault fault{number, 0, Fault::Reach::Kill};
      System::setPlaceHook(Fault::onCall, &fault);
      return replace(dir.wide("target"));
    });
    const std::string text = dir.read("target");
    EXPECT_TRUE(text == OldText || text == NewText) << number;
    for (const std::string& name : dir.names()) {
      EXPECT_TRUE(name == "target" || name.starts_with(".td-")) << name;
      if (name != "target") std::filesystem::remove(dir.path(name));
    }
    if (status != Fault::Killed) {
      EXPECT_EQ(status, 0);
      EXPECT_EQ(text, NewText);
      EXPECT_GE(number, 12);
      break;
    }
  }
}

TEST_F(SafeFileTest, AnUnlinkThatFailsLeavesARecognisableNameAndTheOldTarget) {
  struct Both {
    static int onCall(const char* call, const char*, void*) {
      const std::string name = call;
      return name == "unlinkAt" || name == "renameAt" ? EIO : 0;
    }
  };
  dir.write("target", OldText);
  System::setHook(Both::onCall, nullptr);
  EXPECT_EQ(replace(dir.wide("target")), EIO);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("target"), OldText);
  ASSERT_EQ(dir.names().size(), 2u);
  EXPECT_EQ(dir.names()[0].substr(0, 4), ".td-");
}

TEST_F(SafeFileTest, ANewFileThatCantBeRemovedIsNamed) {
  const FaultHook faults("unlinkAt", EPERM);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  EXPECT_EQ(file.leftover(), "");
  const std::string made = file.temporaryPath();
  file.discard();
  EXPECT_EQ(file.leftover(), made);
  struct stat info;
  EXPECT_EQ(lstat(made.c_str(), &info), 0);
}

TEST_F(SafeFileTest, AFileSystemWithoutModesOrFlushIsNoFailure) {
  for (int error : {EINVAL, ENOTSUP, EPERM}) {
    const FaultHook hook("fchmod", error);
    EXPECT_EQ(replace(dir.wide("target")), 0) << error;
  }
  for (int error : {EINVAL, ENOSYS}) {
    const FaultHook hook("sync", error);
    EXPECT_EQ(replace(dir.wide("target")), 0) << error;
  }
}

TEST_F(SafeFileTest, ALargeFileIsOnItsWayToTheDiskWhileItIsWritten) {
  const std::string text(size_t{100} << 20, 'x');
  const auto writeAll = [&](int& calls) {
    const FaultHook counted;
    SafeFile file;
    int error = file.create(dir.wide("target"));
    for (size_t at = 0; at < text.size() && error == 0; at += size_t{1} << 20) {
      error = file.write(text.data() + at, size_t{1} << 20);
    }
    calls = counted.calls("writeBack");
    return error ? error : file.commit();
  };
  int calls = 0;
  EXPECT_EQ(writeAll(calls), 0);
  EXPECT_EQ(statusOf(dir.path("target")).st_size, static_cast<off_t>(text.size()));
  EXPECT_GT(calls, 12);  // what was begun is waited for too
  EXPECT_LT(calls, 25);
}

TEST_F(SafeFileTest, AnErrorOnTheWayToTheDiskKeepsTheOldTarget) {
  const std::string text(size_t{8} << 20, 'x');
  for (const int error : {EIO, ENOSPC, ENOSYS, EINVAL}) {
    dir.write("target", OldText);
    const bool isNoFailure = error == ENOSYS || error == EINVAL;
    {
      const FaultHook hook("writeBack", error);
      SafeFile file;
      ASSERT_EQ(file.create(dir.wide("target")), 0);
      EXPECT_EQ(file.write(text.data(), text.size()), isNoFailure ? 0 : error);
      EXPECT_TRUE(hook.hit());
      if (isNoFailure) {
        EXPECT_EQ(file.commit(), 0);
      }
    }
    EXPECT_TRUE(dir.read("target") == (isNoFailure ? text : OldText));
    EXPECT_EQ(dir.names(), Names{"target"});
  }
}

TEST_F(SafeFileTest, AFileSizeLimitKeepsTheOldTarget) {
  dir.write("target", OldText);
  EXPECT_EQ(runInChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{5, 5};
              setrlimit(RLIMIT_FSIZE, &limit);
              EXPECT_EQ(replace(dir.wide("target")), EFBIG);
            }),
            0);
  EXPECT_EQ(dir.read("target"), OldText);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, ADirectoryWithoutRightsRefusesAndKeepsEverything) {
  dir.write("target", OldText);
  dir.chmod("target", 0666);
  ::chmod(dir.path().c_str(), 0555);
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(replace(dir.wide("target")), EACCES); }), 0);
  EXPECT_EQ(dir.read("target"), OldText);
}

TEST_F(SafeFileTest, WithoutAFileEverythingIsRefused) {
  SafeFile file;
  EXPECT_EQ(file.write("x", 1), EBADF);
  EXPECT_EQ(file.commit(UsualMode), EBADF);
  EXPECT_EQ(file.create(dir.wide("missing/target")), ENOENT);
  EXPECT_EQ(file.commit(UsualMode), EBADF);
  file.discard();
}

TEST_F(SafeFileTest, OneObjectServesManyFiles) {
  SafeFile file;
  for (const char* name : {"a", "b"}) {
    ASSERT_EQ(file.create(dir.wide(name)), 0);
    EXPECT_EQ(file.write(name, 1), 0);
    EXPECT_EQ(file.commit(UsualMode), 0);
  }
  ASSERT_EQ(file.create(dir.wide("c")), 0);
  ASSERT_EQ(file.create(dir.wide("d")), 0);  // the one begun before is dropped
  EXPECT_EQ(file.commit(UsualMode), 0);
  EXPECT_EQ(dir.names(), (Names{"a", "b", "d"}));
}

TEST_F(SafeFileTest, ALinkStaysAndItsTargetIsReplaced) {
  dir.makeDir("kept");
  dir.write("kept/file", OldText);
  dir.link("kept/file", "target");
  dir.link(dir.path("target"), "outer");
  EXPECT_EQ(replace(dir.wide("outer")), 0);
  EXPECT_EQ(dir.read("kept/file"), NewText);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("target")), "kept/file");
  EXPECT_EQ(dir.names(), (Names{"kept", "outer", "target"}));
}

TEST_F(SafeFileTest, WhatADanglingLinkNamesIsMade) {
  dir.makeDir("kept");
  dir.link("../kept/new", "kept/link");
  EXPECT_EQ(replace(dir.wide("kept/link")), 0);
  EXPECT_EQ(dir.read("kept/new"), NewText);
  dir.link("missing/file", "target");
  EXPECT_EQ(replace(dir.wide("target")), ENOENT);
}

TEST_F(SafeFileTest, LinksInACircleAreRefused) {
  dir.link("two", "one");
  dir.link("one", "two");
  dir.link("self", "self");
  EXPECT_EQ(replace(dir.wide("one")), ELOOP);
  EXPECT_EQ(replace(dir.wide("self")), ELOOP);
  EXPECT_EQ(dir.names(), (Names{"one", "self", "two"}));
}

TEST_F(SafeFileTest, ALinkIsRefusedWhereNoneIsExpected) {
  dir.write("elsewhere", OldText);
  dir.link("elsewhere", "target");
  SafeFile file;
  EXPECT_EQ(file.create(dir.wide("target"), Links::Refuse), ELOOP);
  EXPECT_EQ(dir.read("elsewhere"), OldText);
}

TEST_F(SafeFileTest, ALinkOfAnotherInADirectoryForEverybodyIsRefused) {
  dir.write("precious", OldText);
  dir.makeDir("shared");
  dir.chmod("shared", 01777);
  dir.link("../precious", "shared/own");
  EXPECT_EQ(replace(dir.wide("shared/own")), 0);
  if (geteuid() != 0) GTEST_SKIP() << "only root can give links away";
  dir.write("precious", OldText);
  dir.link("../precious", "shared/of-another");
  ASSERT_EQ(lchown(dir.path("shared/of-another").c_str(), OrdinaryUser, OrdinaryUser), 0);
  EXPECT_EQ(replace(dir.wide("shared/of-another")), EACCES);
  EXPECT_EQ(dir.read("precious"), OldText);
}

TEST_F(SafeFileTest, OnlyARegularFileIsReplaced) {
  ASSERT_EQ(mkfifo(dir.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(replace(dir.wide("pipe")), EINVAL);
  dir.link("/dev/null", "null");
  EXPECT_EQ(replace(dir.wide("null")), EINVAL);
  EXPECT_EQ(replace(dir.wide() + L"/"), EISDIR);
  EXPECT_EQ(dir.names(), (Names{"null", "pipe"}));
}

TEST_F(SafeFileTest, ANewFileIsPrivateUnlessToldOtherwise) {
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  EXPECT_EQ(file.commit(), 0);
  EXPECT_EQ(dir.mode("target"), 0600U);
}

TEST_F(SafeFileTest, TheModeOfTheOldFileIsKept) {
  for (const mode_t mode : {0600, 0444, 0755, 0640}) {
    dir.write("target", OldText);
    dir.chmod("target", mode);
    EXPECT_EQ(replace(dir.wide("target")), 0);
    EXPECT_EQ(dir.mode("target"), mode);
    std::filesystem::remove(dir.path("target"));
  }
}

TEST_F(SafeFileTest, ExtendedAttributesAreKept) {
  dir.write("target", OldText);
  if (setxattr(dir.path("target").c_str(), "user.note", "x", 1, 0) != 0) {
    GTEST_SKIP() << "no extended attributes here";
  }
  EXPECT_EQ(replace(dir.wide("target")), 0);
  char value = 0;
  EXPECT_EQ(getxattr(dir.path("target").c_str(), "user.note", &value, 1), 1);
  EXPECT_EQ(value, 'x');
}

TEST_F(SafeFileTest, OwnerAndGroupAreKeptWhereThatIsAllowed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  dir.write("target", OldText);
  ASSERT_EQ(chown(dir.path("target").c_str(), OrdinaryUser, OrdinaryUser), 0);
  EXPECT_EQ(replace(dir.wide("target")), 0);
  struct stat info {};
  ASSERT_EQ(stat(dir.path("target").c_str(), &info), 0);
  EXPECT_EQ(info.st_uid, OrdinaryUser);
  EXPECT_EQ(info.st_gid, OrdinaryUser);
}

TEST_F(SafeFileTest, AnotherGroupDoesNotGetTheRightsOfTheOldOne) {
  if (geteuid() != 0) GTEST_SKIP() << "only root has files of others";
  dir.openToAll();
  dir.write("target", OldText);  // of root
  dir.chmod("target", 0664);
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(replace(dir.wide("target")), 0); }), 0);
  EXPECT_EQ(dir.read("target"), NewText);
  EXPECT_EQ(dir.mode("target"), 0644U);
}

class StampedFile : public SafeFileTest {
 protected:
  FileStamp stamp(const std::string& name) {
    struct stat info {};
    return stat(dir.path(name).c_str(), &info) == 0 ? FileStamp::of(info) : FileStamp();
  }
  int save(const FileStamp& read) {
    if (const int error = file.create(dir.wide("target"), read)) return error;
    if (const int error = file.write(NewText.data(), NewText.size())) return error;
    return file.commit();
  }
  SafeFile file;
};

TEST_F(StampedFile, WhatIsAsItWasReadIsReplacedAgainAndAgain) {
  dir.write("target", OldText);
  EXPECT_EQ(save(stamp("target")), 0);
  EXPECT_EQ(file.stamp(), stamp("target"));
  EXPECT_EQ(save(file.stamp()), 0);
  EXPECT_EQ(dir.read("target"), NewText);
}

TEST_F(StampedFile, WhatWasChangedSinceIsRefusedAndStays) {
  dir.write("target", OldText);
  const FileStamp read = stamp("target");
  dir.write("target", "of another");
  EXPECT_EQ(save(read), Status::ChangedMeanwhile);
  EXPECT_EQ(dir.read("target"), "of another");
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(StampedFile, WhatWasReplacedSinceIsRefused) {
  dir.write("target", OldText);
  const FileStamp read = stamp("target");
  dir.write("other", OldText);
  std::filesystem::rename(dir.path("other"), dir.path("target"));
  EXPECT_EQ(save(read), Status::ChangedMeanwhile);
}

TEST_F(StampedFile, WhatWasRemovedOrMadeSinceIsRefused) {
  dir.write("target", OldText);
  const FileStamp read = stamp("target");
  std::filesystem::remove(dir.path("target"));
  EXPECT_EQ(save(read), Status::ChangedMeanwhile);
  EXPECT_TRUE(dir.names().empty());
  EXPECT_EQ(save(FileStamp()), 0);
  EXPECT_EQ(save(FileStamp()), Status::ChangedMeanwhile);
}

TEST_F(StampedFile, AChangeWhileItIsWrittenIsRefusedToo) {
  for (const bool existed : {true, false}) {
    if (existed) dir.write("target", OldText);
    ASSERT_EQ(file.create(dir.wide("target"), stamp("target")), 0);
    dir.write("target", "of another");
    EXPECT_EQ(file.commit(), Status::ChangedMeanwhile);
    EXPECT_EQ(dir.read("target"), "of another");
    EXPECT_EQ(dir.names(), Names{"target"});
    std::filesystem::remove(dir.path("target"));
  }
}

TEST_F(StampedFile, WhatAppearsAtTheLastMomentIsNotReplaced) {
  struct Appear {
    static int onCall(const char* call, const char*, void* context) {
      if (strcmp(call, "renameNoReplace") == 0) {
        static_cast<TempDir*>(context)->write("target", "of another");
      }
      return 0;
    }
  };
  System::setHook(Appear::onCall, &dir);
  EXPECT_EQ(save(FileStamp()), Status::ChangedMeanwhile);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("target"), "of another");
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, ItsStepsGiveTheSameAsACommit) {
  dir.write("target", OldText);
  dir.chmod("target", 0640);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  ASSERT_EQ(file.write(NewText.data(), NewText.size()), 0);
  EXPECT_EQ(file.dressExactly(), 0);
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read("target"), OldText);
  EXPECT_EQ(file.takeName(), 0);
  EXPECT_EQ(dir.read("target"), NewText);
  EXPECT_EQ(dir.mode("target"), 0640u);
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, AttributesThatCannotBeKeptAreToldAndTheNewFileStays) {
  dir.write("target", OldText);
  ASSERT_EQ(setxattr(dir.path("target").c_str(), "user.note", "kept", 4, 0), 0);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  {
    FaultHook refused("setAttribute", EOPNOTSUPP);
    EXPECT_EQ(file.dressExactly(), Status::NotOffered);
  }
  EXPECT_EQ(dir.names().size(), 2u);
  file.discard();
  EXPECT_EQ(dir.names(), Names{"target"});
}

TEST_F(SafeFileTest, ARefusedNameLeavesTheNewFileWhereItIs) {
  dir.write("target", OldText);
  SafeFile file;
  ASSERT_EQ(file.create(dir.wide("target")), 0);
  ASSERT_EQ(file.write(NewText.data(), NewText.size()), 0);
  ASSERT_EQ(file.flush(), 0);
  const std::string path = file.temporaryPath();
  {
    FaultHook busy("renameAt", EBUSY);
    EXPECT_EQ(file.takeName(), EBUSY);
  }
  EXPECT_FALSE(file.stamp().exists);
  file.keep();
  EXPECT_EQ(file.temporaryPath(), "");
  EXPECT_EQ(dir.read("target"), OldText);
  EXPECT_EQ(dir.read(path.substr(dir.path().size() + 1)), NewText);
}

}  // namespace
