#include <sys/resource.h>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

namespace {

class CopyDirectory : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/sub", "src/sub/deep", "src/empty", "to"}) {
      dir.makeDir(name);
    }
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
    dir.write("src/sub/deep/c", "content c");
  }
  void expectCopied(const std::string& target) {
    EXPECT_EQ(snapshot(dir.path(target)), snapshot(dir.path("src")));
    expectNoLeftovers();
  }
};

constexpr char IntoItself[] = "Directory cannot be copied into itself";

}  // namespace

TEST_F(CopyDirectory, EverythingIsCopiedWithModesAndTheSourceStays) {
  dir.chmod("src/a", 0640);
  dir.chmod("src/sub", 0750);
  const auto before = snapshot(dir.path("src"));
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  expectCopied("to/copy");
  EXPECT_EQ(snapshot(dir.path("src")), before);
  EXPECT_EQ(dir.mode("to/copy"), dir.mode("src"));
}

TEST_F(CopyDirectory, IntoItselfIsRefusedAndEndsTheCommand) {
  const auto before = snapshot(dir.path());
  dir.link("sub", "src/link");
  ui.rule = [](const auto&) { return Answer::Yes; };
  for (const char* target : {"src", "src/sub/c", "src/new/deeper", "src/link/x"}) {
    EXPECT_EQ(copy("src", target), Outcome::Cancelled) << target;
  }
  EXPECT_EQ(asked(), Texts(4, IntoItself));
  EXPECT_EQ(ui.questions[0].caption, dir.path("src"));
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::Ok);
  std::filesystem::remove(dir.path("src/link"));
  EXPECT_EQ(snapshot(dir.path()), before);
}

TEST_F(CopyDirectory, ANameThatOnlyBeginsAlikeIsAnotherDirectory) {
  EXPECT_EQ(copy("src", "srcb"), Outcome::Done);
  expectCopied("srcb");
}

TEST_F(CopyDirectory, IntoItselfThroughALinkOutsideIsRefused) {
  dir.link(dir.path("src/sub"), "door");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("src", "door/copy"), Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts{IntoItself});
}

TEST_F(CopyDirectory, TheRootIsRecognisedInItself) {
  RunningOperation operation(ui);
  ui.answers = {Answer::Yes};
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run("/", dir.path("to/root"), 1, 1),
            Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts{IntoItself});
}

TEST_F(CopyDirectory, ALinkToADirectoryAboveIsRefusedAndTheRestIsCopied) {
  dir.link("..", "src/sub/up");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("src", "to/copy"), Outcome::LeftInPlace);
  EXPECT_EQ(asked(), Texts{IntoItself});
  EXPECT_EQ(dir.read("to/copy/sub/b"), "content b");
  EXPECT_EQ(dir.read("to/copy/sub/deep/c"), "content c");
  EXPECT_FALSE(dir.exists("to/copy/sub/up"));
}

TEST_F(CopyDirectory, ALinkToWhereTheCopyGoesIsRefused) {
  dir.link(dir.path("to"), "src/out");
  ui.rule = [](const auto&) { return Answer::Yes; };
  EXPECT_EQ(copy("src", "to/copy"), Outcome::LeftInPlace);
  EXPECT_EQ(asked(), Texts{IntoItself});
  EXPECT_FALSE(dir.exists("to/copy/out"));
}

TEST_F(CopyDirectory, LinksAreFollowed) {
  dir.makeDir("elsewhere");
  dir.write("elsewhere/x", "content x");
  dir.link("../elsewhere", "src/link");
  dir.link("a", "src/alink");
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  EXPECT_TRUE(S_ISDIR(statusOf(dir.path("to/copy/link")).st_mode));
  EXPECT_EQ(dir.read("to/copy/link/x"), "content x");
  EXPECT_TRUE(S_ISREG(statusOf(dir.path("to/copy/alink")).st_mode));
}

