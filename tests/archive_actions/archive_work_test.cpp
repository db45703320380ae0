#include "archive_actions/archive_work.h"

#include "archive/sample_archives.h"
#include "archive_actions/open_archive.h"
#include "config/archiver_keys.h"
#include "filecommands/command_test.h"

namespace {

// Archives by real packers, worked with by the tools.
class ArchiveWorkTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    archiverKeys().setDefaults();
    setenv("TMP", temporary.path().c_str(), 1);
    dir.makeDir("left/deep");
    dir.write("left/deep/member.txt", "old text");
    dir.write("left/other.txt", "other");
  }
  void TearDown() override {
    archiverKeys().setDefaults();
    unsetenv("TMP");
    CommandTest::TearDown();
  }
  void shell(const std::string& command) {
    const std::string whole =
        "cd " + dir.path("left") + " && (" + command + ") > " + scratch.path("output") + " 2>&1";
    ASSERT_EQ(system(whole.c_str()), 0) << command << "\n" << scratch.read("output");
  }
  std::string output(const std::string& command) {
    shell(command);
    return scratch.read("output");
  }
  // Tools take their time; whoever asks something here would wait for ever.
  static void run(const std::function<void()>& act) { act(); }
  void open(const std::string& name) {
    archive_ = openArchiveShown(dir.wide("left/" + name), nullptr).archive;
    ASSERT_NE(archive_, nullptr) << name;
  }
  ArchiveWork& work() { return ArchiveWork::of(static_cast<ArchiveEntryStore&>(*archive_)); }
  std::string take(const std::string& member) {
    return bytes(work().take(decodeFileName(member.c_str())));
  }
  void close() { archive_.reset(); }
  std::vector<std::string> temporaries() const { return temporary.names(); }

  TempDir temporary, scratch;
  std::unique_ptr<OpenArchive> archive_;
};

struct Packer {
  const char* archive;
  const char* make;
  const char* print;  // the member
  const char* member;
};
constexpr Packer Packers[] = {
    {"pack.zip", "zip -q pack.zip deep/member.txt other.txt", "unzip -p pack.zip deep/member.txt",
     "deep/member.txt"},
    {"pack.tar", "tar -cf pack.tar deep other.txt",
     "mkdir out && tar -C out -xf pack.tar && cat out/deep/member.txt && rm -r out",
     "deep/member.txt"},
    {"dot.tar", "tar -cf dot.tar ./deep ./other.txt",
     "mkdir out && tar -C out -xf dot.tar && cat out/deep/member.txt && rm -r out",
     "deep/member.txt"},
    {"pack.arj", "arj a -r pack.arj deep/member.txt other.txt",
     "mkdir out && cd out && arj x -y ../pack.arj >/dev/null && cat deep/member.txt && rm -r "
     "../out",
     "deep/member.txt"},
    {"pack.lzh", "jlha aq pack.lzh deep/member.txt other.txt",
     "mkdir out && cd out && lha xq ../pack.lzh && cat deep/member.txt && rm -r ../out",
     "deep/member.txt"},
    {"member.txt.gz", "gzip -c deep/member.txt > member.txt.gz", "gzip -dc member.txt.gz",
     "member.txt"},
};

}  // namespace

TEST_F(ArchiveWorkTest, AMemberOfEachFormatIsTakenOutEditedAndPutBack) {
  for (const Packer& packer : Packers) {
    SCOPED_TRACE(packer.archive);
    shell(packer.make);
    open(packer.archive);
    std::string path;
    run([&] { path = take(packer.member); });
    ASSERT_NE(path, "");
    EXPECT_EQ(readFile(path), "old text");
    writeFile(path, "a newer text");
    run([&] { close(); });
    EXPECT_EQ(output(packer.print), "a newer text");
    EXPECT_EQ(temporaries(), std::vector<std::string>{});
    open(packer.archive);
    EXPECT_EQ(
        static_cast<ArchiveEntryStore&>(*archive_).fileOf(decodeFileName(packer.member))->size,
        12u);
    close();
  }
}

