#include "fileops/description_file.h"
#include "fileops/fileops_test.h"
#include "support/fault_hook.h"
#include "support/turkish_locale.h"

namespace {

class DescriptionTest : public FileOpsTest {
 protected:
  static constexpr char Name[] = "descript.ion";
  DescriptionFile file{dir.path()};
  std::string text(const char* name) { return file.find(name).value_or("<none>"); }
};

}  // namespace

TEST_F(DescriptionTest, FindsPlainAndQuotedNamesExactly) {
  dir.write(Name, "plain.txt  some text \r\n  \"with blank\" more\r\nPlain.txt other\nlast end");
  EXPECT_EQ(text("plain.txt"), "some text ");
  EXPECT_EQ(text("with blank"), "more");
  EXPECT_EQ(text("Plain.txt"), "other");
  EXPECT_EQ(text("last"), "end");
  EXPECT_EQ(text("PLAIN.TXT"), "<none>");
  EXPECT_EQ(text("with"), "<none>");
}

TEST_F(DescriptionTest, ChangesOnlyTheNamedLineAndKeepsAllOthersByteForByte) {
  const std::string longLine = "long " + std::string(10000, 'x') + "\n";
  const std::string odd = std::string("odd \xff\xfe\0 bytes\r\n\r\n   \r\n", 22);
  dir.write(Name, longLine + "gone text\r\n" + odd + "end without line end");
  file.erase("gone");
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), longLine + odd + "end without line end");
}

TEST_F(DescriptionTest, ANewLineStandsAtTheEndAndIsWrittenWithCrLf) {
  dir.write(Name, "a one");
  EXPECT_TRUE(file.set("b", "two"));
  EXPECT_TRUE(file.set("c d", "three"));
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "a one\r\nb two\r\n\"c d\" three\r\n");
}

TEST_F(DescriptionTest, ASecondLineForANameReplacesTheFirst) {
  dir.write(Name, "a one\r\nb two\r\na again\r\n");
  file.set("a", "new");
  file.set("a", "newest");
  EXPECT_EQ(text("a"), "newest");
  file.flush();
  EXPECT_EQ(dir.read(Name), "b two\r\na newest\r\n");
}

TEST_F(DescriptionTest, AFileLeftEmptyGoes) {
  dir.write(Name, "a one\r\n");
  file.erase("a");
  EXPECT_EQ(file.flush(), 0);
  EXPECT_FALSE(dir.exists(Name));
}

TEST_F(DescriptionTest, NamesThatNoLineCanHoldGetNone) {
  EXPECT_FALSE(file.set("a\"b", "text"));
  EXPECT_FALSE(file.set("a\nb", "text"));
  EXPECT_TRUE(file.set("a\xff", "raw"));
  file.flush();
  EXPECT_EQ(dir.read(Name), "a\xff raw\r\n");
}

TEST_F(DescriptionTest, ALinkInItsPlaceIsLeftAlone) {
  dir.write("elsewhere", "a one\r\n");
  dir.link("elsewhere", Name);
  EXPECT_EQ(text("a"), "<none>");
  EXPECT_FALSE(file.set("b", "two"));
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read("elsewhere"), "a one\r\n");
  EXPECT_EQ(statusOf(dir.path(Name)).st_mode & S_IFMT, mode_t{S_IFLNK});
}

TEST_F(DescriptionTest, AFifoInItsPlaceDoesntKeepTheProgramWaiting) {
  ASSERT_EQ(mkfifo(dir.path(Name).c_str(), 0600), 0);
  EXPECT_EQ(text("a"), "<none>");
  EXPECT_FALSE(file.set("b", "two"));
}

TEST_F(DescriptionTest, AnUnreadableFileIsTriedOnce) {
  dir.write(Name, "a one\r\n");
  const FaultHook faults("open", EACCES);
  for (int i = 0; i < 1000; ++i) {
    EXPECT_FALSE(file.find("a"));
    file.erase("a");
  }
  EXPECT_EQ(faults.calls("open"), 1);
}

TEST_F(DescriptionTest, AnAbsentFileIsLookedForOnce) {
  const FaultHook faults;
  for (int i = 0; i < 1000; ++i) EXPECT_FALSE(file.find("a"));
  EXPECT_EQ(faults.calls(), 1);
}

TEST_F(DescriptionTest, AFileKnownToBeAbsentCostsNothing) {
  DescriptionFile absent(dir.path(), DescriptionFile::Presence::Absent);
  const FaultHook faults;
  EXPECT_FALSE(absent.find("a"));
  EXPECT_EQ(faults.calls(), 0);
}