TEST_F(CopyDirectory, AnExistingDirectoryIsMergedInSilenceAndKeepsItsMode) {
  dir.makeDir("to/src");
  dir.chmod("to/src", 0711);
  dir.write("to/src/other", "stays");
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/src/other"), "stays");
  EXPECT_EQ(dir.read("to/src/sub/deep/c"), "content c");
  EXPECT_EQ(dir.mode("to/src"), 0711U);
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(CopyDirectory, MergingABareNameIsAskedAboutWithAllAnswers) {
  const std::string before = std::filesystem::current_path();
  ASSERT_EQ(chdir(dir.path().c_str()), 0);
  const struct {
    int answer;
    Outcome outcome;
  } rows[] = {{Answer::Yes, Outcome::Done},         {Answer::Cancel, Outcome::Cancelled},
              {Answer::Skip, Outcome::LeftInPlace}, {Answer::None, Outcome::LeftInPlace},
              {Answer::All, Outcome::Done},         {0, Outcome::Done}};
  for (const auto& row : rows) {
    std::filesystem::remove_all(dir.path("to/src"));
    dir.makeDir("to/src");
    ui.answers.clear();
    if (row.answer) ui.answers = {row.answer};
    RunningOperation operation(ui);
    operation.answers = answers;
    const Outcome outcome =
        Transfer(operation, TransferKind::Copy).run("src", dir.path("to/src"), 1, 1);
    answers = operation.answers;
    EXPECT_EQ(outcome == Outcome::Failed ? Outcome::LeftInPlace : outcome, row.outcome)
        << row.answer;
    EXPECT_EQ(dir.exists("to/src/a"), row.outcome == Outcome::Done) << row.answer;
  }
  ASSERT_EQ(chdir(before.c_str()), 0);
  EXPECT_EQ(asked(), Texts(5, "Directory already exists, merge with source?"));
  EXPECT_TRUE(answers.mergeAll);
}

TEST_F(CopyDirectory, AFileInTheWayOfADirectoryIsAskedAbout) {
  dir.write("to/src", "a file");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/src"), "a file");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  EXPECT_EQ(asked(), Texts(2, ExistsQuestion));
  expectCopied("to/src");
}

TEST_F(CopyDirectory, TheFileInTheWayTakesItsDescriptionAlong) {
  dir.write("to/src", "a file");
  dir.write("to/descript.ion", "src about the file\r\nother stays\r\n");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "other stays\r\n");
}

TEST_F(CopyDirectory, AFileInTheWayLivesUntilTheDirectoryIsWhole) {
  dir.write("to/src", "a file");
  answers.overwrite = OverwriteMode::All;
  ui.onLook = [&] {
    if (ui.looks >= 6) return;
    EXPECT_EQ(dir.read("to/src"), "a file");
  };
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  EXPECT_GT(ui.looks, 6);
  expectCopied("to/src");
}

TEST_F(CopyDirectory, AFileInTheWayStaysWhenAMemberWasLeftOut) {
  for (const char* target : {"to/src", "to/merged/sub"}) {
    dir.makeDir("to/merged");
    const bool nested = std::string(target) == "to/merged/sub";
    dir.write(target, "a file");
    dir.write("to/descript.ion", "src about the file\r\n");
    struct Unreadable {
      static int onCall(const char* call, const char* path, void*) {
        return std::string(call) == "openAt" && std::string(path) == "c" ? EIO : 0;
      }
    };
    System::setHook(Unreadable::onCall, nullptr);
    ui.answers = {Answer::Yes, Answer::Skip};
    ui.questions.clear();
    EXPECT_EQ(copy("src", nested ? "to/merged" : target), Outcome::LeftInPlace) << target;
    System::setHook(nullptr, nullptr);
    EXPECT_EQ(asked(), (Texts{ExistsQuestion, "Error reading disk"})) << target;
    EXPECT_EQ(dir.read(target), "a file");
    EXPECT_EQ(dir.read("to/descript.ion"), "src about the file\r\n");
    EXPECT_EQ(dir.exists("to/merged/a"), nested) << "what it has nothing to do with goes on";
    expectNoLeftovers();
  }
}

TEST_F(CopyDirectory, AFileInTheWayStaysAfterEscAtAnyMoment) {
  answers.overwrite = OverwriteMode::All;
  const auto before = contents(dir.path("src"));
  for (int look = 1;; ++look) {
    dir.write("to/src", "a file");
    ui.looks = 0;
    ui.escapeAtLook = look;
    if (copy("src", "to/src") == Outcome::Done) break;
    EXPECT_EQ(dir.read("to/src"), "a file") << look;
    EXPECT_EQ(contents(dir.path("src")), before);
    expectNoLeftovers();
    if (HasFailure()) return;
  }
  EXPECT_GT(ui.escapeAtLook, 6);
  expectCopied("to/src");
}

