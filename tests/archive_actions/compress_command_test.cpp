#include "archive_actions/compress_command.h"

#include "archive/archive_entry_store.h"
#include "archive_actions/open_archive.h"
#include "config/archiver_keys.h"
#include "filecommands/command_test.h"
#include "panels/commands/change_directory.h"

namespace {

class CompressCommandTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    before_ = archiveOpener();
    archiveOpener() = openArchiveShown;
    archiverKeys().setDefaults();
    file("left/a.txt", "first");
    file("left/b.txt", "second");
    dir.makeDir("left/docs");
    file("left/docs/c.txt", "third");
  }
  void TearDown() override {
    for (Panel& panel : panelPair().side) panel.archive.reset();
    archiveOpener() = before_;
    archiverKeys().setDefaults();
    CommandTest::TearDown();
  }
  void shell(const std::string& command) {
    const std::string whole =
        "cd " + dir.path() + " && (" + command + ") > " + scratch.path("output") + " 2>&1";
    ASSERT_EQ(system(whole.c_str()), 0) << command << "\n" << scratch.read("output");
  }
  std::string output(const std::string& command) {
    shell(command);
    return scratch.read("output");
  }
  // The right panel is in an archive of its directory.
  void showArchive(const std::string& name, const std::string& cursor) {
    show(cursor);
    ASSERT_TRUE(goToPath(right(), dir.wide("right/" + name)));
    ASSERT_NE(right().archive, nullptr);
  }
  void compress(const std::vector<Step>& steps, TransferKind kind = TransferKind::Copy) {
    play(steps, [&] { compressIntoOther(left(), kind); });
  }
  void make(const std::vector<Step>& steps) {
    play(steps, [&] { compressFiles(left()); });
  }

  TempDir scratch;

 private:
  ArchiveOpener before_;
};

}  // namespace

TEST_F(CompressCommandTest, APlaceOutsideOfTheArchiveIsAPlainCopyOrMove) {
  shell("zip -q -j right/pack.zip left/b.txt");
  dir.makeDir("elsewhere");
  showArchive("pack.zip", "a.txt");
  compress({{"Compress \"a.txt\" to", {Key::Enter}, "", dir.path("elsewhere")}});
  EXPECT_EQ(dir.read("elsewhere/a.txt"), "first");
  EXPECT_TRUE(dir.exists("left/a.txt"));
  // Its name begins with that of the archive.
  compress({{"Compress and Move \"a.txt\" to", {Key::Enter}, "", dir.path("right/pack.zip2")}},
           TransferKind::Move);
  EXPECT_EQ(dir.read("right/pack.zip2"), "first");
  EXPECT_FALSE(dir.exists("left/a.txt"));
}

TEST_F(CompressCommandTest, ASubdirectoryOfTheArchiveIsRefused) {
  shell("cd left && zip -q -r ../right/pack.zip docs");
  const std::string before = dir.read("right/pack.zip");
  showArchive("pack.zip/docs", "a.txt");
  compress({{"Compress \"a.txt\" to", {Key::Enter}},
            {"Compressing into subdirectories not supported", {Key::Enter}}});
  EXPECT_EQ(dir.read("right/pack.zip"), before);
}

TEST_F(CompressCommandTest, NothingIsAddedToAGzip) {
  shell("gzip -c left/a.txt > right/a.gz");
  const std::string before = dir.read("right/a.gz");
  showArchive("a.gz", "b.txt");
  compress({{"Compress \"b.txt\" to", {Key::Enter}}, {"Cannot add to a GZip file", {Key::Enter}}});
  EXPECT_EQ(dir.read("right/a.gz"), before);
}

TEST_F(CompressCommandTest, AnArchiveIsntMovedIntoItself) {
  shell("cd left && zip -q pack.zip a.txt");
  show("pack.zip");
  ASSERT_TRUE(goToPath(right(), dir.wide("left/pack.zip")));
  const std::string before = dir.read("left/pack.zip");
  compress({{"Compress and Move \"pack.zip\" to", {Key::Enter}},
            {"Cannot move an archive into itself", {Key::Enter}}},
           TransferKind::Move);
  tag("a.txt");
  tag("pack.zip");
  compress({{"Compress and Move 2 files to", {Key::Enter}},
            {"Cannot move an archive into itself", {Key::Enter}}},
           TransferKind::Move);
  EXPECT_EQ(dir.read("left/pack.zip"), before);
  EXPECT_TRUE(isTagged("a.txt"));
}

TEST_F(CompressCommandTest, TheArchiveItselfIsLeftOutOfWhatIsPacked) {
  shell("cd left && zip -q pack.zip a.txt");
  show("pack.zip");
  ASSERT_TRUE(goToPath(right(), dir.wide("left/pack.zip")));
  tag("b.txt");
  tag("pack.zip");
  compress({{"Compress 2 files to", {Key::Enter}}});
  EXPECT_EQ(output("unzip -Z1 left/pack.zip"), "a.txt\nb.txt\n");
  EXPECT_TRUE(isTagged("pack.zip"));
  EXPECT_FALSE(isTagged("b.txt"));
}

