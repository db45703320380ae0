#include <fcntl.h>
#include <sys/xattr.h>

#include "fileops/fileops_test.h"
#include "fileops/other_device.h"
#include "support/fault_hook.h"

// What a move to another device keeps of what it moves, beside its content.

namespace {

// An access list as the system stores it: owner, one named user, group, mask, others.
std::string accessList(uint16_t userRights) {
  struct Row {
    uint16_t tag, rights;
    uint32_t id;
  };
  const Row rows[] = {{0x01, 6, ~0U},
                      {0x02, userRights, OrdinaryUser},
                      {0x04, 4, ~0U},
                      {0x10, 6, ~0U},
                      {0x20, 0, ~0U}};
  const uint32_t version = 2;
  std::string list(reinterpret_cast<const char*>(&version), sizeof version);
  return list.append(reinterpret_cast<const char*>(rows), sizeof rows);
}

class KeptByMove : public FileOpsTest {
 protected:
  static constexpr char AccessList[] = "system.posix_acl_access";
  static constexpr char DefaultList[] = "system.posix_acl_default";

  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/sub", "to"}) dir.makeDir(name);
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
  }
  void hardLink(const std::string& from, const std::string& to) {
    ASSERT_EQ(link(dir.path(from).c_str(), dir.path(to).c_str()), 0);
  }
  Outcome moveOver(const std::string& source, const std::string& target,
                   System::Hook next = nullptr, void* context = nullptr) {
    const OtherDevice other(next, context);
    return Transfer(operation, TransferKind::Move).run(dir.path(source), dir.path(target), 1, 1);
  }
  ino_t inode(const std::string& name) { return statusOf(dir.path(name)).st_ino; }
  bool setAttribute(const std::string& name, const char* attribute, const std::string& value) {
    return setxattr(dir.path(name).c_str(), attribute, value.data(), value.size(), 0) == 0;
  }
  std::string attribute(const std::string& name, const char* attribute) {
    char value[256];
    const ssize_t length = getxattr(dir.path(name).c_str(), attribute, value, sizeof value);
    return length < 0 ? "none" : std::string(value, static_cast<size_t>(length));
  }

  RunningOperation operation{ui};
};

}  // namespace

TEST_F(KeptByMove, NamesOfOneFileStayNamesOfOneFile) {
  hardLink("src/a", "src/second");
  hardLink("src/a", "src/sub/third");
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(dir.read("to/tree/a"), "content a");
  EXPECT_EQ(inode("to/tree/second"), inode("to/tree/a"));
  EXPECT_EQ(inode("to/tree/sub/third"), inode("to/tree/a"));
  EXPECT_EQ(statusOf(dir.path("to/tree/a")).st_nlink, 3U);
  EXPECT_EQ(statusOf(dir.path("to/tree/sub/b")).st_nlink, 1U);
  EXPECT_FALSE(dir.exists("src"));
  expectNoLeftovers();
}

TEST_F(KeptByMove, TheyAreJoinedFromItemToItemOfACommand) {
  hardLink("src/a", "src/second");
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(moveOver("src/second", "to/second"), Outcome::Done);
  EXPECT_EQ(inode("to/second"), inode("to/a"));
  EXPECT_FALSE(dir.exists("src/second"));
}

TEST_F(KeptByMove, ANameThatIsNotMovedKeepsTheFile) {
  hardLink("src/a", "stays");
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("stays"), "content a");
  EXPECT_EQ(dir.read("to/a"), "content a");
  EXPECT_EQ(statusOf(dir.path("stays")).st_nlink, 1U);
}

TEST_F(KeptByMove, NamesOfOneFifoOrLinkStayTogetherToo) {
  ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
  dir.link("nowhere", "src/door");
  hardLink("src/pipe", "src/sub/pipe");
  ASSERT_EQ(
      linkat(AT_FDCWD, dir.path("src/door").c_str(), AT_FDCWD, dir.path("src/sub/door").c_str(), 0),
      0);
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(inode("to/tree/pipe"), inode("to/tree/sub/pipe"));
  EXPECT_EQ(inode("to/tree/door"), inode("to/tree/sub/door"));
  EXPECT_TRUE(S_ISLNK(statusOf(dir.path("to/tree/sub/door")).st_mode));
}

