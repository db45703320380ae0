#include "archive_actions/archive_tool.h"

#include <gtest/gtest.h>

#include "foundation/place.h"
#include "language/environment.h"
#include "support/temp_dir.h"

namespace {

class ArchiveToolTest : public testing::Test {
 protected:
  // Tools that are only there, each under its own name.
  void SetUp() override {
    archiverKeys().setDefaults();
    for (const char* tool :
         {"unzip", "zip", "tar", "arj", "lha", "jlha", "gzip", "unace", "packer"}) {
      bin.write(tool, "");
      bin.chmod(tool, 0755);
    }
    sessionEnvironment().set("PATH", bin.path().c_str());
  }
  void TearDown() override {
    archiverKeys().setDefaults();
    sessionEnvironment().set("PATH", nullptr);
  }

  static void set(Archiver archiver, const char* key, const char* value) {
    ASSERT_TRUE(archiverKeys().set(archiver, key, value));
  }
  // The command for one operand, without the place of the tools.
  std::string command(Archiver archiver, ToolTask task, const ToolOperand& operand,
                      const wchar_t* archive = L"/a/x") const {
    const ArchiveTool tool(archiver, task);
    std::string text = bytePath(tool.command(archive, tool.words(operand)));
    const std::string place = bin.path() + "/";
    if (text.starts_with(place)) text.erase(0, place.size());
    return text;
  }

