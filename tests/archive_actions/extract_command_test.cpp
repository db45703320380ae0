#include "archive_actions/extract_command.h"

#include "archive/sample_archives.h"
#include "archive_actions/archive_command_test.h"
#include "archive_actions/delete_members.h"
#include "support/fault_hook.h"

namespace {

struct Packed {
  const char* name;
  const char* command;  // in the directory that is packed
  const char* list;     // in the directory of the archive
};

const Packed Formats[] = {
    {"a.zip", "zip -qr ../left/a.zip .", "unzip -Z1 a.zip"},
    {"a.tar", "tar cf ../left/a.tar -- *", "tar -tf a.tar"},
    {"dotted.tar", "tar cf ../left/dotted.tar .", "tar -tf dotted.tar"},
    {"a.arj", "arj a -r ../left/a.arj .", "arj l a.arj"},
    {"a.lzh", "jlha a ../left/a.lzh one.txt sub", "jlha lq a.lzh"},
};

class Extracting : public ArchiveCommandTest {
 protected:
  void SetUp() override {
    ArchiveCommandTest::SetUp();
    dir.write("in/one.txt", "one");
    dir.makeDir("in/sub");
    dir.makeDir("in/sub/deeper");
    dir.write("in/sub/two words.txt", "two");
    dir.write("in/sub/deeper/three", std::string(5000, '3'));
  }
  static void set(const char* key, const char* value) {
    ASSERT_TRUE(archiverKeys().set(Archiver::Zip, key, value));
  }
  // F5 or F6 to the right panel's directory.
  void extract(TransferKind kind = TransferKind::Copy, const std::vector<Step>& more = {}) {
    std::vector<Step> steps = {{"Extract", {Key::Enter}}};
    steps.insert(steps.end(), more.begin(), more.end());
    play(steps, [&] { extractFromArchive(left(), kind); });
  }
};

class ExtractingEach : public Extracting, public testing::WithParamInterface<Packed> {};

TEST_P(ExtractingEach, TaggedFilesAndDirectoriesComeOutAsTheyWentIn) {
  pack(GetParam().command);
  open(GetParam().name);
  tag("one.txt");
  tag("sub");
  extract();
  EXPECT_TRUE(same("in", "right"));
  EXPECT_FALSE(isTagged("one.txt"));
  EXPECT_EQ(entryNamed(left(), "sub")->wasTagged, 1);
}

TEST_P(ExtractingEach, WhatIsUnderTheCursorComesWithoutItsPath) {
  pack(GetParam().command);
  open(GetParam().name);
  enterPath(left(), L"sub");
  putCursorOn("deeper");
  extract();
  EXPECT_EQ(names("right"), std::vector<std::string>{"deeper"});
  EXPECT_TRUE(same("in/sub/deeper", "right/deeper"));
}

TEST_P(ExtractingEach, AMoveTakesItOutOfTheArchive) {
  pack(GetParam().command);
  open(GetParam().name);
  tag("sub");
  extract(TransferKind::Move);
  EXPECT_TRUE(same("in/sub", "right/sub"));
  EXPECT_EQ(entryNamed(left(), "sub"), nullptr);
  EXPECT_NE(entryNamed(left(), "one.txt"), nullptr);
  EXPECT_EQ(listed(GetParam().list).find("three"), std::string::npos);
}

TEST_P(ExtractingEach, WhatIsDeletedIsGoneFromTheArchive) {
  pack(GetParam().command);
  open(GetParam().name);
  enterPath(left(), L"sub");
  putCursorOn("two words.txt");
  deleteInArchive(left());
  panelRefresh();
  EXPECT_EQ(entryNamed(left(), "two words.txt"), nullptr);
  EXPECT_NE(entryNamed(left(), "deeper"), nullptr);
  EXPECT_EQ(listed(GetParam().list).find("two words"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Formats, ExtractingEach, testing::ValuesIn(Formats),
                         [](const testing::TestParamInfo<Packed>& format) {
                           std::string name = format.param.name;
                           std::erase(name, '.');
                           return name;
                         });

TEST_F(Extracting, AGzipGivesItsOneFile) {
  pack("gzip -c one.txt > ../left/one.txt.gz");
  open("one.txt.gz");
  putCursorOn("one.txt");
  extract();
  EXPECT_EQ(dir.read("right/one.txt"), "one");
}

TEST_F(Extracting, AGzipHasNoCommandToDelete) {
  pack("gzip -c one.txt > ../left/one.txt.gz");
  open("one.txt.gz");
  putCursorOn("one.txt");
  play({{"No command for this archive type", {Key::Enter}}}, [&] { deleteInArchive(left()); });
  EXPECT_TRUE(dir.exists("left/one.txt.gz"));
}

TEST_F(Extracting, OddNamesComeOutOfZipAndTar) {
  const std::vector<std::string> odd = {
      "-x",      "a[1]*?.txt", "it's",    "$HOME;touch y", "gr\u00fc\u00dfe",
      "(a) & b", " blank ",    "a[2].txt"};
  for (const std::string& name : odd) dir.write("in/" + name, name);
  pack("zip -qr ../left/a.zip . && tar cf ../left/a.tar -- *");
  for (const char* archive : {"a.zip", "a.tar"}) {
    open(archive);
    tagAll();
    tag("sub");
    extract();
    EXPECT_TRUE(same("in", "right")) << archive;
    shell(".", "rm -rf right; mkdir right");
    enterPath(left(), L"..");
  }
}

// Bytes of another system's page, and its separators.
const SampleMembers& membersOfOtherSystems() {
  static const SampleMembers members = {{"gr\x81n.txt", "green"},
                                        {"back\\slash.txt", "below"},
                                        {"two/\u4e2d.txt", "utf-8"},
                                        {"gr\x82s", "twice", SampleMember::NoClaim, "gr\u00e9s"},
                                        {"s\x82"
                                         "c/x",
                                         "two names", SampleMember::NoClaim, "s\u00e9c/x"},
                                        {"d\x82r\\in\\x\x82.txt", "deep"},
                                        {"plain.txt", "plain"}};
  return members;
}

class ExtractingOfOthers : public Extracting, public testing::WithParamInterface<ZipHost> {
 protected:
  void SetUp() override {
    Extracting::SetUp();
    dir.write("left/a.zip", zipMadeBy(GetParam(), zipArchive(membersOfOtherSystems())));
    open("a.zip");
  }
  // Its names as they are listed.
  static std::string listedAs(const std::string& onTheFirst, const std::string& bytes) {
    return GetParam() == ZipHost::Unix ? bytes : onTheFirst;
  }
};

TEST_P(ExtractingOfOthers, FilesComeOutUnderTheNamesThatAreShown) {
  for (const std::string& name :
       {listedAs("gr\u00fcn.txt", "gr\x81n.txt"), std::string("plain.txt")})
    tag(name);
  extract();
  EXPECT_EQ(dir.read("right/" + listedAs("gr\u00fcn.txt", "gr\x81n.txt")), "green");
  EXPECT_EQ(dir.read("right/plain.txt"), "plain");
  enterPath(left(), L"back");
  putCursorOn("slash.txt");
  extract();
  EXPECT_EQ(dir.read("right/slash.txt"), "below");
  enterPath(left(), L"..");
  enterPath(left(), L"two");
  putCursorOn("\u4e2d.txt");
  extract();
  EXPECT_EQ(dir.read("right/\u4e2d.txt"), "utf-8");
}

TEST_P(ExtractingOfOthers, ASecondNameIsTheOneThatTheToolKnows) {
  tag("gr\u00e9s");
  tag("s\u00e9c");
  extract();
  EXPECT_EQ(dir.read("right/gr\u00e9s"), "twice");
  EXPECT_EQ(dir.read("right/s\u00e9c/x"), "two names");
}

TEST_P(ExtractingOfOthers, DirectoriesThatAreNoneForTheToolComeOutAsSuch) {
  const std::string deep = listedAs("d\u00e9r", "d\x82r");
  tag("back");
  tag(deep);
  extract();
  EXPECT_EQ(names("right"), (std::vector<std::string>{"back", deep}));
  EXPECT_EQ(dir.read("right/back/slash.txt"), "below");
  ASSERT_EQ(names("right/" + deep + "/in").size(), 1u);
  EXPECT_EQ(dir.read("right/" + deep + "/in/" + names("right/" + deep + "/in")[0]), "deep");
}

TEST_P(ExtractingOfOthers, AMoveTakesThemOutOfTheArchive) {
  tagAll();
  extract(TransferKind::Move);
  EXPECT_EQ(names("right").size(), 3u) << "files";
  for (const char* name : {"back", "two", "s\u00e9c"}) tag(name);
  tag(listedAs("d\u00e9r", "d\x82r"));
  extract(TransferKind::Move);
  EXPECT_EQ(names("right").size(), 7u);
  EXPECT_EQ(left().count(), 1);
}

INSTANTIATE_TEST_SUITE_P(Hosts, ExtractingOfOthers,
                         testing::Values(ZipHost::Fat, ZipHost::Unix, ZipHost::Ntfs),
                         [](const testing::TestParamInfo<ZipHost>& host) {
                           if (host.param == ZipHost::Unix) return "Unix";
                           return host.param == ZipHost::Fat ? "Fat" : "Ntfs";
                         });

TEST_F(Extracting, TwoFilesThatANameMayHaveBecomeAreLeft) {
  dir.write("left/a.zip", zipArchive({{"d\x82r/a", "1"}}));
  set("Extract", "mkdir d\xe9r d\xear; true");
  open("a.zip");
  putCursorOn("d\u00e9r");
  extract(TransferKind::Copy, {{"File not found", {Key::Enter}}});
  EXPECT_EQ(names("right"), std::vector<std::string>{});
}

TEST_F(Extracting, TwoDirectoriesThatAreListedAsOneStayInTheArchive) {
  std::string archive = zipArchive({{"d\x82r/one", "1"}, {"d\u00e9r/two", "2"}});
  dir.write("left/a.zip", archive);
  open("a.zip");
  putCursorOn("d\u00e9r");
  extract(TransferKind::Move, {{"Not everything was moved", {Key::Enter}}});
  EXPECT_EQ(dir.read("left/a.zip"), archive);
  EXPECT_EQ(names("right"), std::vector<std::string>{});
}

TEST_F(Extracting, ABackslashAndASlashThatGiveOnePathStayInTheArchive) {
  dir.write("left/a.zip",
            zipMadeBy(ZipHost::Unix, zipArchive({{"a/b", "slash"}, {"a\\b", "backslash"}})));
  const std::string before = dir.read("left/a.zip");
  open("a.zip");
  putCursorOn("a");
  extract(TransferKind::Move, {{"Not everything was moved", {Key::Enter}}});
  EXPECT_EQ(dir.read("left/a.zip"), before);
  EXPECT_EQ(names("right"), std::vector<std::string>{});
}

TEST_F(Extracting, ANameThatLooksLikeAPatternIsDeletedAlone) {
  for (const char* name : {"a[1]*.txt", "a[1]b.txt", "a1.txt"})
    dir.write(std::string("in/") + name, "");
  pack("zip -qr ../left/a.zip . && tar cf ../left/a.tar -- *");
  for (const char* archive : {"a.zip", "a.tar"}) {
    open(archive);
    putCursorOn("a[1]*.txt");
    deleteInArchive(left());
    panelRefresh();
    EXPECT_EQ(entryNamed(left(), "a[1]*.txt"), nullptr) << archive;
    EXPECT_NE(entryNamed(left(), "a[1]b.txt"), nullptr) << archive;
    EXPECT_NE(entryNamed(left(), "a1.txt"), nullptr) << archive;
    enterPath(left(), L"..");
  }
}

TEST_F(Extracting, ANewlineInANameOfATarIsKept) {
  dir.write("in/new\nline", "n");
  pack("tar cf ../left/a.tar -- *");
  open("a.tar");
  tag("new\nline");
  tag("one.txt");
  extract();
  EXPECT_EQ(dir.read("right/new\nline"), "n");
}

TEST_F(Extracting, AnArchiveThatTheToolRemovesIsLeftForItsDirectory) {
  set("Delete", "rm %a #");
  pack("zip -q ../left/a.zip one.txt");
  open("a.zip");
  putCursorOn("one.txt");
  deleteInArchive(left());
  panelRefresh();
  EXPECT_FALSE(dir.exists("left/a.zip"));
  EXPECT_EQ(left().archive, nullptr);
  EXPECT_EQ(bytes(left().path), dir.path("left"));
}

TEST_F(Extracting, AnArchiveWithoutMembersStaysOpen) {
  pack("zip -q ../left/a.zip one.txt");
  open("a.zip");
  putCursorOn("one.txt");
  deleteInArchive(left());
  panelRefresh();
  ASSERT_NE(left().archive, nullptr);
  EXPECT_EQ(left().count(), 1);
}

TEST_F(Extracting, ALongCommandIsSplit) {
  set("Extract", "echo x >> ../../runs; unzip --z %a %f");
  for (int i = 0; i < 30; ++i) {
    dir.write("in/" + std::to_string(i) + std::string(50, 'n'), "n");
  }
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  tagAll();
  tag("sub");
  extract();
  EXPECT_EQ(dir.read("runs"), "x\nx\n");
  EXPECT_TRUE(same("in", "right"));
}

TEST_F(Extracting, AFailedToolLeavesNothing) {
  set("Extract", "touch %f; false");
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  putCursorOn("one.txt");
  extract();
  EXPECT_EQ(names("right"), std::vector<std::string>{});
}

TEST_F(Extracting, AnExistingFileIsAskedForAndKept) {
  dir.write("right/one.txt", "mine");
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  putCursorOn("one.txt");
  extract(TransferKind::Move, {{"exists", {Key::Esc}}});
  EXPECT_EQ(dir.read("right/one.txt"), "mine");
}

TEST_F(Extracting, NothingIsWrittenOutside) {
  dir.write("left/a.zip", zipArchive({{"sub/good", "good"},
                                      {"sub/../../../outside", "evil"},
                                      {"/abs/olute", "evil"},
                                      {"sub/x/../../../../outside2", "evil"}}));
  show("a.zip");
  play({{"Some names can't be shown", {Key::Enter}}}, [&] {
    attachArchive(left(), L"a.zip");
    enterPath(left(), L"a.zip");
  });
  tag("sub");
  extract();
  EXPECT_EQ(dir.read("right/sub/good"), "good");
  EXPECT_FALSE(dir.exists("outside"));
  EXPECT_FALSE(dir.exists("right/outside"));
  EXPECT_FALSE(dir.exists("outside2"));
}

TEST_F(Extracting, ALinkInTheArchiveIsNotFollowed) {
  dir.makeDir("victim");
  // "link" leads out, and a file of the archive lies behind it.
  dir.makeDir("in/link");
  dir.write("in/link/file", "evil");
  pack(
      "tar cf ../left/a.tar link/file; rm -r link; ln -s ../victim link; tar rf ../left/a.tar "
      "link");
  open("a.tar");
  putCursorOn("link");
  play({{"Extract", {Key::Enter}}}, [&] { extractFromArchive(left(), TransferKind::Copy); });
  EXPECT_EQ(names("victim"), std::vector<std::string>{});
}

TEST_F(Extracting, ADestinationMustBeADirectory) {
  dir.write("right/file", "");
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  putCursorOn("one.txt");
  play({{"Extract", {Key::Enter}, {}, dir.path("right/file")},
        {"Destination must be a valid directory", {Key::Enter}}},
       [&] { extractFromArchive(left(), TransferKind::Copy); });
  play({{"Extract", {Key::Enter}, {}, dir.path("right/none/")},
        {"Directory does not exist", {Key::Enter}}},
       [&] { extractFromArchive(left(), TransferKind::Copy); });
  EXPECT_EQ(names("right"), std::vector<std::string>{"file"});
}

TEST_F(Extracting, AnArchiveThatChangedMeanwhileIsReadAgain) {
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  tag("one.txt");
  tag("sub");
  ASSERT_TRUE(shell("left", "zip -qd a.zip one.txt"));
  play({{"Extract", {Key::Enter}}, {"File not found", {Key::Enter}}},
       [&] { extractFromArchive(left(), TransferKind::Copy); });
  EXPECT_EQ(names("right"), std::vector<std::string>{});
  EXPECT_TRUE(isTagged("sub"));
}

TEST_F(Extracting, TheParentEntryIsNothingToExtract) {
  pack("zip -qr ../left/a.zip .");
  open("a.zip");
  putCursorOn("..");
  run([&] { extractFromArchive(left(), TransferKind::Copy); });
}

TEST_F(Extracting, WithoutRoomNothingRuns) {
  dir.write("left/a.rar", rar4Archive({{"big", "x", uint64_t{1} << 62}}, HeaderForm::Wide));
  ASSERT_TRUE(archiverKeys().set(Archiver::Rar, "Extract", "touch ../../ran #"));
  open("a.rar");
  putCursorOn("big");
  extract(TransferKind::Copy, {{"No space left on device", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("ran"));
  EXPECT_EQ(names("right"), std::vector<std::string>{});
}

TEST_F(Extracting, UnsafeNamesOnlyGoToToolsThatStripThem) {
  const SampleMembers members = {{"sub/good", "good"}, {"sub/../../outside", "evil"}, {"one", "1"}};
  dir.write("left/a.arj", arjArchive(members, HeaderForm::Published));
  dir.write("left/a.zip", zipArchive(members));
  ASSERT_TRUE(archiverKeys().set(Archiver::Arj, "Extract", "touch ../../ran; true"));
  set("Extract", "touch ../../ran; true");
  for (const char* name : {"a.arj", "a.zip"}) {
    show(name);
    play({{"Some names can't be shown", {Key::Enter}}}, [&] {
      attachArchive(left(), decodeFileName(name).data());
      enterPath(left(), decodeFileName(name).data());
    });
    putCursorOn("sub");
    extract(TransferKind::Copy, {{"Unsafe names in archive", {Key::Enter}}});
    EXPECT_FALSE(dir.exists("ran")) << name;
    enterPath(left(), L"..");
  }
}

// It unpacks all there is, whatever it is told.
class ExtractingAll : public Extracting {
 protected:
  void SetUp() override {
    Extracting::SetUp();
    dir.makeDir("bin");
    dir.write("bin/unace", "#!/bin/sh\necho \"$@\" >>" + dir.path("ran") +
                               "\nmkdir sub\nprintf 1 >one\nprintf 2 >sub/two\n");
    dir.chmod("bin/unace", 0755);
    const char* path = getenv("PATH");
    sessionEnvironment().set("PATH", (dir.path("bin") + ":" + (path ? path : "/usr/bin")).c_str());
  }
  void TearDown() override {
    sessionEnvironment().set("PATH", nullptr);
    Extracting::TearDown();
  }
};

TEST_F(ExtractingAll, OnlyWhatIsWantedIsMovedIntoPlace) {
  dir.write("left/a.ace", aceArchive({{"one", "1"}, {"sub/two", "2"}}, HeaderForm::Published));
  open("a.ace");
  putCursorOn("sub");
  extract();
  EXPECT_EQ(names("right"), std::vector<std::string>{"sub"});
  EXPECT_EQ(dir.read("right/sub/two"), "2");
  EXPECT_EQ(dir.read("ran"), "x " + dir.path("left/a.ace") + "\n");
}

TEST_F(Extracting, AMemberOfAnAceComesOutByTheSystemsTool) {
  dir.write("left/a.ace", commentedAceArchive({{"one", "1"}, {"sub/two", "2"}}));
  open("a.ace");
  putCursorOn("sub");
  extract();
  EXPECT_EQ(names("right"), std::vector<std::string>{"sub"});
  EXPECT_EQ(dir.read("right/sub/two"), "2");
}

TEST_F(ExtractingAll, AnUnsafeNameAnywhereKeepsItFromRunning) {
  dir.write("left/a.ace", aceArchive({{"one", "1"}, {"../x", "2"}}, HeaderForm::Published));
  show("a.ace");
  play({{"Some names can't be shown", {Key::Enter}}}, [&] {
    attachArchive(left(), L"a.ace");
    enterPath(left(), L"a.ace");
  });
  putCursorOn("one");
  extract(TransferKind::Copy, {{"Unsafe names in archive", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("ran"));
}

// The tool would give such a name an ending, and there is an archive of that name.
TEST_F(Extracting, AnArchiveWithoutAnEndingIsTheOneThatIsChanged) {
  for (const char* packer : {"zip -qr ../left/pack.zip .", "arj a -r ../left/pack.arj ."}) {
    SCOPED_TRACE(packer);
    pack(packer);
    ASSERT_TRUE(shell("left", "cp pack.??? pack"));
    const std::string other = names("left").back();
    const std::string before = dir.read("left/" + other);
    open("pack");
    putCursorOn("one.txt");
    extract(TransferKind::Move);
    EXPECT_EQ(dir.read("right/one.txt"), "one");
    EXPECT_EQ(entryNamed(left(), "one.txt"), nullptr);
    EXPECT_NE(entryNamed(left(), "sub"), nullptr);
    EXPECT_EQ(dir.read("left/" + other), before);
    EXPECT_EQ(names("left").size(), 2u);
    enterPath(left(), L"..");
    ASSERT_TRUE(shell(".", "rm left/* right/*"));
  }
}

// The packer would keep the old archive under the name of another file.
TEST_F(Extracting, WhatStandsBesideAnArchiveStays) {
  pack("jlha aq ../left/a.lzh one.txt sub");
  dir.write("left/a.bak", "another file");
  open("a.lzh");
  putCursorOn("one.txt");
  extract(TransferKind::Move);
  EXPECT_EQ(dir.read("right/one.txt"), "one");
  EXPECT_EQ(entryNamed(left(), "one.txt"), nullptr);
  EXPECT_EQ(dir.read("left/a.bak"), "another file");
  EXPECT_EQ(names("left"), (std::vector<std::string>{"a.bak", "a.lzh"}));
}

bool isLocked(int directory, const std::string& path) {
  struct stat info;
  return fstatat(directory, path.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(info.st_mode) && (info.st_mode & S_IWUSR) == 0;
}

// The archiver takes the one name for a pattern that matches the other.
TEST_F(Extracting, OfTwoNamesThatArjMistakesTheRightOneIsTaken) {
  dir.write("in/sub/a[1].txt", "one");
  dir.write("in/sub/a1.txt", "other");
  pack("arj a -r ../left/a.arj 'sub/*'");
  open("a.arj");
  enterPath(left(), L"sub");
  putCursorOn("a[1].txt");
  extract();
  EXPECT_EQ(dir.read("right/a[1].txt"), "one");
  EXPECT_EQ(names("right").size(), 1u);
  play({{"Unsafe names in archive", {Key::Enter}}}, [&] { deleteInArchive(left()); });
  EXPECT_NE(entryNamed(left(), "a[1].txt"), nullptr);
  EXPECT_NE(listed("arj v a.arj").find("sub/a1.txt"), std::string::npos);
}

// As the system does for whoever isn't root: a directory that may not be written in stays where it
// is, with all that is in it.
int refuseLocked(const System::Call& call, void*) {
  const std::string name(call.name);
  const bool moves = name.starts_with("rename");
  if (!moves && !name.starts_with("unlink")) return 0;
  const bool refused = isLocked(call.directory, byteParent(call.path)) ||
                       (moves && isLocked(call.directory, call.path));
  return refused ? EACCES : 0;
}

TEST_F(Extracting, ADirectoryThatMayNotBeWrittenInComesOutLikeThat) {
  ASSERT_TRUE(shell("in", "chmod 500 sub/deeper && chmod 555 sub"));
  pack("tar cf ../left/a.tar sub");
  open("a.tar");
  putCursorOn("sub");
  System::setPlaceHook(refuseLocked, nullptr);
  extract();
  System::setPlaceHook(nullptr, nullptr);
  EXPECT_TRUE(same("in/sub", "right/sub"));
  EXPECT_TRUE(shell("right", "test $(stat -c%a sub) = 555 && test $(stat -c%a sub/deeper) = 500"));
  EXPECT_EQ(names("right"), std::vector<std::string>{"sub"});
  ASSERT_TRUE(shell(".", "chmod -R u+w in right"));
}

TEST_F(Extracting, AMoveWhoseDeletionFailsKeepsBoth) {
  set("Delete", "false #");
  pack("zip -qr ../left/a.zip .");
  const std::string before = dir.read("left/a.zip");
  open("a.zip");
  tag("sub");
  extract(TransferKind::Move, {{"Not everything was moved", {Key::Enter}}});
  EXPECT_TRUE(same("in/sub", "right/sub"));
  EXPECT_EQ(dir.read("left/a.zip"), before);
  EXPECT_TRUE(isTagged("sub"));
}

TEST_F(Extracting, WithoutAPrivateDirectoryNothingRuns) {
  set("Extract", "touch ../ran #");
  pack("zip -qr ../left/a.zip .");
  const std::string before = dir.read("left/a.zip");
  open("a.zip");
  tag("sub");
  const FaultHook full("mkdir", ENOSPC);
  extract(TransferKind::Move, {{"Unable to create temporary directory", {Key::Enter}}});
  EXPECT_TRUE(full.hit());
  EXPECT_EQ(names("right"), std::vector<std::string>{});
  EXPECT_EQ(dir.read("left/a.zip"), before);
  EXPECT_FALSE(dir.exists("ran"));
  EXPECT_TRUE(isTagged("sub"));
}

TEST_F(Extracting, AFailedDeletionKeepsTheTags) {
  set("Delete", "exit 3 #");
  pack("zip -qr ../left/a.zip .");
  const std::string before = dir.read("left/a.zip");
  open("a.zip");
  tag("sub");
  tag("one.txt");
  run([&] { deleteInArchive(left()); });
  EXPECT_EQ(dir.read("left/a.zip"), before);
  EXPECT_TRUE(isTagged("sub"));
  EXPECT_TRUE(isTagged("one.txt"));
}

}  // namespace
