#include "archive_actions/tool_archive.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

#include "foundation/names.h"
#include "foundation/place.h"
#include "language/environment.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

class ToolArchiveTest : public testing::Test {
 protected:
  void SetUp() override {
    bin.write("zip", "");
    bin.chmod("zip", 0755);
    sessionEnvironment().set("PATH", bin.path().c_str());
    dir.write("pack", "old");
  }
  void TearDown() override { sessionEnvironment().set("PATH", nullptr); }

  // What becomes of the archive when its tool does that with the file that it is given.
  int after(ToolSuccess success, const std::function<void(const std::string&)>& work) {
    const ArchiveTool tool(Archiver::Zip, ToolTask::Compress);
    ToolArchive archive(tool, dir.wide("pack"));
    EXPECT_EQ(archive.error(), 0);
    const std::string path = bytePath(archive.path());
    EXPECT_TRUE(path.ends_with("/pack.zip")) << path;
    work(path);
    return archive.finish(success);
  }

  TempDir bin;
  TempDir dir;
};

}  // namespace

TEST_F(ToolArchiveTest, WhatTheToolMadeIsTheArchive) {
  const auto replace = [](const std::string& path) {
    std::filesystem::remove(path);
    std::ofstream(path) << "new";
  };
  for (const ToolSuccess success : {ToolSuccess::Yes, ToolSuccess::No}) {
    dir.write("pack", "old");
    EXPECT_EQ(after(success, replace), 0);
    EXPECT_EQ(dir.read("pack"), "new");
    EXPECT_EQ(dir.names(), std::vector<std::string>{"pack"});
  }
}

// The packer of this format calls the old archive like that.
class ToolThatKeepsTheOldArchive : public ToolArchiveTest {
 protected:
  void SetUp() override {
    ToolArchiveTest::SetUp();
    bin.write("jlha", "");
    bin.chmod("jlha", 0755);
    dir.write("pack.lzh", "old");
  }
  ToolArchive named() { return {ArchiveTool(Archiver::Lharc, ToolTask::Delete), place()}; }
  Westring place() const { return dir.wide("pack.lzh"); }
};

TEST_F(ToolThatKeepsTheOldArchive, AnotherFileOfThatNameStays) {
  dir.write("pack.bak", "another file");
  ToolArchive archive = named();
  ASSERT_EQ(archive.error(), 0);
  const std::string path = bytePath(archive.path());
  EXPECT_NE(path, bytePath(place()));
  EXPECT_TRUE(path.ends_with("/pack.lzh")) << path;
  std::filesystem::rename(path, path.substr(0, path.size() - 3) + "bak");
  std::ofstream(path) << "new";
  EXPECT_EQ(archive.finish(ToolSuccess::Yes), 0);
  EXPECT_EQ(dir.read("pack.lzh"), "new");
  EXPECT_EQ(dir.read("pack.bak"), "another file");
}

TEST_F(ToolThatKeepsTheOldArchive, WhereFilesHaveOneNameItIsWorkedOnInItsPlaceIfNothingIsLost) {
  const FaultHook noLinks("linkAt", EPERM);
  EXPECT_TRUE(sameName(named().path(), place()));
  EXPECT_EQ(named().error(), 0);
  EXPECT_EQ(dir.names(), (std::vector<std::string>{"pack", "pack.lzh"}));
  dir.write("pack.bak", "another file");
  EXPECT_EQ(named().error(), EPERM);
}

TEST_F(ToolArchiveTest, AnArchiveThatTheToolRemovesIsGone) {
  EXPECT_EQ(after(ToolSuccess::Yes, [](const std::string& path) { unlink(path.c_str()); }), 0);
  EXPECT_EQ(dir.names(), std::vector<std::string>{});
}

TEST_F(ToolArchiveTest, OfAToolThatFailsInBetweenTheArchiveStays) {
  EXPECT_EQ(after(ToolSuccess::No, [](const std::string& path) { unlink(path.c_str()); }), ENOENT);
  EXPECT_EQ(dir.read("pack"), "old");
  EXPECT_EQ(dir.names(), std::vector<std::string>{"pack"});
}
