#include "fileops/file_attributes.h"

#include <cerrno>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

namespace {

class FileAttributes : public FileOpsTest {
 protected:
  int change(const std::string& name, const AttributeChange& change) {
    const std::string path = dir.path(name);
    return changeAttributes(placeOf(path.c_str()), change, after);
  }

  struct stat after {};
};

constexpr AttributeChange SetTo(mode_t mode) {
  return {.clear = AttributeBits, .set = mode};
}

// As far as the user of the tests may.
constexpr uid_t Somebody = 12345;

}  // namespace

TEST_F(FileAttributes, WhatIsNotSaidStaysDifferentInEachFile) {
  for (const auto& [name, mode] : {std::pair{"a", 0640}, {"b", 0755}, {"c", 0604}}) {
    dir.write(name, "x");
    dir.chmod(name, static_cast<mode_t>(mode));
    ASSERT_EQ(change(name, {.clear = S_IRGRP, .set = S_IWUSR | S_IXOTH}), 0);
  }
  EXPECT_EQ(dir.mode("a"), 0601U);
  EXPECT_EQ(dir.mode("b"), 0715U);
  EXPECT_EQ(dir.mode("c"), 0605U);
}

TEST_F(FileAttributes, AllTwelveBitsCanBeSet) {
  dir.write("f", "x");
  ASSERT_EQ(change("f", SetTo(07777)), 0);
  EXPECT_EQ(dir.mode("f"), 07777U);
  EXPECT_EQ(after.st_mode & AttributeBits, 07777U);
  ASSERT_EQ(change("f", SetTo(0)), 0);
  EXPECT_EQ(dir.mode("f"), 0U);
}

TEST_F(FileAttributes, NothingIsCalledForWhatIsThatWayAlready) {
  dir.write("f", "x");
  dir.chmod("f", 0644);
  const struct stat now = statusOf(dir.path("f"));
  const FaultHook calls;
  ASSERT_EQ(
      change("f", {.clear = AttributeBits, .set = 0644, .owner = now.st_uid, .group = now.st_gid}),
      0);
  EXPECT_EQ(calls.calls("fchmod"), 0);
  EXPECT_EQ(calls.calls("fchown"), 0);
}

TEST_F(FileAttributes, ALinkActsOnItsTargetAndADanglingOneOnNothing) {
  dir.write("f", "x");
  dir.chmod("f", 0644);
  dir.link("f", "link");
  dir.link("nowhere", "dangling");
  ASSERT_EQ(change("link", SetTo(0600)), 0);
  EXPECT_EQ(dir.mode("f"), 0600U);
  EXPECT_EQ(change("dangling", SetTo(0600)), ENOENT);
}

TEST_F(FileAttributes, AFifoIsNotOpened) {
  ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
  ASSERT_EQ(change("fifo", SetTo(0622)), 0);
  EXPECT_EQ(dir.mode("fifo"), 0622U);
}

TEST_F(FileAttributes, ADirectoryIsChangedAndNothingInIt) {
  dir.makeDir("d");
  dir.write("d/f", "x");
  dir.chmod("d/f", 0644);
  ASSERT_EQ(change("d", SetTo(01700)), 0);
  EXPECT_EQ(dir.mode("d"), 01700U);
  EXPECT_EQ(dir.mode("d/f"), 0644U);
}

TEST_F(FileAttributes, ANewOwnerDoesNotTakeSetIdBitsThatWereToStay) {
  if (!isRoot()) GTEST_SKIP() << "only root gives files away";
  dir.write("f", "x");
  dir.chmod("f", 06755);
  ASSERT_EQ(change("f", {.owner = Somebody}), 0);
  EXPECT_EQ(statusOf(dir.path("f")).st_uid, Somebody);
  EXPECT_EQ(dir.mode("f"), 06755U);
  EXPECT_EQ(after.st_uid, Somebody);
  ASSERT_EQ(change("f", {.clear = S_ISUID, .group = Somebody}), 0);
  EXPECT_EQ(statusOf(dir.path("f")).st_gid, Somebody);
  EXPECT_EQ(dir.mode("f"), 02755U);
}

TEST_F(FileAttributes, AFileOfOthersIsRefused) {
  if (!isRoot()) GTEST_SKIP() << "needs a file of another user";
  dir.write("f", "x");
  dir.chmod("f", 0644);
  dir.openToAll();
  EXPECT_EQ(runAsUser([this] {
              EXPECT_EQ(change("f", SetTo(0777)), EPERM);
              EXPECT_EQ(change("f", {.owner = OrdinaryUser}), EPERM);
            }),
            0);
  EXPECT_EQ(dir.mode("f"), 0644U);
}

// Whatever call fails, it is told, and the file has its old or its new attributes.
TEST_F(FileAttributes, EachFailingCallIsTold) {
  const mode_t before = 04755, wanted = 04711;
  for (int number = 1;; ++number) {
    dir.write("f", "x");
    dir.chmod("f", before);
    FaultHook fault(number, EIO);
    const AttributeChange both{
        .clear = AttributeBits,
        .set = wanted,
        .owner = isRoot() ? std::optional<uid_t>(Somebody + number) : std::nullopt};
    const int error = change("f", both);
    if (!fault.hit()) {
      EXPECT_EQ(error, 0);
      EXPECT_EQ(dir.mode("f"), wanted);
      EXPECT_GE(number, 4);
      break;
    }
    EXPECT_EQ(error, fault.hitCall() == "close" ? 0 : EIO) << fault.hitCall();
    const mode_t mode = dir.mode("f");
    // A new owner takes the set-id bit at once.
    EXPECT_TRUE(mode == before || mode == wanted || mode == (before & ~S_ISUID))
        << fault.hitCall() << std::oct << mode;
    EXPECT_EQ(dir.read("f"), "x");
  }
}
