#include <sys/xattr.h>

#include "fileops/fileops_test.h"
#include "fileops/other_device.h"
#include "support/fault_hook.h"

namespace {

class CrossDevice : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/sub", "src/empty", "to", "outside"}) dir.makeDir(name);
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
    dir.write("outside/precious", "precious");
  }
  Outcome moveOver(const std::string& source, const std::string& target) {
    const OtherDevice other;
    return move(source, target);
  }
};

}  // namespace

TEST_F(CrossDevice, AFileIsCopiedAndThenRemoved) {
  dir.chmod("src/a", 0741);
  setTime(dir.path("src/a"), 1600000001);
  EXPECT_EQ(moveOver("src/a", "to/b"), Outcome::Done);
  EXPECT_EQ(dir.mode("to/b"), 0741U);
  EXPECT_EQ(statusOf(dir.path("to/b")).st_mtim.tv_sec, 1600000001);
  EXPECT_EQ(dir.read("to/b"), "content a");
  EXPECT_FALSE(dir.exists("src/a"));
}

TEST_F(CrossDevice, ATreeGoesOverWithEverything) {
  dir.chmod("src/sub", 0750);
  const auto before = snapshot(dir.path("src"));
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(snapshot(dir.path("to/tree")), before);
  EXPECT_FALSE(dir.exists("src"));
}

TEST_F(CrossDevice, ALinkIsMadeAnewAndNeverFollowed) {
  dir.link("../outside", "src/todir");
  dir.link("../../outside/precious", "src/sub/tofile");
  dir.link("nowhere", "src/dangling");
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(dir.read("outside/precious"), "precious");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/todir")), "../outside");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/sub/tofile")),
            "../../outside/precious");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/dangling")), "nowhere");
  EXPECT_FALSE(dir.exists("src"));
}