TEST_F(ArchiveWorkTest, WithoutAChangeNoToolRuns) {
  shell("zip -q pack.zip other.txt");
  open("pack.zip");
  std::string path;
  run([&] { path = take("other.txt"); });
  EXPECT_EQ(readFile(path), "other");
  archiverKeys().set(Archiver::Zip, "Compress", ("touch " + scratch.path("ran") + " #").c_str());
  run([&] { close(); });
  EXPECT_FALSE(scratch.exists("ran"));
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, TheMemberTakenLastIsntTakenAgain) {
  shell("zip -q pack.zip other.txt deep/member.txt");
  open("pack.zip");
  std::string first;
  run([&] { first = take("other.txt"); });
  archiverKeys().set(Archiver::Zip, "Extract", "false");
  run([&] { EXPECT_EQ(take("other.txt"), first); });
  archiverKeys().setDefaults();
  run([&] { EXPECT_NE(take("deep/member.txt"), ""); });
  EXPECT_FALSE(existsAt(first)) << "one at a time";
}

TEST_F(ArchiveWorkTest, ANameThatDiffersInCaseIsAnotherMember) {
  dir.write("left/OTHER.txt", "capitals");
  shell("zip -q pack.zip other.txt OTHER.txt");
  open("pack.zip");
  run([&] {
    EXPECT_EQ(readFile(take("other.txt")), "other");
    EXPECT_EQ(readFile(take("OTHER.txt")), "capitals");
  });
}

TEST_F(ArchiveWorkTest, AFailedExtractionIsToldWithItsCode) {
  shell("zip -q pack.zip other.txt");
  archiverKeys().set(Archiver::Zip, "Extract", "exit 7 #");
  open("pack.zip");
  play({{"An error occurred extracting", {Key::Enter}}}, [&] { EXPECT_EQ(take("other.txt"), ""); });
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, AnEmptyTemplateRunsNothing) {
  shell("zip -q pack.zip other.txt");
  archiverKeys().set(Archiver::Zip, "Extract", "");
  open("pack.zip");
  play({{"No command for this archive type", {Key::Enter}}},
       [&] { EXPECT_EQ(take("other.txt"), ""); });
}

TEST_F(ArchiveWorkTest, AFailedUpdateKeepsTheCopyAndTellsWhere) {
  shell("zip -q pack.zip other.txt");
  const std::string before = dir.read("left/pack.zip");
  for (const char* tool : {"exit 9 #", "true"}) {
    open("pack.zip");
    std::string path;
    run([&] { path = take("other.txt"); });
    writeFile(path, "an edit of an hour");
    archiverKeys().set(Archiver::Zip, "Compress", tool);
    play({{"An error occurred updating", {Key::Enter}}}, [&] { close(); });
    EXPECT_EQ(dir.read("left/pack.zip"), before);
    ASSERT_EQ(temporaries().size(), 1u);
    const std::string kept = temporaries().front();
    EXPECT_EQ(temporary.read(kept + "/other.txt"), "an edit of an hour");
    std::filesystem::remove_all(temporary.path(kept));
    archiverKeys().setDefaults();
  }
}

TEST_F(ArchiveWorkTest, AnArchiveThatChangedMeanwhileIsAskedAbout) {
  shell("zip -q pack.zip other.txt");
  open("pack.zip");
  std::string path;
  run([&] { path = take("other.txt"); });
  writeFile(path, "edited");
  shell("zip -q pack.zip deep/member.txt");
  play({{"Archive has changed, update anyway?", {Key::Enter}}}, [&] { close(); });
  EXPECT_EQ(output("unzip -p pack.zip other.txt"), "edited");
  EXPECT_EQ(output("unzip -p pack.zip deep/member.txt"), "old text");
}

TEST_F(ArchiveWorkTest, NoToTheChangedArchiveKeepsTheEdit) {
  shell("zip -q pack.zip other.txt");
  open("pack.zip");
  std::string path;
  run([&] { path = take("other.txt"); });
  writeFile(path, "edited");
  shell("zip -q pack.zip deep/member.txt");
  play({{"Archive has changed, update anyway?", {Key::Esc}},
        {"The archive wasn't updated", {Key::Enter}}},
       [&] { close(); });
  EXPECT_EQ(output("unzip -p pack.zip other.txt"), "other");
  ASSERT_EQ(temporaries().size(), 1u);
  EXPECT_EQ(temporary.read(temporaries().front() + "/other.txt"), "edited");
}

TEST_F(ArchiveWorkTest, AMemberThatIsGoneByNowIsntFound) {
  shell("zip -q pack.zip other.txt deep/member.txt");
  open("pack.zip");
  shell("zip -q -d pack.zip other.txt");
  play({{"File not found", {Key::Enter}}}, [&] { EXPECT_EQ(take("other.txt"), ""); });
  run([&] { EXPECT_EQ(readFile(take("deep/member.txt")), "old text"); });
}