TEST_F(CopyDirectory, AFileInTheWayGoesAlsoWhereNamesCantBeExchanged) {
  dir.write("to/src", "a file");
  answers.overwrite = OverwriteMode::All;
  const FaultHook faults("renameExchange", ENOSYS);
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  expectCopied("to/src");
}

TEST_F(CopyDirectory, AMemberThatIsSkippedLeavesThePositiveResultAndTheOthersGoOn) {
  dir.makeDir("to/src");
  dir.makeDir("to/src/sub");
  dir.write("to/src/sub/b", "old b");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copy("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/src/sub/b"), "old b");
  EXPECT_EQ(dir.read("to/src/a"), "content a");
  EXPECT_EQ(dir.read("to/src/sub/deep/c"), "content c");
}

TEST_F(CopyDirectory, AReadOnlyDirectoryIsFilledAndThenGetsItsMode) {
  dir.openToAll();
  dir.chmod("to", 0777);
  dir.chmod("src/sub", 0555);
  dir.chmod("src", 0555);
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(copy("src", "to/copy"), Outcome::Done); }), 0);
  EXPECT_EQ(dir.mode("to/copy/sub"), 0555U);
  EXPECT_EQ(dir.mode("to/copy"), 0555U);
  EXPECT_EQ(dir.read("to/copy/sub/b"), "content b");
}

TEST_F(CopyDirectory, AfterEscTheFinishedFilesStandUnderTheirNamesWithTheirModes) {
  dir.chmod("src", 0751);
  for (int i = 0; i < 20; ++i) dir.write("src/f" + std::to_string(i), "text");
  ui.escapeAtLook = 15;
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Cancelled);
  EXPECT_EQ(dir.mode("to/copy"), 0751U);
  expectNoLeftovers();
  const auto source = contents(dir.path("src"));
  const auto target = contents(dir.path("to/copy"));
  EXPECT_GT(target.size(), 2U);
  EXPECT_LT(target.size(), source.size());
  for (const auto& [name, what] : target) EXPECT_EQ(what, source.at(name)) << name;
}

TEST_F(CopyDirectory, AnUnreadableDirectoryIsToldAndTheRestIsCopied) {
  dir.openToAll();
  dir.chmod("to", 0777);
  dir.chmod("src/sub", 0000);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip};
              EXPECT_EQ(copy("src", "to/copy"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
              EXPECT_EQ(ui.questions[0].caption, dir.path("src/sub"));
            }),
            0);
  EXPECT_EQ(dir.read("to/copy/a"), "content a");
  EXPECT_FALSE(dir.exists("to/copy/sub"));
}

TEST_F(CopyDirectory, DescriptionsTravelWithTheFilesAndTheirFileDoesnt) {
  dir.write("descript.ion", "src the directory\r\n");
  dir.write("src/descript.ion", "a about a\r\nsub about sub\r\norphan of nobody\r\n");
  dir.write("src/sub/descript.ion", "b about b\r\n");
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "copy the directory\r\n");
  const std::string lines = dir.read("to/copy/descript.ion");
  EXPECT_NE(lines.find("a about a\r\n"), std::string::npos);
  EXPECT_NE(lines.find("sub about sub\r\n"), std::string::npos);
  EXPECT_EQ(lines.find("orphan"), std::string::npos) << "it isn't copied as a file";
  EXPECT_EQ(dir.read("to/copy/sub/descript.ion"), "b about b\r\n");
  expectNoLeftovers();
}

