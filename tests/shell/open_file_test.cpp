// Enter on files.

#include "shell/open_file.h"

#include <linux/magic.h>

#include "foundation/system.h"
#include "language/association_set.h"
#include "language/environment.h"
#include "shell/logged_shell.h"
#include "shell/shell_test.h"

namespace {

using Commands = std::vector<std::string>;

class OpenFile : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    leftDir.write("text.txt", "words");
    leftDir.write("pro gram", "#!/bin/sh\necho ran > ran\n");
    leftDir.chmod("pro gram", 0755);
    openPanels();
  }
  void TearDown() override {
    associationSets().associations.clear();
    ShellTest::TearDown();
  }
  void open(const std::string& name) {
    cursorTo(name);
    openFile(left(), *left().currentEntry());
  }

  LoggedShell shell;
};

TEST_F(OpenFile, AnAssociatedFileRunsItsCommand) {
  associationSets().associations.addPair(L"*.txt", L"less");
  associationSets().associations.addPair(L"*", L"other");
  open("text.txt");
  EXPECT_EQ(shell.take(), Commands{"less text.txt"});
  EXPECT_EQ(stored(commandHistory()), Commands{"less text.txt"});
}

TEST_F(OpenFile, AProgramRunsFromItsDirectory) {
  open("pro gram");
  EXPECT_EQ(shell.take(), Commands{"./pro\\ gram"});
  sessionEnvironment().set("SHELL", "/bin/sh");
  open("pro gram");
  EXPECT_EQ(leftDir.read("ran"), "ran\n");
}

TEST_F(OpenFile, AnAssociationComesBeforeTheProgram) {
  associationSets().associations.addPair(L"pro*", L"inspect !n");
  open("pro gram");
  EXPECT_EQ(shell.take(), Commands{"inspect"});
}

TEST_F(OpenFile, ANameWithTheMacroCharacterSurvivesTheHistory) {
  leftDir.write("wow!t", "#!/bin/sh\n");
  leftDir.chmod("wow!t", 0755);
  goToPath(left(), leftDir.wide());
  open("wow!t");
  EXPECT_EQ(shell.take(), Commands{"./wow\\!t"});
  EXPECT_EQ(stored(commandHistory()), Commands{"./wow\\!!t"});
}

TEST_F(OpenFile, AFileThatIsNothingOfThatStays) {
  open("text.txt");
  EXPECT_TRUE(shell.take().empty());
  EXPECT_EQ(bytes(left().path), leftDir.path());
  EXPECT_FALSE(left().needsRead);
}

TEST_F(OpenFile, AnArchiveIsEntered) {
  enterArchive();
  goToPath(left(), leftDir.wide());
  open("pack.zip");
  EXPECT_EQ(bytes(left().path), leftDir.path("pack.zip"));
}

TEST_F(OpenFile, AProgramInAnArchiveIsNotRun) {
  enterArchive();
  left().currentEntry()->mode = 0755;
  openFile(left(), *left().currentEntry());
  EXPECT_TRUE(shell.take().empty());
}

// The directory lies on a file system of another type.
class OnFileSystem : public OpenFile, public testing::WithParamInterface<unsigned> {
 protected:
  void SetUp() override {
    OpenFile::SetUp();
    static unsigned type;
    type = GetParam();
    System::setFoundHook(
        [](const char* call, void* found, ssize_t, void*) {
          if (std::string(call) == "statFs") static_cast<struct statfs*>(found)->f_type = type;
        },
        nullptr);
  }
  void TearDown() override {
    System::setFoundHook(nullptr, nullptr);
    OpenFile::TearDown();
  }
  bool runnable(const std::string& name, const std::string& content) {
    leftDir.write(name, content);
    leftDir.chmod(name, 0755);
    goToPath(left(), leftDir.wide());
    cursorTo(name);
    return isRunnable(left(), *left().currentEntry());
  }
};

class WhereEveryFileHasTheBit : public OnFileSystem {};
class WhereTheBitIsTrue : public OnFileSystem {};

TEST_P(WhereEveryFileHasTheBit, OnlyTheFormOfAProgramCounts) {
  EXPECT_TRUE(runnable("elf", "\177ELF..."));
  EXPECT_TRUE(runnable("script", "#!/bin/sh\n"));
  EXPECT_FALSE(runnable("picture", "\377\330"));
  EXPECT_FALSE(runnable("nothing", ""));
}

TEST_P(WhereTheBitIsTrue, TheBitCounts) {
  EXPECT_TRUE(runnable("nothing", ""));
  leftDir.chmod("nothing", 0644);
  goToPath(left(), leftDir.wide());
  cursorTo("nothing");
  EXPECT_FALSE(isRunnable(left(), *left().currentEntry()));
}

INSTANTIATE_TEST_SUITE_P(All, WhereEveryFileHasTheBit,
                         testing::Values(MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, 0x5346544eU,
                                         0x7366746eU, 0xFF534D42U, SMB2_SUPER_MAGIC,
                                         FUSE_SUPER_MAGIC));
INSTANTIATE_TEST_SUITE_P(All, WhereTheBitIsTrue,
                         testing::Values(EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, TMPFS_MAGIC));

}  // namespace