TEST_F(KeptByMove, WhereLinksAreRefusedEachNameGetsACopy) {
  hardLink("src/a", "src/second");
  struct Refuse {
    static int onCall(const char* call, const char*, void*) {
      return strcmp(call, "linkAt") == 0 ? EPERM : 0;
    }
  };
  EXPECT_EQ(moveOver("src", "to/tree", Refuse::onCall), Outcome::Done);
  EXPECT_EQ(dir.read("to/tree/a"), "content a");
  EXPECT_EQ(dir.read("to/tree/second"), "content a");
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(KeptByMove, WhatWasWrittenBetweenTwoNamesIsNotLost) {
  hardLink("src/a", "src/second");
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done);
  dir.write("src/second", "content b");  // as long as before
  setTime(dir.path("src/second"), 1600000000);
  EXPECT_EQ(moveOver("src/second", "to/second"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "content a");
  EXPECT_EQ(dir.read("to/second"), "content b");
}

TEST_F(KeptByMove, AMadeFileThatIsAnotherOneByNowIsNotJoined) {
  hardLink("src/a", "src/second");
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done);
  std::filesystem::remove(dir.path("to/a"));
  dir.write("to/a", "of another");
  EXPECT_EQ(moveOver("src/second", "to/second"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "of another");
  EXPECT_EQ(dir.read("to/second"), "content a");
}

TEST_F(KeptByMove, AJoinedNameTakesThePlaceOfAnOldFileWhenThatIsAllowed) {
  hardLink("src/a", "src/second");
  dir.write("to/second", "old");
  EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done);
  ui.answers = {Answer::Skip, Answer::Yes};
  EXPECT_EQ(moveOver("src/second", "to/second"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/second"), "old");
  EXPECT_EQ(moveOver("src/second", "to/second"), Outcome::Done);
  EXPECT_EQ(inode("to/second"), inode("to/a"));
  EXPECT_FALSE(dir.exists("src/second"));
  expectNoLeftovers();
}

TEST_F(KeptByMove, TimesAreWholeToTheNanosecond) {
  dir.link("nowhere", "src/door");
  ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
  const std::vector<std::string> names = {"a", "door", "pipe", "sub/b", "sub", "."};
  std::map<std::string, struct stat> before;
  for (const std::string& name : names) {
    const struct timespec times[2] = {{1500000001, 123}, {1600000001, 123456789}};
    ASSERT_EQ(utimensat(AT_FDCWD, dir.path("src/" + name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  }
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  for (const std::string& name : names) {
    const struct stat after = statusOf(dir.path("to/tree/" + name));
    EXPECT_EQ(after.st_mtim.tv_sec, 1600000001) << name;
    EXPECT_EQ(after.st_mtim.tv_nsec, 123456789) << name;
    if (S_ISDIR(after.st_mode)) continue;  // read by whoever looks
    EXPECT_EQ(after.st_atim.tv_sec, 1500000001) << name;
    EXPECT_EQ(after.st_atim.tv_nsec, 123) << name;
  }
}

TEST_F(KeptByMove, ACopyKeepsItsGrainOfTwoSeconds) {
  setTime(dir.path("src/a"), 1600000001, 123456789);
  EXPECT_EQ(copy("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(statusOf(dir.path("to/a")).st_mtim.tv_sec, 1600000000);
  EXPECT_EQ(statusOf(dir.path("to/a")).st_mtim.tv_nsec, 0);
}

TEST_F(KeptByMove, ExtendedAttributesOfFilesAndDirectoriesGoAlong) {
  dir.openToAll();
  for (const char* name : {"src", "src/sub", "to"}) dir.chmod(name, 0777);
  dir.chmod("src/a", 0444);
  for (const char* name : {"src/a", "src/sub"}) {
    const int given = isRoot() ? chown(dir.path(name).c_str(), OrdinaryUser, OrdinaryUser) : 0;
    ASSERT_EQ(given, 0) << name;
  }
  if (!setAttribute("src/a", "user.note", "of a") ||
      !setAttribute("src/sub", "user.note", "of sub")) {
    GTEST_SKIP() << "no extended attributes here";
  }
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(moveOver("src/a", "to/a"), Outcome::Done); }), 0);
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(moveOver("src/sub", "to/sub"), Outcome::Done); }), 0);
  EXPECT_EQ(attribute("to/a", "user.note"), "of a");
  EXPECT_EQ(dir.mode("to/a"), 0444U);
  EXPECT_EQ(attribute("to/sub", "user.note"), "of sub");
}

TEST_F(KeptByMove, AccessListsGoAlongAndInheritedOnesDont) {
  if (!setAttribute("src/a", AccessList, accessList(6)) ||
      !setAttribute("src/sub", DefaultList, accessList(6)) ||
      !setAttribute("to", DefaultList, accessList(4))) {
    GTEST_SKIP() << "no access lists here";
  }
  const std::string lists[] = {attribute("src/a", AccessList), attribute("src/sub", DefaultList)};
  dir.write("src/plain", "no list");
  dir.chmod("src/plain", 0640);
  EXPECT_EQ(moveOver("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(attribute("to/tree/a", AccessList), lists[0]);
  EXPECT_EQ(attribute("to/tree/sub", DefaultList), lists[1]);
  EXPECT_EQ(attribute("to/tree/plain", AccessList), "none");
  EXPECT_EQ(attribute("to/tree", DefaultList), "none");
  EXPECT_EQ(dir.mode("to/tree/plain"), 0640U);
}

TEST_F(KeptByMove, BetweenTwoRealFileSystemsNamesAndTimesStay) {
  const auto other = onAnotherFileSystem(dir.path());
  if (!other) GTEST_SKIP() << "there is only one file system";
  hardLink("src/a", "src/sub/second");
  setTime(dir.path("src/a"), 1600000001, 123456789);
  EXPECT_EQ(Transfer(operation, TransferKind::Move).run(dir.path("src"), other->path("tree"), 1, 1),
            Outcome::Done);
  const struct stat a = statusOf(other->path("tree/a"));
  EXPECT_EQ(a.st_ino, statusOf(other->path("tree/sub/second")).st_ino);
  EXPECT_EQ(a.st_mtim.tv_sec, 1600000001);
  EXPECT_EQ(a.st_mtim.tv_nsec, 123456789);
}
