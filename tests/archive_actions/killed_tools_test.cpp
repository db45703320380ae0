#include "archive_actions/archive_command_test.h"
#include "archive_actions/archive_work.h"
#include "archive_actions/compress_command.h"
#include "archive_actions/extract_command.h"

// A signal ends the tool in the middle of its work. Files may grow to 4 KiB and no further: the
// next block that the real tool writes kills it.

namespace {

constexpr char Limited[] = "ulimit -c 0; ulimit -f 8; ";
constexpr size_t Large = 100'000;

std::string unpackable(size_t length) {
  std::string bytes(length, '\0');
  uint32_t state = 1;
  for (char& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

class KilledTools : public ArchiveCommandTest {
 protected:
  void SetUp() override {
    ArchiveCommandTest::SetUp();
    dir.write("in/large", unpackable(Large));
    dir.write("in/small", "small");
  }
  void build(const std::string& archive, const std::string& packer) {
    left().archive.reset();
    right().archive.reset();
    right().path = dir.wide("right");
    left().path = dir.wide("left");
    std::filesystem::current_path(dir.path());
    ASSERT_TRUE(shell(".", "rm -rf left right tmp; mkdir left right tmp"));
    pack(packer);
    before_ = dir.read("left/" + archive);
  }
  static void set(Archiver archiver, const char* key, const std::string& value) {
    ASSERT_TRUE(archiverKeys().set(archiver, key, value.c_str()));
  }
  std::string take(const char* member) {
    return bytes(ArchiveWork::of(*static_cast<ArchiveEntryStore*>(left().archive.get()))
                     .take(decodeFileName(member)));
  }
  // What td made in the directory of the archive; what a killed tool leaves there is its own.
  std::vector<std::string> ours(const std::string& place) const {
    std::vector<std::string> result = names(place);
    std::erase_if(result, [](const std::string& name) { return name.starts_with("zi"); });
    return result;
  }

  // The edit of `member` can't go back; it is kept, and told with the status.
  void expectEditKept(const char* member, const std::string& told) {
    const std::string path = take(member);
    ASSERT_NE(path, "");
    const std::string edit = unpackable(Large) + "edited";
    writeFile(path, edit);
    play({{"An error occurred updating", {}}, {told, {Key::Enter}}},
         [&] { left().archive.reset(); });
    ASSERT_EQ(names("tmp").size(), 1u);
    EXPECT_TRUE(names("tmp")[0].ends_with(".kept"));
    EXPECT_EQ(dir.read("tmp/" + names("tmp")[0] + "/" + member), edit);
  }

  std::string before_;  // the archive
};

constexpr char PackZip[] = "zip -q ../left/a.zip large small";
constexpr char PackTar[] = "tar cf ../left/a.tar large small";

}  // namespace

TEST_F(KilledTools, AnUpdateKeepsTheEditAndTheOldArchive) {
  const struct {
    std::string tool;
    const char* status;
  } table[] = {{std::string(Limited) + "zip -r", "(153)"},
               {"kill -KILL $$ #", "(137)"},
               {"kill -SEGV $$ #", "(139)"}};
  for (const auto& row : table) {
    SCOPED_TRACE(row.tool);
    build("a.zip", PackZip);
    set(Archiver::Zip, "Compress", row.tool);
    open("a.zip");
    expectEditKept("large", row.status);
    EXPECT_EQ(dir.read("left/a.zip"), before_);
    EXPECT_EQ(ours("left"), std::vector<std::string>{"a.zip"});
  }
}

TEST_F(KilledTools, AnUpdateThatWritesAnewLeavesTheOldArchiveAlone) {
  build("large.gz", "gzip -c large > ../left/large.gz");
  set(Archiver::Gzip, "Compress", "ulimit -c 0; (cat %f > %a; kill -KILL $$) #");
  open("large.gz");
  expectEditKept("large", "(137)");
  EXPECT_EQ(dir.read("left/large.gz"), before_);
  EXPECT_EQ(ours("left"), std::vector<std::string>{"large.gz"});
}

TEST_F(KilledTools, AnUpdateInPlaceKeepsTheEdit) {
  build("a.tar", PackTar);
  set(Archiver::Tar, "Compress", std::string(Limited) + "tar -rf");
  open("a.tar");
  expectEditKept("large", "(153)");
}

TEST_F(KilledTools, AnExtractionLeavesNothingAndTakesNothing) {
  const struct {
    Archiver archiver;
    const char* archive;
    const char* packer;
    std::string tool;
  } table[] = {
      {Archiver::Zip, "a.zip", PackZip, "unzip --z %a %f; truncate -s 100 large; kill -KILL $$"},
      {Archiver::Zip, "a.zip", PackZip, "touch small; kill -KILL $$ #"},
      {Archiver::Zip, "a.zip", PackZip, "touch small; kill -SEGV $$ #"},
      {Archiver::Tar, "a.tar", PackTar, std::string(Limited) + "tar -xf"}};
  for (const auto& row : table) {
    for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
      SCOPED_TRACE(row.tool);
      build(row.archive, row.packer);
      set(row.archiver, "Extract", row.tool);
      open(row.archive);
      for (const char* name : {"large", "small"}) {
        if (!isTagged(name)) tag(name);
      }
      play({{"Extract", {Key::Enter}}}, [&] { extractFromArchive(left(), kind); });
      EXPECT_EQ(names("right"), std::vector<std::string>{});
      EXPECT_EQ(names("left"), std::vector<std::string>{row.archive});
      EXPECT_EQ(names("tmp"), std::vector<std::string>{});
      EXPECT_EQ(dir.read(std::string("left/") + row.archive), before_);
    }
  }
}

TEST_F(KilledTools, AMoveIntoAnArchiveKeepsTheFiles) {
  const struct {
    Archiver archiver;
    const char* archive;
    const char* packer;
    std::string tool;
    bool inPlace;  // the tool may hurt the archive
  } table[] = {{Archiver::Zip, "a.zip", PackZip, std::string(Limited) + "zip -r", false},
               {Archiver::Zip, "a.zip", PackZip, "kill -KILL $$ #", false},
               {Archiver::Zip, "a.zip", PackZip, "zip -r %a %f; kill -SEGV $$", true},
               {Archiver::Tar, "a.tar", PackTar, std::string(Limited) + "tar -rf", true}};
  for (const auto& row : table) {
    SCOPED_TRACE(row.tool);
    build(row.archive, row.packer);
    ASSERT_TRUE(shell(".", std::string("mv left/") + row.archive + " right"));
    dir.write("left/first", "first");
    dir.write("left/new", unpackable(Large));
    set(row.archiver, "Compress", row.tool);
    set(row.archiver, "CompressListfileSwitch", "");
    show("new");
    ASSERT_TRUE(goToPath(right(), dir.wide(std::string("right/") + row.archive)));
    for (const char* name : {"first", "new"}) {
      if (!isTagged(name)) tag(name);
    }
    play({{"Compress and Move 2 files to", {Key::Enter}}},
         [&] { compressIntoOther(left(), TransferKind::Move); });
    EXPECT_EQ(dir.read("left/first"), "first");
    EXPECT_EQ(dir.read("left/new"), unpackable(Large));
    EXPECT_EQ(names("left").size(), 2u);
    if (!row.inPlace) {
      EXPECT_EQ(dir.read(std::string("right/") + row.archive), before_);
      EXPECT_TRUE(isTagged("first") && isTagged("new"));
    }
    EXPECT_EQ(ours("right"), std::vector<std::string>{row.archive});
    EXPECT_EQ(names("tmp"), std::vector<std::string>{});
  }
}