TEST_F(ArchiveWorkTest, ALinkInAnArchiveIsNeverFollowed) {
  dir.link("/etc/passwd", "left/password");
  shell("tar -cf pack.tar password");
  open("pack.tar");
  play({{"Not a regular file", {Key::Enter}}}, [&] { EXPECT_EQ(take("password"), ""); });
}

TEST_F(ArchiveWorkTest, OddNamesAreTakenOutAndPutBack) {
  const std::vector<std::string> names = {"a b",   "[x]*?", "-dash",    "qu'o\"te",
                                          "$HOME", "a;b|c", "\xc3\xa4", "%a %f"};
  for (const std::string& name : names) {
    dir.write("left/" + name, "odd " + name);
  }
  shell(
      "rm -r deep other.txt && tar -cf ../pack.tar . && zip -q -r ../pack.zip . &&"
      " mv ../pack.tar ../pack.zip .");
  for (const char* archive : {"pack.tar", "pack.zip"}) {
    open(archive);
    for (const std::string& name : names) {
      SCOPED_TRACE(std::string(archive) + " " + name);
      run([&] {
        const std::string path = take(name);
        ASSERT_NE(path, "");
        EXPECT_EQ(readFile(path), "odd " + name);
        writeFile(path, "edited " + name);
      });
    }
    run([&] { close(); });
    open(archive);
    for (const std::string& name : names) {
      SCOPED_TRACE(std::string(archive) + " " + name);
      run([&] { EXPECT_EQ(readFile(take(name)), "edited " + name); });
    }
    run([&] { close(); });
  }
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, MembersOfOtherSystemsAreTakenOutAndPutBack) {
  const struct {
    std::string stored;
    std::string onTheFirst;  // as it is listed
    std::string elsewhere;
    std::string second = {};
  } table[] = {{"\u4e2d[1].txt", "\u4e2d[1].txt", "\u4e2d[1].txt"},
               {"h\u00e4/\u4e2d.txt", "h\u00e4/\u4e2d.txt", "h\u00e4/\u4e2d.txt"},
               {"gr\x81n", "gr\u00fcn", "gr\u00fcn", "gr\u00fcn"},
               {"gr\x81n.txt", "gr\u00fcn.txt", "gr\x81n.txt"},
               {"back\\slash", "back/slash", "back/slash"},
               {"d\x82r\\in\\x\x82", "d\u00e9r/in/x\u00e9", "d\x82r/in/x\x82"}};
  for (const ZipHost host : {ZipHost::Fat, ZipHost::Unix, ZipHost::Ntfs}) {
    for (const auto& row : table) {
      SCOPED_TRACE(row.onTheFirst + " " + std::to_string(static_cast<int>(host)));
      dir.write(
          "left/pack.zip",
          zipMadeBy(host,
                    zipArchive({{row.stored, "old text", SampleMember::NoClaim, row.second}})));
      open("pack.zip");
      std::string path;
      run([&] { path = take(host == ZipHost::Unix ? row.elsewhere : row.onTheFirst); });
      ASSERT_NE(path, "");
      EXPECT_EQ(readFile(path), "old text");
      writeFile(path, "a newer text");
      run([&] { close(); });
      EXPECT_EQ(output("unzip -Z1 pack.zip | wc -l"), "1\n");
      EXPECT_EQ(output("unzip -p pack.zip"), "a newer text");
      EXPECT_EQ(temporaries(), std::vector<std::string>{});
    }
  }
}