TEST_F(CompressCommandTest, AMoveKeepsWhatTheArchiveDoesntHold) {
  shell("cd left && tar -cf ../right/pack.tar b.txt");
  ASSERT_EQ(mkfifo(dir.path("left/docs/fifo").c_str(), 0600), 0);
  // A packer that leaves out what it likes, and says nothing.
  archiverKeys().set(Archiver::Tar, "Compress", "tar -rf %a --exclude=c.txt %f");
  archiverKeys().set(Archiver::Tar, "CompressListfileSwitch", "");
  showArchive("pack.tar", "a.txt");
  tag("a.txt");
  tag("docs");
  compress(
      {{"Compress and Move 2 files to", {Key::Enter}}, {"Not everything was moved", {Key::Enter}}},
      TransferKind::Move);
  EXPECT_FALSE(dir.exists("left/a.txt"));
  EXPECT_EQ(dir.read("left/docs/c.txt"), "third");
  EXPECT_TRUE(isTagged("docs"));
  EXPECT_EQ(output("tar -xOf right/pack.tar a.txt"), "first");
}

TEST_F(CompressCommandTest, AFailedToolMovesNothing) {
  shell("cd left && zip -q ../right/pack.zip b.txt");
  archiverKeys().set(Archiver::Zip, "Compress", "exit 5 #");
  showArchive("pack.zip", "a.txt");
  tag("a.txt");
  tag("docs");
  compress({{"Compress and Move 2 files to", {Key::Enter}}}, TransferKind::Move);
  EXPECT_EQ(dir.read("left/a.txt"), "first");
  EXPECT_EQ(dir.read("left/docs/c.txt"), "third");
  EXPECT_TRUE(isTagged("docs"));
}

TEST_F(CompressCommandTest, NamesWithANewlineAreNeverALineOfAList) {
  file("left/new\nline", "odd");
  file("left/line", "plain");
  shell("cd left && zip -q ../right/pack.zip b.txt");
  showArchive("pack.zip", "a.txt");
  tag("a.txt");
  tag("new\nline");
  compress({{"Compress 2 files to", {Key::Enter}}});
  EXPECT_EQ(output("unzip -Z1 right/pack.zip | wc -l"), "3\n");
  EXPECT_EQ(output("unzip -p right/pack.zip 'new?line'"), "odd");
}

TEST_F(CompressCommandTest, AFileWithABackslashIsMovedWhenTheArchiveHoldsIt) {
  for (const char* packer : {"zip -q ../right/pack b.txt", "tar -cf ../right/pack b.txt"}) {
    SCOPED_TRACE(packer);
    file("left/back\\slash", "odd");
    file("left/back\\other", "odd");
    shell("rm -f right/pack* && cd left && " + std::string(packer) +
          " && mv ../right/pack* ../right/pack.x");
    showArchive("pack.x", "a.txt");
    tag("back\\slash");
    tag("back\\other");
    compress({{"Compress and Move 2 files to", {Key::Enter}}}, TransferKind::Move);
    EXPECT_FALSE(dir.exists("left/back\\slash"));
    EXPECT_FALSE(dir.exists("left/back\\other"));
    right().archive.reset();
    right().path = dir.wide("right");
  }
}

TEST_F(CompressCommandTest, AFileIsPackedWithoutThoseOfItsNameBelow) {
  file("left/docs/a.txt", "below");
  for (const bool several : {false, true}) {
    shell("rm -f right/*; cd left && arj a ../right/pack.arj b.txt");
    showArchive("pack.arj", "a.txt");
    if (several) {
      tag("a.txt");
      tag("b.txt");
    }
    compress({{"Compress ", {Key::Enter}}});
    EXPECT_EQ(output("arj v right/pack.arj | grep -c docs || true"), "0\n");
    EXPECT_NE(output("arj v right/pack.arj").find("a.txt"), std::string::npos);
    right().archive.reset();
    right().path = dir.wide("right");
  }
}

// The name of a list, to the archiver, and patterns.
TEST_F(CompressCommandTest, ArjPacksNothingElseForAName) {
  file("left/!list", "list");
  file("left/list", "other");
  file("left/a[1].txt", "one");
  file("left/a1.txt", "other");
  shell("cd left && arj a ../right/pack.arj b.txt");
  showArchive("pack.arj", "!list");
  compress({{"Compress ", {Key::Enter}}});
  EXPECT_EQ(output("arj v right/pack.arj | grep '^[0-9]*)'"), "001) b.txt\n002) !list\n");
  show("a[1].txt");
  compress({{"Compress ", {Key::Enter}}, {"would take other files for it", {Key::Enter}}});
  EXPECT_EQ(output("arj v right/pack.arj | grep -c '^[0-9]*)'"), "2\n");
}