TEST_F(CrossDevice, ASingleLinkToADirectoryIsMovedItself) {
  dir.link("outside", "door");
  EXPECT_EQ(moveOver("door", "to/door"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/door")), "outside");
  EXPECT_FALSE(dir.exists("door"));
  EXPECT_EQ(dir.read("outside/precious"), "precious");
}

TEST_F(CrossDevice, FifosAreMadeAnewAlsoWhenChosenDirectly) {
  ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
  EXPECT_EQ(moveOver("src/pipe", "to/pipe"), Outcome::Done);
  EXPECT_TRUE(S_ISFIFO(statusOf(dir.path("to/pipe")).st_mode));
  EXPECT_FALSE(dir.exists("src/pipe"));
}

TEST_F(CrossDevice, ThereIsNoAllOlderAndSkippedMembersKeepTheirDirectories) {
  dir.makeDir("to/src");
  dir.makeDir("to/src/sub");
  dir.write("to/src/sub/b", "old b");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(moveOver("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OverwriteOne);
  EXPECT_EQ(dir.read("src/sub/b"), "content b");
  EXPECT_EQ(dir.read("to/src/sub/b"), "old b");
  EXPECT_FALSE(dir.exists("src/a"));
}

TEST_F(CrossDevice, ASourceThatCantBeRemovedStaysAndSoDoesItsCopy) {
  struct Denied {
    static int onCall(const char* call, const char* path, void*) {
      const bool source = std::string(path).find("src/a") != std::string::npos;
      return std::string(call) == "unlinkAt" && source ? EPERM : 0;
    }
  };
  const OtherDevice other(Denied::onCall);
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_EQ(dir.read("to/a"), "content a");
}

TEST_F(CrossDevice, CancelWhileTheSourceIsRemovedTakesTheNewTargetBack) {
  struct Denied {
    static int onCall(const char* call, const char* path, void*) {
      const bool source = std::string(path).find("src/a") != std::string::npos;
      return std::string(call) == "unlinkAt" && source ? EPERM : 0;
    }
  };
  const OtherDevice other(Denied::onCall);
  ui.answers = {Answer::Cancel};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Cancelled);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_FALSE(dir.exists("to/a"));

  dir.write("to/a", "old");
  ui.answers = {Answer::Yes, Answer::Cancel};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Cancelled);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_EQ(dir.read("to/a"), "content a") << "one of the two is there, whole";
}

TEST_F(CrossDevice, ACloseErrorKeepsTheSource) {
  struct FailingClose {
    static int onCall(const char* call, const char*, void*) {
      return std::string(call) == "close" ? EIO : 0;
    }
  };
  const OtherDevice other(FailingClose::onCall);
  ui.rule = [](const auto&) { return Answer::Skip; };
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_FALSE(dir.exists("to/a"));
  expectNoLeftovers();
}

TEST_F(CrossDevice, AFileThatIsSavedAnewUnderItsNameIsKept) {
  ui.onLook = [&] {
    dir.write("src/saved", "content!!");  // as long as the old one
    rename(dir.path("src/saved").c_str(), dir.path("src/a").c_str());
  };
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/a"), "content!!");
  EXPECT_EQ(dir.read("to/a"), "content a");
}

TEST_F(CrossDevice, WhatIsAddedWhileTheTargetIsFlushedIsKept) {
  struct Append {
    static int onCall(const char* call, const char*, void* context) {
      if (std::string(call) == "sync") {
        static_cast<TempDir*>(context)->write("src/a", "content a and something more");
      }
      return 0;
    }
  };
  dir.write("to/a", "old");
  answers.overwrite = OverwriteMode::All;
  const OtherDevice other(Append::onCall, &dir);
  EXPECT_EQ(move("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/a"), "content a and something more");
}

TEST_F(CrossDevice, WhatTakesThePlaceOfALinkOrFifoIsKept) {
  struct Swap {
    static int onCall(const char* call, const char* path, void* context) {
      if (std::string(call) != "symlinkAt" && std::string(call) != "mknodAt") return 0;
      auto* dir = static_cast<TempDir*>(context);
      const std::string name = std::string("src/") + path;
      std::filesystem::remove(dir->path(name));
      dir->write(name, "precious");
      return 0;
    }
  };
  dir.link("nowhere", "src/door");
  ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
  const OtherDevice other(Swap::onCall, &dir);
  EXPECT_EQ(move("src", "to/tree"), Outcome::LeftInPlace);
  for (const char* name : {"src/door", "src/pipe"}) EXPECT_EQ(dir.read(name), "precious") << name;
  EXPECT_FALSE(dir.exists("src/a"));
}

TEST_F(CrossDevice, ASourceThatChangesWhileItIsReadIsKept) {
  ui.onLook = [&] { dir.write("src/a", "content a and something more"); };
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/a"), "content a and something more");
}

TEST_F(CrossDevice, EscInTheMiddleLeavesEveryFileWholeOnOneSide) {
  for (int i = 0; i < 10; ++i) dir.write("src/f" + std::to_string(i), std::string(1000, 'x'));
  const auto before = contents(dir.path("src"));
  for (int look = 1; look < 20 && dir.exists("src"); look += 3) {
    ui.looks = 0;
    ui.escapeAtLook = look;
    static_cast<void>(moveOver("src", "to/tree"));
    for (const auto& [name, what] : before) {
      const bool inSource = existsAt(dir.path("src/" + name));
      const bool inTarget = existsAt(dir.path("to/tree/" + name));
      EXPECT_TRUE(inSource || inTarget) << name;
      const auto side = contents(dir.path(inSource ? "src" : "to/tree"));
      EXPECT_EQ(side.at(name), what);
    }
  }
  expectNoLeftovers();
}

TEST_F(CrossDevice, OwnerGroupAndExtendedAttributesGoAlong) {
  if (!isRoot()) GTEST_SKIP() << "only root gives files away";
  ASSERT_EQ(chown(dir.path("src/a").c_str(), OrdinaryUser, OrdinaryUser), 0);
  ASSERT_EQ(lchown(dir.path("src/sub").c_str(), OrdinaryUser, OrdinaryUser), 0);
  dir.chmod("src/a", 04755);
  const bool attributes = setxattr(dir.path("src/a").c_str(), "user.note", "x", 1, 0) == 0;
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(statusOf(dir.path("to/tree/a")).st_uid, OrdinaryUser);
  EXPECT_EQ(statusOf(dir.path("to/tree/a")).st_gid, OrdinaryUser);
  EXPECT_EQ(statusOf(dir.path("to/tree/sub")).st_uid, OrdinaryUser);
  EXPECT_EQ(dir.mode("to/tree/a"), 04755U);
  char value = 0;
  if (attributes) {
    EXPECT_EQ(getxattr(dir.path("to/tree/a").c_str(), "user.note", &value, 1), 1);
    EXPECT_EQ(value, 'x');
  }
}

TEST_F(CrossDevice, ACopyOfAnothersSetUidProgramLosesTheBit) {
  if (!isRoot()) GTEST_SKIP() << "only root gives files away";
  ASSERT_EQ(chown(dir.path("src/a").c_str(), OrdinaryUser, OrdinaryUser), 0);
  dir.chmod("src/a", 04755);
  EXPECT_EQ(copy("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.mode("to/a"), 0755U);
}

TEST_F(CrossDevice, DescriptionsGoAlongAndTheirEmptyFileGoes) {
  dir.write("src/descript.ion", "a about a\r\nsub about sub\r\nnobody orphan\r\n");
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_FALSE(dir.exists("src"));
  const std::string lines = dir.read("to/tree/descript.ion");
  for (const char* line : {"a about a\r\n", "sub about sub\r\n", "nobody orphan\r\n"}) {
    EXPECT_NE(lines.find(line), std::string::npos) << line;
  }
}

TEST_F(CrossDevice, AllWithAnUnreadableSourceTouchesNeitherSide) {
  dir.openToAll();
  dir.chmod("to", 0777);
  dir.chmod("src", 0777);
  dir.chmod("src/a", 0000);
  dir.write("to/a", "old");
  EXPECT_EQ(runAsUser([&] {
              answers.overwrite = OverwriteMode::All;
              ui.answers = {Answer::Skip};
              EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
            }),
            0);
  EXPECT_EQ(dir.read("to/a"), "old");
  EXPECT_TRUE(dir.exists("src/a"));
}

TEST_F(CrossDevice, WorksBetweenTwoRealFileSystems) {
  const auto other = onAnotherFileSystem(dir.path());
  if (!other) GTEST_SKIP() << "there is only one file system";
  const std::string tree = other->path("tree");
  dir.write("src/large", std::string(3 << 20, 'x'));
  const auto before = snapshot(dir.path("src"));
  RunningOperation operation(ui);
  EXPECT_EQ(Transfer(operation, TransferKind::Move).run(dir.path("src"), tree, 1, 1),
            Outcome::Done);
  EXPECT_EQ(snapshot(tree), before);
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_EQ(Transfer(operation, TransferKind::Move).run(tree, dir.path("src"), 1, 1),
            Outcome::Done);
  EXPECT_EQ(snapshot(dir.path("src")), before);
}
