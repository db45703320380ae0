#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <thread>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

namespace {

class SpecialFiles : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    dir.makeDir("from");
    dir.makeDir("to");
    dir.write("from/a", "source of a");
  }
  void makeFifo(const std::string& name, mode_t mode = 0600) {
    ASSERT_EQ(mkfifo(dir.path(name).c_str(), mode), 0);
  }
  bool isFifo(const std::string& name) { return S_ISFIFO(statusOf(dir.path(name)).st_mode); }
};

constexpr char KeptBox[] = "Target is a device, source is kept";

}  // namespace

TEST_F(SpecialFiles, ADeviceAsTargetIsWrittenWithoutAnyQuestion) {
  const struct stat before = statusOf("/dev/null");
  RunningOperation operation(ui);
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run(dir.path("from/a"), "/dev/null", 1, 1),
            Outcome::Done);
  const struct stat after = statusOf("/dev/null");
  EXPECT_TRUE(S_ISCHR(after.st_mode));
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec) << "no time is set";
}

TEST_F(SpecialFiles, NothingIsDeletedWhenADeviceFails) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
  RunningOperation operation(ui);
  ui.answers = {Answer::Retry, Answer::Skip};
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run(dir.path("from/a"), "/dev/full", 1, 1),
            Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"No room for", "No room for"}));
  EXPECT_TRUE(S_ISCHR(statusOf("/dev/full").st_mode));
}

TEST_F(SpecialFiles, AFifoAsTargetTakesTheContent) {
  makeFifo("to/pipe");
  std::string received;
  std::thread reader([&] { received = dir.read("to/pipe"); });
  EXPECT_EQ(copy("from/a", "to/pipe"), Outcome::Done);
  reader.join();
  EXPECT_EQ(received, "source of a");
  EXPECT_TRUE(isFifo("to/pipe"));
  EXPECT_EQ(dir.mode("to/pipe"), dir.mode("from/a"));
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(SpecialFiles, AMoveOntoAFifoCopiesIntoItAndKeepsTheSource) {
  makeFifo("to/pipe");
  dir.link("pipe", "to/door");
  for (const OverwriteMode mode : {OverwriteMode::Ask, OverwriteMode::All, OverwriteMode::None}) {
    for (const char* target : {"to/pipe", "to/door"}) {
      answers.overwrite = mode;
      ui.answers = {Answer::Yes};
      ui.questions.clear();
      std::string received;
      std::thread reader([&] { received = dir.read("to/pipe"); });
      EXPECT_EQ(move("from/a", target), Outcome::LeftInPlace);
      reader.join();
      EXPECT_EQ(received, "source of a");
      EXPECT_EQ(asked(), Texts{KeptBox});
      EXPECT_EQ(ui.questions[0].caption, dir.path("from/a"));
      EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OkCancel);
      EXPECT_EQ(dir.read("from/a"), "source of a");
      EXPECT_TRUE(isFifo("to/pipe"));
      EXPECT_TRUE(S_ISLNK(statusOf(dir.path("to/door")).st_mode));
    }
  }
}

TEST_F(SpecialFiles, AMoveOntoADeviceKeepsTheSourceAndTellsItOnceACommand) {
  dir.write("from/b", "source of b");
  RunningOperation operation(ui);
  Transfer transfer(operation, TransferKind::Move);
  ui.answers = {Answer::Yes};
  for (const char* name : {"from/a", "from/b"}) {
    EXPECT_EQ(transfer.run(dir.path(name), "/dev/null", 1, 2), Outcome::LeftInPlace);
  }
  EXPECT_EQ(asked(), Texts{KeptBox});
  Transfer next(operation, TransferKind::Move);
  ui.answers = {Answer::Cancel};
  EXPECT_EQ(next.run(dir.path("from/a"), "/dev/null", 1, 1), Outcome::Cancelled);
  EXPECT_EQ(dir.read("from/a"), "source of a");
  EXPECT_EQ(dir.read("from/b"), "source of b");
  EXPECT_TRUE(S_ISCHR(statusOf("/dev/null").st_mode));
}

TEST_F(SpecialFiles, InAMergeAMoveOntoAFifoKeepsItsDirectory) {
  makeFifo("to/a");
  dir.write("from/b", "source of b");
  ui.answers = {Answer::Yes};
  std::string received;
  std::thread reader([&] { received = dir.read("to/a"); });
  EXPECT_EQ(move("from", "to"), Outcome::LeftInPlace);
  reader.join();
  EXPECT_EQ(received, "source of a");
  EXPECT_EQ(asked(), Texts{KeptBox});
  EXPECT_EQ(dir.read("from/a"), "source of a");
  EXPECT_EQ(dir.read("to/b"), "source of b");
  EXPECT_FALSE(dir.exists("from/b"));
}