TEST_F(DescriptionTest, WhatSomebodyElseWroteInTheMeantimeStays) {
  dir.write(Name, "a one\r\n");
  EXPECT_EQ(text("a"), "one");
  dir.write(Name, "a one\r\nb two from outside\r\n");
  file.set("c", "three");
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "a one\r\nb two from outside\r\nc three\r\n");
}

TEST_F(DescriptionTest, AFailedWriteLeavesTheOldFileWhole) {
  dir.write(Name, "a one\r\n");
  for (const char* call : {"write", "sync", "renameAt", "openAt"}) {
    file.set("b", "two");
    const FaultHook faults(call, ENOSPC);
    EXPECT_EQ(file.flush(), ENOSPC) << call;
    EXPECT_TRUE(file.failed());
    EXPECT_EQ(dir.read(Name), "a one\r\n") << call;
    EXPECT_EQ(dir.names(), Texts{Name}) << call;
  }
}

TEST_F(DescriptionTest, AMovedLineLeavesItsFileOnlyWhenTheNewOneIsWritten) {
  dir.makeDir("to");
  dir.write(Name, "a one\r\nb two\r\n");
  DescriptionFile target(dir.path("to"));
  moveDescription(&file, "a", &target, "x");
  {
    const FaultHook faults("renameAt", EIO);
    EXPECT_EQ(target.flush(), EIO);
  }
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "a one\r\nb two\r\n");

  moveDescription(&file, "a", &target, "x");
  EXPECT_EQ(file.flush(), 0);  // waits for the target
  EXPECT_EQ(dir.read(Name), "a one\r\nb two\r\n");
  EXPECT_EQ(target.flush(), 0);
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "b two\r\n");
  EXPECT_EQ(dir.read("to/descript.ion"), "x one\r\n");
}

TEST_F(DescriptionTest, ARenameInOneDirectoryChangesTheLineInOneWrite) {
  dir.write(Name, "a one\r\nb two\r\n");
  moveDescription(&file, "a", &file, "z");
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "b two\r\nz one\r\n");
}

TEST_F(DescriptionTest, TheCacheWritesAllFilesWhateverTheirOrder) {
  for (const char* name : {"d1", "d2", "d3"}) dir.makeDir(name);
  dir.write("d1/descript.ion", "a one\r\n");
  dir.write("d2/descript.ion", "b two\r\n");
  {
    DescriptionCache cache;
    moveDescription(&cache.of(dir.path("d1")), "a", &cache.of(dir.path("d2")), "a");
    moveDescription(&cache.of(dir.path("d2")), "b", &cache.of(dir.path("d1")), "b");
    copyDescription(&cache.of(dir.path("d1")), "b", &cache.of(dir.path("d3")), "c");
  }
  EXPECT_EQ(dir.read("d1/descript.ion"), "b two\r\n");
  EXPECT_EQ(dir.read("d2/descript.ion"), "a one\r\n");
  EXPECT_EQ(dir.read("d3/descript.ion"), "c two\r\n");
}

TEST_F(DescriptionTest, AnExistingFileKeepsItsMode) {
  dir.write(Name, "a one\r\n");
  dir.chmod(Name, 0604);
  file.set("b", "two");
  file.flush();
  EXPECT_EQ(dir.mode(Name), 0604U);
}

TEST_F(DescriptionTest, HundredThousandChangesAreOneReadAndOneWrite) {
  std::string content;
  for (int i = 0; i < 100000; ++i) content += "name" + std::to_string(i) + " text\r\n";
  dir.write(Name, content);
  const FaultHook faults;
  for (int i = 0; i < 100000; ++i) file.erase(("name" + std::to_string(i)).c_str());
  file.set("kept", "text");
  EXPECT_EQ(file.flush(), 0);
  EXPECT_EQ(dir.read(Name), "kept text\r\n");
  EXPECT_EQ(faults.calls("renameAt"), 1);
  EXPECT_EQ(faults.calls("open"), 1);
}

TEST_F(DescriptionTest, ASampleCutAtEveryLengthNeverLosesAForeignByte) {
  const std::string sample = "one text\r\n\"two words\" text\r\n three text\nfour";
  for (size_t length = 0; length <= sample.size(); ++length) {
    dir.write(Name, sample.substr(0, length));
    DescriptionFile cut(dir.path());
    cut.set("new", "line");
    EXPECT_EQ(cut.flush(), 0);
    EXPECT_EQ(dir.read(Name).substr(0, length), sample.substr(0, length)) << length;
    EXPECT_EQ(DescriptionFile(dir.path()).find("new"), "line");
  }
}
TEST(DescriptionFileName, IsTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  EXPECT_TRUE(isDescriptionFileName("DESCRIPT.ION"));
  EXPECT_TRUE(isDescriptionFileName("Descript.Ion"));
  EXPECT_FALSE(isDescriptionFileName("descript.ions"));
}