  TempDir bin;
};

ToolOperand file(const char* name) {
  return {.path = decodeFileName(name)};
}

ToolOperand directory(const char* name) {
  return {.path = decodeFileName(name), .directory = true};
}

TEST_F(ArchiveToolTest, ADefaultTemplateRunsInTheFormOfThisSystemsTool) {
  using enum Archiver;
  using enum ToolTask;
  const struct {
    Archiver archiver;
    ToolTask task;
    const char* ofFile;
    const char* ofDirectory;
  } table[] = {
      {Zip, Extract, "unzip --z /a/x f", "unzip --z /a/x d/\\*"},
      {Zip, Compress, "zip -r /a/x f", "zip -r /a/x d"},
      {Zip, Delete, "zip -d /a/x f", "zip -d /a/x d/\\*"},
      {Rar, Extract, "rar x -std /a/x f", "rar x -std /a/x d"},
      {Lharc, Extract, "lha x /a/x f", "lha x /a/x d/m"},
      {Lharc, Compress, "jlha a /a/x f", "jlha a /a/x d"},
      {Lharc, Delete, "jlha d /a/x f", "jlha d /a/x d/m"},
      {Arj, Extract, "arj x -y /a/x -- f", "arj x -y /a/x -- d/m"},
      {Arj, Compress, "arj a -r /a/x -- f", "arj a -r /a/x -- d/\\*"},
      {Arj, Delete, "arj d /a/x -- f", "arj d /a/x -- d/m"},
      {Ace, Extract, "unace x /a/x", "unace x /a/x"},
      {Ha, Extract, "ha x /a/x f", "ha x /a/x d"},
      {Gzip, Extract, "gzip -dc /a/x > f", nullptr},
      {Gzip, Compress, "gzip -c f > /a/x", nullptr},
      {Tar, Extract, "tar -xf /a/x --no-unquote -- f", "tar -xf /a/x --no-unquote -- d"},
      {Tar, Compress, "tar -rf /a/x --no-unquote -- f", "tar -rf /a/x --no-unquote -- d"},
      {Tar, Delete, "tar --delete -f /a/x --no-unquote -- f",
       "tar --delete -f /a/x --no-unquote -- d"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(command(row.archiver, row.task, file("f")), row.ofFile);
    ToolOperand d = directory("d");
    d.below.emplace_back(L"d/m");
    if (row.ofDirectory == nullptr) continue;
    EXPECT_EQ(command(row.archiver, row.task, d), row.ofDirectory);
  }
}

TEST_F(ArchiveToolTest, ADirectoryOfAnotherTemplateIsWhatTheConfigurationSays) {
  set(Archiver::Zip, "Extract", "packer -x");
  EXPECT_EQ(command(Archiver::Zip, ToolTask::Extract, directory("d")), "packer -x /a/x d\\*");
  set(Archiver::Zip, "Compress", "packer -a");
  EXPECT_EQ(command(Archiver::Zip, ToolTask::Compress, directory("d")), "packer -a /a/x d d\\*");
  const ArchiveTool tool(Archiver::Zip, ToolTask::Compress);
  EXPECT_EQ(tool.lines(directory("two words")), "two words\ntwo words\\*\n");
}

TEST_F(ArchiveToolTest, PlacesInATemplateAreFilledInOnePass) {
  set(Archiver::Zip, "Extract", "packer %a into %f twice %a 5% %");
  EXPECT_EQ(command(Archiver::Zip, ToolTask::Extract, file("50%a"), L"/%f"),
            "packer /%f into 50%a twice /%f 5% %");
  set(Archiver::Zip, "Extract", "packer %f");
  EXPECT_EQ(command(Archiver::Zip, ToolTask::Extract, file("f")), "packer f /a/x");
}

TEST_F(ArchiveToolTest, NamesAreNeverPartsOfTheCommand) {
  using enum Archiver;
  using enum ToolTask;
  EXPECT_EQ(command(Tar, Extract, file("a b;c'$(d)\ne")),
            "tar -xf /a/x --no-unquote -- a\\ b\\;c\\'\\$\\(d\\)'\n'e");
  EXPECT_EQ(command(Tar, Extract, file("-x")), "tar -xf /a/x --no-unquote -- -x");
  EXPECT_EQ(command(Gzip, Compress, file("-x")), "gzip -c ./-x > /a/x");
  EXPECT_EQ(command(Gzip, Compress, file("f"), L"/a b;c"), "gzip -c f > /a\\ b\\;c");
}

TEST_F(ArchiveToolTest, NamesThatLookLikePatternsMatchThemselvesOnly) {
  using enum Archiver;
  using enum ToolTask;
  EXPECT_EQ(command(Zip, Extract, file("a[1]*?")),
            "unzip --z /a/x a\\[\\[\\]1\\]\\[\\*\\]\\[\\?\\]");
  EXPECT_EQ(command(Zip, Extract, file("-x-")), "unzip --z /a/x \\[-\\]x-");
  ToolOperand foreign = file("\x82\\b");
  foreign.foreignName = true;
  EXPECT_EQ(command(Zip, Extract, foreign), "unzip --z /a/x \\?\\?b");
  EXPECT_EQ(command(Zip, Delete, foreign), "zip -d /a/x \x82\\\\\\\\b");
}

TEST_F(ArchiveToolTest, WhatArjTakesForPatternsIsOnlyGivenToItWhereNothingIsLost) {
  using enum ToolTask;
  EXPECT_EQ(command(Archiver::Arj, Extract, file("!a[1]")), "arj x -y /a/x -- \\?a\\?1\\?");
  ToolOperand alone = file("a[1]!");
  alone.alone = true;
  EXPECT_EQ(command(Archiver::Arj, Compress, alone), "arj a -r /a/x -- a\\?1\\?\\!");
  const ArchiveTool packing(Archiver::Arj, Compress);
  const ArchiveTool deleting(Archiver::Arj, Delete);
  for (const ArchiveTool* tool : {&packing, &deleting}) {
    for (const char* name : {"a[1]", "a*", "a?", "d/[x", "!a\nb"}) {
      EXPECT_TRUE(tool->mistakes(file(name))) << name;
    }
    EXPECT_FALSE(tool->mistakes(file("a]")));
    EXPECT_FALSE(tool->mistakes(file("!a")));
    EXPECT_FALSE(tool->fitsCommand(file("!a")));
    EXPECT_TRUE(tool->fitsCommand(file("a!")));
  }
  ToolOperand members = directory("d");
  members.below.emplace_back(L"d/a[1]");
  EXPECT_TRUE(deleting.mistakes(members));
  EXPECT_FALSE(packing.mistakes(alone));
  EXPECT_FALSE(ArchiveTool(Archiver::Arj, Extract).mistakes(file("a*")));
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, Delete).mistakes(file("a*")));
}

TEST_F(ArchiveToolTest, ANameThatBeginsOrEndsInABlankIsNoLineOfAList) {
  const ArchiveTool arj(Archiver::Arj, ToolTask::Compress);
  for (const char* name : {" a", "a ", "\ta"}) EXPECT_FALSE(arj.fitsList(file(name))) << name;
  EXPECT_TRUE(arj.fitsList(file("a b")));
  EXPECT_TRUE(ArchiveTool(Archiver::Tar, ToolTask::Compress).fitsList(file(" a")));
}