TEST_F(CompressCommandTest, EachTypeWithAPackerIsMadeNew) {
  const struct {
    int downs;  // from the type before
    const char* name;
    const char* list;
  } table[] = {{0, "new.zip", "unzip -Z1 right/new.zip"},
               {2, "new.lzh", "lha lq right/new.lzh"},
               {1, "new.arj", "arj l right/new.arj"},
               {4, "new.tar", "tar -tf right/new.tar"}};
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    show("a.txt");
    tag("a.txt");
    tag("docs");
    // The type chosen last has the focus in its group.
    std::vector<Key::Code> keys = {Key::Tab};
    keys.insert(keys.end(), static_cast<size_t>(row.downs), Key::Down);
    keys.push_back(Key::Enter);
    make({{"Compress Files", keys, "", dir.path("right/new")}});
    ASSERT_TRUE(dir.exists(std::string("right/") + row.name));
    const std::string listed = output(row.list);
    EXPECT_NE(listed.find("a.txt"), std::string::npos) << listed;
    EXPECT_NE(listed.find("c.txt"), std::string::npos) << listed;
    EXPECT_FALSE(isTagged("docs"));
  }
}

TEST_F(CompressCommandTest, AGzipIsMadeOfOneFile) {
  show("a.txt");
  std::vector<Key::Code> keys = {Key::Tab};
  keys.insert(keys.end(), 6, Key::Down);
  keys.push_back(Key::Enter);
  make({{"Compress Files", keys, "", dir.path("right/single")}});
  EXPECT_EQ(output("gzip -dc right/single.gz"), "first");
  // It is there now, and several files can't be one.
  make({{"Compress Files", {Key::Enter}, "", dir.path("right/single.gz")},
        {"File already exists, Overwrite?", {Key::Esc}},
        {"Compress Files", {Key::Esc}}});
  tag("a.txt");
  tag("b.txt");
  make({{"Compress Files", {Key::Enter}, "", dir.path("right/many")},
        {"GZips cannot contain multiple files", {Key::Enter}},
        {"Compress Files", {Key::Esc}}});
  EXPECT_EQ(output("gzip -dc right/single.gz"), "first");
  EXPECT_FALSE(dir.exists("right/many.gz"));
}

TEST_F(CompressCommandTest, AnExistingArchiveOfTheTypeIsAddedToAndNothingElseTouched) {
  shell("cd left && zip -q ../right/pack.zip b.txt && tar -cf ../right/tape.zip b.txt");
  file("right/text.zip", "no archive");
  show("a.txt");
  for (const char* name : {"right/text.zip", "right/tape.zip"}) {
    const std::string before = dir.read(name);
    make({{"Compress Files", {Key::Enter}, "", dir.path(name)},
          {"File already exists", {Key::Enter}},
          {"Compress Files", {Key::Esc}}});
    EXPECT_EQ(dir.read(name), before);
  }
  make({{"Compress Files", {Key::Enter}, "", dir.path("right/pack")}});
  EXPECT_EQ(output("unzip -Z1 right/pack.zip"), "b.txt\na.txt\n");
}

TEST_F(CompressCommandTest, TheProposalIsTheNameInTheOtherDirectory) {
  show("a.txt");
  make({{dir.path("right/a") + " ", {Key::Esc}}});
  show("..");
  make({});
  tag("a.txt");
  make({{dir.path("right/archive"), {Key::Esc}}});
}

TEST_F(CompressCommandTest, AnEmptyNameAndAnArchivePanelEndIt) {
  show("a.txt");
  make({
      {"Compress Files", {Key::Delete, Key::Enter}, "", "x"},
  });
  shell("cd left && zip -q pack.zip a.txt");
  ASSERT_TRUE(goToPath(left(), dir.wide("left/pack.zip")));
  make({});
}

TEST(NewArchive, GetsTheEndingOfItsType) {
  const struct {
    const wchar_t* path;
    ArchiveType type;
    const char* expected;
  } table[] = {
      {L"/a/b", ArchiveType::Zip, "/a/b.zip"},        {L"/a/b.jar", ArchiveType::Zip, "/a/b.jar"},
      {L"/a.d/b", ArchiveType::Zip, "/a.d/b.zip"},    {L"/a/b", ArchiveType::Lharc, "/a/b.lzh"},
      {L"/a/b.TAR", ArchiveType::Tar, "/a/b.TAR"},    {L"/a/b.x", ArchiveType::Tar, "/a/b.x.tar"},
      {L"/a/b.tgz", ArchiveType::Gzip, "/a/b.tgz"},   {L"/a/b.GZ", ArchiveType::Gzip, "/a/b.GZ"},
      {L"/a/b.txt", ArchiveType::Gzip, "/a/b.txt.gz"}};
  for (const auto& row : table)
    EXPECT_EQ(bytes(nameOfNewArchive(row.path, row.type)), row.expected);
}
