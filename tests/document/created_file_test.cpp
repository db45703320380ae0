#include "editor/text/created_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "editor/text/text_saver.h"
#include "foundation/file_mode_mask.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

using Names = std::vector<std::string>;

class CreatedFileTest : public testing::Test {
 protected:
  int create() { return created.create(dir.wide("new"), content); }

  TempDir dir;
  FileContent content;
  CreatedFile created;
};

TEST_F(CreatedFileTest, IsThereAndKnownAsIfItHadBeenRead) {
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(dir.mode("new"), 0660u & ~fileModeMask());
  FileContent read;
  ASSERT_EQ(readFileContent(dir.wide("new"), read), 0);
  EXPECT_EQ(content.stamp, read.stamp);
  EXPECT_EQ(content.hash, read.hash);
}

TEST_F(CreatedFileTest, IsGoneWhenNothingCameIntoIt) {
  ASSERT_EQ(create(), 0);
  created.removeIfEmpty();
  EXPECT_EQ(dir.names(), Names());
}

TEST_F(CreatedFileTest, StaysWhenItWasSavedOrHasAText) {
  ASSERT_EQ(create(), 0);
  created.keep();
  created.removeIfEmpty();
  EXPECT_EQ(dir.names(), Names{"new"});
  ASSERT_EQ(unlink(dir.path("new").c_str()), 0);
  ASSERT_EQ(create(), 0);
  dir.write("new", "by somebody else");
  created.removeIfEmpty();
  EXPECT_EQ(dir.read("new"), "by somebody else");
}

TEST_F(CreatedFileTest, AnotherFileOfThatNameStays) {
  ASSERT_EQ(create(), 0);
  dir.write("other", "");
  ASSERT_EQ(rename(dir.path("other").c_str(), dir.path("new").c_str()), 0);
  created.removeIfEmpty();
  EXPECT_EQ(dir.names(), Names{"new"});
}

TEST_F(CreatedFileTest, ANameThatIsTakenIsRefused) {
  dir.write("new", "text");
  EXPECT_EQ(create(), EEXIST);
  created.removeIfEmpty();
  EXPECT_EQ(dir.read("new"), "text");
}

TEST_F(CreatedFileTest, ALinkThatLeadsNowhereStaysAndItsFileIsMade) {
  dir.makeDir("sub");
  dir.link("second", "new");
  dir.link("sub/real", "second");
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(dir.read("sub/real"), "");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("new")), "second");
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("second")), "sub/real");
  created.removeIfEmpty();
  EXPECT_EQ(dir.names(), (Names{"new", "second", "sub"}));
  EXPECT_EQ(access(dir.path("sub/real").c_str(), F_OK), -1);
}

TEST_F(CreatedFileTest, ALinkIntoNoDirectoryOrToItselfSaysSo) {
  dir.link("missing/real", "new");
  EXPECT_EQ(create(), ENOENT);
  ASSERT_EQ(unlink(dir.path("new").c_str()), 0);
  dir.link("new", "new");
  EXPECT_EQ(create(), ELOOP);
  EXPECT_EQ(dir.names(), Names{"new"});
}

TEST_F(CreatedFileTest, IsSavedAsAnyOther) {
  ASSERT_EQ(create(), 0);
  TextSaver saver;
  saver.opened(dir.wide("new"), content);
  TextSaver::Change change = TextSaver::Change::Changed;
  ASSERT_EQ(saver.look(change), 0);
  EXPECT_EQ(change, TextSaver::Change::None);
  EXPECT_EQ(saver.save([](const TextSaver::Sink& sink) { return sink("text"); }).error, 0);
  created.removeIfEmpty();
  EXPECT_EQ(dir.read("new"), "text");
}

}  // namespace