TEST_F(ArchiveToolTest, TarListsEndTheirNamesInNul) {
  const ArchiveTool tar(Archiver::Tar, ToolTask::Extract);
  EXPECT_TRUE(tar.usesLists());
  EXPECT_EQ(tar.lines(file("a\nb")), std::string("a\nb\0", 4));
  EXPECT_TRUE(tar.fitsList(file("a\nb")));
  EXPECT_TRUE(bytePath(tar.commandWithList(L"/a/x", L"/tmp/l i"))
                  .ends_with("tar -xf /a/x --no-unquote --null --files-from=/tmp/l\\ i"));
}

TEST_F(ArchiveToolTest, ANameWithANewlineIsNoLineOfAList) {
  const ArchiveTool zip(Archiver::Zip, ToolTask::Compress);
  EXPECT_TRUE(zip.usesLists());
  EXPECT_FALSE(zip.fitsList(file("a\nb")));
  EXPECT_EQ(zip.lines(file("a b")), "a b\n");
  EXPECT_TRUE(bytePath(zip.commandWithList(L"/a/x", L"/l")).ends_with("zip -r /a/x -@ < /l"));
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, ToolTask::Extract).usesLists());
}

TEST_F(ArchiveToolTest, ArjIsToldThatFilesArentLookedForBelow) {
  const ArchiveTool arj(Archiver::Arj, ToolTask::Compress);
  EXPECT_TRUE(arj.takesFilesApart());
  const Westring files = arj.command(L"/a/x", L"f", ArchiveTool::Operands::FilesOnly);
  EXPECT_TRUE(bytePath(files).ends_with("arj a -r /a/x -r- -- f")) << bytePath(files);
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, ToolTask::Compress).takesFilesApart());
}

TEST_F(ArchiveToolTest, AnEmptyTemplateHasNoCommand) {
  EXPECT_FALSE(ArchiveTool(Archiver::Gzip, ToolTask::Delete).hasCommand());
  EXPECT_TRUE(ArchiveTool(Archiver::Gzip, ToolTask::Extract).hasCommand());
}

TEST_F(ArchiveToolTest, OnlyUnzipMayEndWithAWarning) {
  EXPECT_EQ(ArchiveTool(Archiver::Zip, ToolTask::Extract).highestCode(), 1);
  EXPECT_EQ(ArchiveTool(Archiver::Zip, ToolTask::Compress).highestCode(), 0);
}

TEST_F(ArchiveToolTest, ARedirectionIntoTheArchiveIsSeen) {
  EXPECT_TRUE(ArchiveTool(Archiver::Gzip, ToolTask::Compress).writesArchiveAnew());
  EXPECT_FALSE(ArchiveTool(Archiver::Gzip, ToolTask::Extract).writesArchiveAnew());
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, ToolTask::Compress).writesArchiveAnew());
  set(Archiver::Zip, "Compress", "packer %f >%a");
  EXPECT_TRUE(ArchiveTool(Archiver::Zip, ToolTask::Compress).writesArchiveAnew());
  set(Archiver::Zip, "Compress", "packer %f >> %a");
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, ToolTask::Compress).writesArchiveAnew());
  set(Archiver::Zip, "Compress", "%a %f");
  EXPECT_FALSE(ArchiveTool(Archiver::Zip, ToolTask::Compress).writesArchiveAnew());
}

TEST_F(ArchiveToolTest, ToolsAreLookedForInAbsoluteDirectoriesOnly) {
  const TempDir other;
  other.makeDir("tool");
  other.write("plain", "");
  other.write("tool2", "");
  other.chmod("tool2", 0755);
  sessionEnvironment().set("PATH", ("relative::" + other.path()).c_str());
  EXPECT_EQ(bytePath(programInPath(L"tool2")), other.path("tool2"));
  EXPECT_EQ(bytePath(programInPath(L"tool")), "");
  EXPECT_EQ(bytePath(programInPath(L"plain")), "");
}

TEST_F(ArchiveToolTest, AMissingToolIsLeftToTheShell) {
  set(Archiver::Zip, "Extract", "nowhere -x");
  EXPECT_EQ(command(Archiver::Zip, ToolTask::Extract, file("f")), "nowhere -x /a/x f");
}

TEST_F(ArchiveToolTest, WithoutItsPackerTheTextOfTheFormatStays) {
  unlink(bin.path("jlha").c_str());
  EXPECT_EQ(command(Archiver::Lharc, ToolTask::Compress, file("f")), "lha a /s /e /a/x f");
}

}  // namespace