TEST_F(CopyDirectory, AMergedDirectoryKeepsItsOwnLine) {
  dir.write("descript.ion", "src the source\r\n");
  dir.write("to/descript.ion", "src the target\r\n");
  dir.makeDir("to/src");
  EXPECT_EQ(copy("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "src the target\r\n");
}

TEST_F(CopyDirectory, ADescriptionFileThatIsNoFileIsAnOrdinaryMember) {
  dir.makeDir("src/descript.ion");
  dir.write("src/descript.ion/x", "inside");
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  EXPECT_EQ(dir.read("to/copy/descript.ion/x"), "inside");
}

TEST_F(CopyDirectory, HundredsOfLevelsAreCopiedWithFewDescriptors) {
  std::string path = "src/levels";
  for (int level = 0; level < 400; ++level) {
    dir.makeDir(path);
    dir.write(path + "/f", "level " + std::to_string(level));
    path += "/d";
  }
  EXPECT_EQ(runInChild([&] {
              const rlimit limit{160, 160};
              setrlimit(RLIMIT_NOFILE, &limit);
              EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
            }),
            0);
  expectCopied("to/copy");
}

TEST_F(CopyDirectory, LevelsThatAreReachedThroughLinksAreFoundAgain) {
  dir.makeDir("elsewhere");
  std::string path = "elsewhere/d0";
  for (int level = 0; level < 150; ++level) {
    dir.makeDir(path);
    dir.write(path + "/f", "level " + std::to_string(level));
    path += "/d";
  }
  dir.link("../elsewhere", "src/zlink");
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  EXPECT_EQ(contents(dir.path("to/copy/zlink")), contents(dir.path("elsewhere")));
}

TEST_F(CopyDirectory, APathThatWouldGetTooLongIsRefusedAndNothingIsLost) {
  const std::string name(200, 'n');
  const std::string before = std::filesystem::current_path();
  ASSERT_EQ(chdir(dir.path("src").c_str()), 0);
  for (int level = 0; level < 30; ++level) {
    writeFile("f", "level");
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
  }
  ASSERT_EQ(chdir(before.c_str()), 0);
  ui.rule = [](const auto& question) {
    EXPECT_EQ(question.text, "Name too long");
    EXPECT_EQ(question.buttons, AlertButtons::OkCancel);
    return Answer::Yes;
  };
  EXPECT_EQ(copy("src", "to/copy"), Outcome::LeftInPlace);
  EXPECT_FALSE(ui.questions.empty());
  EXPECT_EQ(dir.read("to/copy/a"), "content a");
  EXPECT_TRUE(dir.exists("src/" + name));
  ui.treeAnswers = {TreeAnswer::Yes, TreeAnswer::Yes};
  EXPECT_EQ(removeDir("to/copy"), Outcome::Done);
  EXPECT_EQ(removeDir("src"), Outcome::Done) << "what lies deeper than any path is deleted as well";
  EXPECT_EQ(dir.names(), Texts{"to"});
}

TEST_F(CopyDirectory, TheLongestPathOfAllIsCopied) {
  std::string path = dir.path("src");
  std::string target = dir.path("to/c");
  while (target.size() + 202 < LongestPath) {
    path += "/" + std::string(200, 'p');
    target += "/" + std::string(200, 'p');
    ASSERT_EQ(mkdir(path.c_str(), 0755), 0);
  }
  const std::string last(LongestPath - target.size() - 1, 'z');
  ASSERT_LE(last.size(), 255U);
  writeFile(path + "/" + last, "at the very end");
  EXPECT_EQ(copy("src", "to/c"), Outcome::Done);
  EXPECT_EQ(readFile(target + "/" + last), "at the very end");
  EXPECT_EQ((target + "/" + last).size(), LongestPath);
}

TEST_F(CopyDirectory, AFreshTreeCostsFewCallsAFile) {
  for (int i = 0; i < 200; ++i) dir.write("src/sub/f" + std::to_string(i), "text");
  const FaultHook calls;
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Done);
  EXPECT_LT(calls.calls(), 203 * 12 + 150);
  EXPECT_EQ(calls.calls("sync"), 0);
}

TEST_F(CopyDirectory, NamesAreFoldedOnlyOnRequestAndOnlyOfFiles) {
  dir.write("src/UPPER.TXT", "x");
  dir.makeDir("src/DIR");
  RunningOperation operation(ui);
  operation.foldNames = true;
  EXPECT_EQ(Transfer(operation, TransferKind::Copy).run(dir.path("src"), dir.path("to/copy"), 1, 1),
            Outcome::Done);
  EXPECT_TRUE(dir.exists("to/copy/upper.txt"));
  EXPECT_TRUE(dir.exists("to/copy/DIR"));
}

TEST_F(CopyDirectory, ATemporaryNameThatCantBecomeTheRealOneLeavesNothing) {
  const FaultHook faults("renameNoReplace", EROFS);
  ui.answers = {Answer::Retry, Answer::Skip};
  EXPECT_EQ(copy("src", "to/copy"), Outcome::Failed);
  EXPECT_EQ(asked(), Texts(2, "Disk write protected, cannot write"));
  EXPECT_EQ(contents(dir.path("to")).size(), 0U);
}