TEST_F(SpecialFiles, WhatIsNoPlainFileStillReplacesAFifoAfterTheQuestion) {
  makeFifo("to/pipe");
  dir.link("a", "from/link");
  ui.answers = {Answer::Skip, Answer::Yes};
  EXPECT_EQ(move("from/link", "to/pipe"), Outcome::LeftInPlace);
  EXPECT_TRUE(isFifo("to/pipe"));
  EXPECT_EQ(move("from/link", "to/pipe"), Outcome::Done);
  EXPECT_TRUE(S_ISLNK(statusOf(dir.path("to/pipe")).st_mode));
  EXPECT_EQ(asked(), Texts(2, ExistsQuestion));
}

TEST_F(SpecialFiles, AFifoThatNobodyReadsWaitsUntilEsc) {
  makeFifo("to/pipe");
  ui.escapeAtLook = 3;
  EXPECT_EQ(copy("from/a", "to/pipe"), Outcome::Cancelled);
  EXPECT_TRUE(isFifo("to/pipe"));
}

TEST_F(SpecialFiles, AFullFifoWaitsUntilEsc) {
  makeFifo("to/pipe");
  dir.write("from/large", std::string(1 << 20, 'x'));
  const int reader = ::open(dir.path("to/pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ui.escapeAtLook = 3;
  EXPECT_EQ(copy("from/large", "to/pipe"), Outcome::Cancelled);
  ::close(reader);
  EXPECT_TRUE(isFifo("to/pipe"));
}

TEST_F(SpecialFiles, ADirectlyChosenFifoIsReadToItsEnd) {
  makeFifo("from/pipe");
  std::thread writer([&] { writeFile(dir.path("from/pipe"), "through the pipe"); });
  EXPECT_EQ(copy("from/pipe", "to/copy"), Outcome::Done);
  writer.join();
  EXPECT_EQ(dir.read("to/copy"), "through the pipe");
}

TEST_F(SpecialFiles, AFifoWithoutAWriterWaitsUntilEscAndLeavesNothing) {
  makeFifo("from/pipe");
  ui.escapeAtLook = 3;
  EXPECT_EQ(copy("from/pipe", "to/copy"), Outcome::Cancelled);
  EXPECT_FALSE(dir.exists("to/copy"));
  expectNoLeftovers();
}

TEST_F(SpecialFiles, ADirectlyChosenDeviceIsReadUntilEsc) {
  ui.escapeAtLook = 5;
  RunningOperation operation(ui);
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run("/dev/zero", dir.path("to/zero"), 1, 1),
            Outcome::Cancelled);
  EXPECT_FALSE(dir.exists("to/zero"));
}

TEST_F(SpecialFiles, AnEmptyDeviceGivesAnEmptyFile) {
  RunningOperation operation(ui);
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run("/dev/null", dir.path("to/null"), 1, 1),
            Outcome::Done);
  EXPECT_TRUE(S_ISREG(statusOf(dir.path("to/null")).st_mode));
}

TEST_F(SpecialFiles, InATreeTheyAreMadeAnewAndNeverRead) {
  makeFifo("from/pipe", 0640);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  snprintf(address.sun_path, sizeof address.sun_path, "%s", dir.path("from/sock").c_str());
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::close(fd);
  EXPECT_EQ(copy("from", "to/copy"), Outcome::Done);
  EXPECT_TRUE(isFifo("to/copy/pipe"));
  EXPECT_EQ(dir.mode("to/copy/pipe"), 0640U);
  EXPECT_TRUE(S_ISSOCK(statusOf(dir.path("to/copy/sock")).st_mode));
}

