#include "foundation/safe_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "foundation/names.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
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

TEST_F(SafeFileTest, ALinkIsReplacedAndNotWrittenThrough) {
  dir.write("elsewhere", OldText);
  dir.link("elsewhere", "target");
  EXPECT_EQ(replace(dir.wide("target")), 0);
  EXPECT_EQ(dir.read("elsewhere"), OldText);
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
    static int onCall(const char* call, const char*, void* context) {
      if (std::string(call) != "open") return 0;
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
  for (int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
    for (int number = 1;; ++number) {
      dir.write("target", OldText);
      int result;
      bool hit;
      std::string call;
      {
        const FaultHook hook(number, error);
        result = replace(dir.wide("target"));
        hit = hook.hit();
        call = hook.hitCall();
      }
      if (!hit) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(dir.read("target"), NewText);
        EXPECT_GE(number, 7);  // open, write, sync, fchmod, close, rename
        break;
      }
      EXPECT_EQ(result, error) << call;
      EXPECT_EQ(dir.read("target"), OldText) << call;
      EXPECT_EQ(dir.names(), Names{"target"}) << call;
    }
  }
}

TEST_F(SafeFileTest, AnUnlinkThatFailsLeavesARecognisableNameAndTheOldTarget) {
  struct Both {
    static int onCall(const char* call, const char*, void*) {
      const std::string name = call;
      return name == "unlink" || name == "rename" ? EIO : 0;
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

TEST_F(SafeFileTest, AProcessKilledBeforeTheRenameLeavesTheOldTarget) {
  struct Killer {
    static int onCall(const char* call, const char*, void* context) {
      if (std::string(call) == static_cast<const char*>(context)) raise(SIGKILL);
      return 0;
    }
  };
  for (const char* call : {"open", "write", "sync", "fchmod", "close", "rename"}) {
    dir.write("target", OldText);
    EXPECT_EQ(runInChild([&] {
                System::setHook(Killer::onCall, const_cast<char*>(call));
                replace(dir.wide("target"));
              }),
              128 + SIGKILL)
        << call;
    EXPECT_EQ(dir.read("target"), OldText) << call;
    for (const std::string& name : dir.names()) {
      EXPECT_TRUE(name == "target" || name.substr(0, 4) == ".td-") << name;
    }
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

}  // namespace