TEST_F(ArchiveWorkTest, TheOnlyFileThatTheToolWroteIsTheMember) {
  shell("zip -q pack.zip other.txt");
  archiverKeys().set(Archiver::Zip, "Extract", "mkdir x; echo told >x/somehow #");
  open("pack.zip");
  run([&] { EXPECT_EQ(readFile(take("other.txt")), "told\n"); });
  archiverKeys().set(Archiver::Zip, "Extract", "touch one two #");
  close();
  open("pack.zip");
  play({{"File not found", {Key::Enter}}}, [&] { EXPECT_EQ(take("other.txt"), ""); });
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, ALinkInTheWayIsNotFollowedToTheMembersPlace) {
  const TempDir outside;
  dir.write("left/pack.zip", zipArchive({{"d\x82r/file", "evil"}}));
  archiverKeys().set(
      Archiver::Zip, "Extract",
      ("ln -s " + outside.path() + " d\x82r; mkdir d\xe9r; echo evil >d\xe9r/file #").c_str());
  open("pack.zip");
  play({{"Not a regular file", {Key::Enter}}}, [&] { EXPECT_EQ(take("d\u00e9r/file"), ""); });
  EXPECT_EQ(outside.names(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, AMemberGoesBackIntoAnArchiveWithoutAnEnding) {
  shell("zip -q pack.zip other.txt && mv pack.zip pack");
  open("pack");
  run([&] { writeFile(take("other.txt"), "edited"); });
  run([&] { close(); });
  EXPECT_EQ(output("unzip -p pack other.txt"), "edited");
  EXPECT_FALSE(dir.exists("left/pack.zip"));
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, WithoutRoomNothingIsTakenOut) {
  dir.write("left/a.rar", rar4Archive({{"big", "x", uint64_t{1} << 62}}, HeaderForm::Wide));
  archiverKeys().set(Archiver::Rar, "Extract", ("touch " + scratch.path("ran") + " #").c_str());
  open("a.rar");
  play({{"No space left on device", {Key::Enter}}}, [&] { EXPECT_EQ(take("big"), ""); });
  EXPECT_FALSE(scratch.exists("ran"));
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}

TEST_F(ArchiveWorkTest, AnInnerArchiveThatCouldNotBeUpdatedStopsTheOuterOne) {
  shell("zip -q inner.zip other.txt && zip -q outer.zip inner.zip && rm inner.zip");
  const std::string before = dir.read("left/outer.zip");
  open("outer.zip");
  std::unique_ptr<OpenArchive> inner;
  run([&] {
    inner = openArchiveShown(dir.wide("left/outer.zip/inner.zip"), archive_.get()).archive;
  });
  ASSERT_NE(inner, nullptr);
  auto& store = static_cast<ArchiveEntryStore&>(*inner);
  std::string path;
  run([&] { path = bytes(ArchiveWork::of(store).take(L"other.txt")); });
  writeFile(path, "edited");
  const std::string spoil = "sh -c 'echo >> \"$0\"; exit 3' %a #%f";
  archiverKeys().set(Archiver::Zip, "Compress", spoil.c_str());
  play({{"An error occurred updating", {Key::Enter}}}, [&] { inner.reset(); });
  archiverKeys().setDefaults();
  play({{"An archive in it couldn't be updated", {Key::Enter}}}, [&] { close(); });
  EXPECT_EQ(dir.read("left/outer.zip"), before);
  EXPECT_EQ(temporaries().size(), 2u);
}

TEST_F(ArchiveWorkTest, WhoeverOpensKnowsWhetherTheUserWasToldWhyNot) {
  dir.write("left/cut.zip", "PK\3\4 and nothing more");
  dir.write("left/text", "no archive");
  play({{"Central directory not found in", {Key::Enter}}}, [&] {
    const ArchiveAttempt attempt = openArchiveShown(dir.wide("left/cut.zip"), nullptr);
    EXPECT_EQ(attempt.archive, nullptr);
    EXPECT_EQ(attempt.refusal, Refusal::Explained);
  });
  const ArchiveAttempt attempt = openArchiveShown(dir.wide("left/text"), nullptr);
  EXPECT_EQ(attempt.archive, nullptr);
  EXPECT_EQ(attempt.refusal, Refusal::Unexplained);
}

TEST_F(ArchiveWorkTest, ArchivesNestSixteenDeep) {
  shell(
      "cp other.txt file && tar -cf a.tar file && for i in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16;"
      " do mv a.tar b && tar -cf a.tar b && rm b; done");
  std::vector<std::unique_ptr<OpenArchive>> chain;
  Westring path = dir.wide("left/a.tar");
  int opened = 0;
  run([&] {
    std::unique_ptr<OpenArchive> innermost;
    while (auto next = openArchiveShown(path, innermost.get()).archive) {
      next->parent = std::move(innermost);
      innermost = std::move(next);
      path = joinPath(path, L"b");
      ++opened;
    }
    while (innermost) takeInnermost(innermost).reset();
  });
  EXPECT_EQ(opened, 16);
  EXPECT_EQ(temporaries(), std::vector<std::string>{});
}