TEST_F(SpecialFiles, TheModeOfAFifoNeverGoesThroughALinkPutInItsPlace) {
  struct Swap {
    const TempDir& dir;
    std::string made = {};

    // As soon as something stands there, another one puts a link under its name.
    static int onCall(const char* call, const char* path, void* context) {
      auto* self = static_cast<Swap*>(context);
      if (!self->made.empty()) {
        std::filesystem::remove(self->made);
        std::filesystem::create_symlink(self->dir.path("precious"), self->made);
        self->made.clear();
      }
      if (strcmp(call, "mknodAt") == 0) self->made = path;
      return 0;
    }
  };
  dir.write("precious", "private");
  dir.chmod("precious", 0600);
  makeFifo("from/pipe", 0666);
  dir.chmod("from/pipe", 0666);
  const std::string source = dir.path("from/pipe");
  const std::string target = dir.path("to/pipe");
  CopyRequest request;
  request.source = placeOf(source.c_str());
  request.target = placeOf(target.c_str());
  request.looked = statusOf(source);
  RunningOperation operation(ui);
  Swap swap{dir};
  System::setHook(Swap::onCall, &swap);
  const CopyResult result = copyNode(operation, request);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(result.status, CopyStatus::TargetFailed);
  EXPECT_EQ(result.code, ESTALE);
  EXPECT_EQ(dir.mode("precious"), 0600U);
  EXPECT_EQ(std::filesystem::read_symlink(target), dir.path("precious")) << "nothing of ours";
}

TEST_F(SpecialFiles, TheModeOfAFifoIsWholeWhateverTheMask) {
  makeFifo("from/pipe");
  dir.chmod("from/pipe", 0666);
  EXPECT_EQ(runInChild([&] {
              umask(077);
              EXPECT_EQ(copy("from", "to/copy"), Outcome::Done);
            }),
            0);
  EXPECT_EQ(dir.mode("to/copy/pipe"), 0666U);
}

TEST_F(SpecialFiles, DeviceNodesInATreeNeedRoot) {
  if (!isRoot()) GTEST_SKIP() << "only root makes devices";
  ASSERT_EQ(mknod(dir.path("from/zero").c_str(), S_IFCHR | 0666, makedev(1, 5)), 0);
  EXPECT_EQ(copy("from", "to/copy"), Outcome::Done);
  EXPECT_EQ(statusOf(dir.path("to/copy/zero")).st_rdev, makedev(1, 5));
  dir.openToAll();
  dir.chmod("to", 0777);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("from", "to/second"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), Texts{"Operation not permitted (1)"});
            }),
            0);
  EXPECT_EQ(dir.read("to/second/a"), "source of a");
}

TEST_F(SpecialFiles, ADanglingLinkIsCopiedAsALink) {
  dir.link("nowhere at all", "from/dangling");
  EXPECT_EQ(copy("from/dangling", "to/dangling"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/dangling")), "nowhere at all");
  EXPECT_EQ(copy("from", "to/tree"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/dangling")), "nowhere at all");
}

TEST_F(SpecialFiles, LinksThatLeadInACircleAreCopiedAsLinks) {
  dir.link("two", "from/one");
  dir.link("one", "from/two");
  EXPECT_EQ(copy("from", "to/tree"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/one")), "two");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/tree/two")), "one");
}

TEST_F(SpecialFiles, ALinkOverAnExistingFileAsksAndReplacesIt) {
  dir.link("nowhere", "from/dangling");
  dir.write("to/dangling", "old");
  ui.answers = {Answer::Skip, Answer::Yes};
  EXPECT_EQ(copy("from/dangling", "to/dangling"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/dangling"), "old");
  EXPECT_EQ(copy("from/dangling", "to/dangling"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/dangling")), "nowhere");
  expectNoLeftovers();
}

TEST_F(SpecialFiles, AFileOnAFullFileSystemIsToldAndLeavesNothing) {
  const std::string place = dir.path("small");
  dir.makeDir("small");
  dir.write("from/large", std::string(4 << 20, 'x'));
  if (system(("mount -t tmpfs -o size=1m tmpfs " + place + " 2>/dev/null").c_str()) != 0) {
    GTEST_SKIP() << "no file system can be mounted here";
  }
  writeFile(place + "/old", "old target");
  ui.answers = {Answer::Skip, Answer::Skip};
  EXPECT_EQ(copy("from/large", "small/large"), Outcome::Failed);
  answers.overwrite = OverwriteMode::All;
  EXPECT_EQ(copy("from/large", "small/old"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"No room for", "No room for"}));
  EXPECT_EQ(readFile(place + "/old"), "old target");
  ui.answers = {Answer::Skip};
  answers.overwrite = OverwriteMode::Ask;
  EXPECT_EQ(move("from/large", "small/moved"), Outcome::Failed);
  EXPECT_EQ(dir.read("from/large").size(), size_t{4} << 20);
  EXPECT_EQ(contents(place).size(), 1U) << "only the old file";
  EXPECT_EQ(system(("umount " + place).c_str()), 0);
}
