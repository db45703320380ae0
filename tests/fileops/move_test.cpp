#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

namespace {

class Move : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/sub", "to"}) dir.makeDir(name);
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
  }
  ino_t inode(const std::string& name) { return statusOf(dir.path(name)).st_ino; }
};

}  // namespace

TEST_F(Move, AFileIsRenamed) {
  const ino_t number = inode("src/a");
  EXPECT_EQ(move("src/a", "to/b"), Outcome::Done);
  EXPECT_EQ(inode("to/b"), number);
  EXPECT_FALSE(dir.exists("src/a"));
  EXPECT_EQ(dir.read("to/b"), "content a");
}

TEST_F(Move, ATreeIsOneRename) {
  const FaultHook calls;
  EXPECT_EQ(move("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(calls.calls("renameNoReplace"), 1);
  EXPECT_LT(calls.calls(), 5);
  EXPECT_EQ(dir.read("to/tree/sub/b"), "content b");
}

TEST_F(Move, SeveralItemsShowTheirCountAsProgress) {
  EXPECT_EQ(move("src/a", "to/a", 2, 3), Outcome::Done);
  EXPECT_EQ(move("to/a", "src/a", 1, 1), Outcome::Done);
  EXPECT_EQ(ui.counted, Texts{"2/3"});
  EXPECT_EQ(ui.shown[0], "Move " + dir.path("src/a") + "|" + dir.path("to/a") + "|2/3");
}

TEST_F(Move, AnExistingFileIsAskedAboutWithoutAllOlder) {
  dir.write("to/a", "old");
  ui.answers = {Answer::Skip, Answer::Cancel, Answer::Yes};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/a"), "old");
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Cancelled);
  EXPECT_EQ(dir.read("to/a"), "old");
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "content a");
  EXPECT_FALSE(dir.exists("src/a"));
  EXPECT_EQ(asked(), Texts(3, ExistsQuestion));
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OverwriteOne);
  EXPECT_EQ(ui.questions[0].caption, dir.path("to/a"));
}

TEST_F(Move, TheRenameGoesStraightOverTheOldTarget) {
  dir.write("to/a", "old");
  answers.overwrite = OverwriteMode::All;
  const FaultHook calls;
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(calls.calls("unlinkAt") + calls.calls("unlink"), 0);
  EXPECT_EQ(calls.calls("renameAt"), 1);
}

TEST_F(Move, AllAndNoneHoldForTheRest) {
  dir.write("to/a", "old");
  dir.write("to/b", "old");
  ui.answers = {Answer::None};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(move("src/sub/b", "to/b"), Outcome::LeftInPlace);
  answers = {};
  ui.answers = {Answer::All};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(move("src/sub/b", "to/b"), Outcome::Done);
  EXPECT_EQ(ui.questions.size(), 2U);
}

TEST_F(Move, OntoItselfIsToldAndChangesNothing) {
  for (const auto mode : {OverwriteMode::Ask, OverwriteMode::All}) {
    answers.overwrite = mode;
    ui.answers = {Answer::Retry, Answer::Skip, Answer::Cancel};
    EXPECT_EQ(move("src/a", "src/a"), Outcome::Failed);
    EXPECT_EQ(move("src", "src"), Outcome::Cancelled);
  }
  EXPECT_EQ(asked(), Texts(6, "File exists (17)"));
  EXPECT_EQ(dir.read("src/a"), "content a");
}

TEST_F(Move, OntoAnotherNameOfTheSameFileLosesNeither) {
  answers.overwrite = OverwriteMode::All;
  ASSERT_EQ(link(dir.path("src/a").c_str(), dir.path("to/hard").c_str()), 0);
  ASSERT_EQ(link(dir.path("src/a").c_str(), dir.path("src/twin").c_str()), 0);
  dir.link("../src/a", "to/soft");
  for (const char* target : {"to/hard", "src/twin", "to/soft"}) {
    ui.answers = {Answer::Skip};
    EXPECT_EQ(move("src/a", target), Outcome::Failed) << target;
  }
  // A link over the file it leads to would leave neither.
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("to/soft", "src/a"), Outcome::Failed);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_EQ(dir.read("to/hard"), "content a");
  EXPECT_TRUE(S_ISLNK(statusOf(dir.path("to/soft")).st_mode));
}

TEST_F(Move, ADirectoryIntoItselfIsRefused) {
  dir.link("src/sub", "door");
  dir.makeDir("src/sub/inner");
  ui.rule = [](const auto&) { return Answer::Yes; };
  const auto before = contents(dir.path());
  for (const char* target : {"src/new", "src/sub", "src/sub/inner/x", "door/x"}) {
    EXPECT_EQ(move("src", target), Outcome::Cancelled) << target;
    EXPECT_EQ(contents(dir.path()), before) << target;
  }
  EXPECT_EQ(asked(), Texts(4, "Directory cannot be copied into itself"));
}

TEST_F(Move, ADirectoryOntoAnExistingOneMergesAndTheEmptiedSourceGoes) {
  dir.makeDir("to/src");
  dir.makeDir("to/src/sub");
  dir.write("to/src/sub/other", "stays");
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_EQ(dir.read("to/src/a"), "content a");
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
  EXPECT_EQ(dir.read("to/src/sub/other"), "stays");
}

TEST_F(Move, AMemberThatIsSkippedKeepsItsDirectoriesAndNoQuestionIsAsked) {
  dir.makeDir("to/src");
  dir.makeDir("to/src/sub");
  dir.write("to/src/sub/b", "old b");
  GlobalOptions::Confirmations = ConfirmationOff::DeleteTree;
  answers.deleteTree = true;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(move("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/sub/b"), "content b");
  EXPECT_EQ(dir.read("to/src/sub/b"), "old b");
  EXPECT_FALSE(dir.exists("src/a")) << "the others went over";
  EXPECT_TRUE(ui.treeQuestions.empty());
}

TEST_F(Move, WhatAppearsInTheSourceMeanwhileKeepsItInSilence) {
  dir.makeDir("to/src");
  ui.onLook = [&] { dir.write("src/appeared", "new"); };
  EXPECT_EQ(move("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/appeared"), "new");
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(Move, ASourceDirectoryThatMayNotBeRemovedGetsItsBox) {
  dir.makeDir("to/src");
  struct Denied {
    static int onCall(const char* call, const char*, void*) {
      return std::string(call) == "unlinkAt" ? EACCES : 0;
    }
  };
  ui.answers = {Answer::Retry, Answer::Skip};
  std::filesystem::remove_all(dir.path("src/sub"));
  System::setHook(Denied::onCall, nullptr);
  EXPECT_EQ(move("src", "to/src"), Outcome::Failed);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(asked(), Texts(2, "Access Denied"));
  EXPECT_TRUE(dir.exists("src"));
}

TEST_F(Move, ADirectoryOverAFileAsksAndReplacesIt) {
  dir.write("to/src", "a file");
  ui.answers = {Answer::Skip, Answer::Yes};
  EXPECT_EQ(move("src", "to/src"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/src"), "a file");
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
  expectNoLeftovers();
}

TEST_F(Move, ADirectoryGoesOverAFileAlsoWhereNamesCantBeExchanged) {
  dir.write("to/src", "a file");
  answers.overwrite = OverwriteMode::All;
  const FaultHook faults("renameExchange", EINVAL);
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
  expectNoLeftovers();
}

// Names can't be exchanged, the directory can't take the name, and the file can't come back.
TEST_F(Move, AFileThatHasToStandAsideIsNamed) {
  struct Stuck {
    int renames = 0;
    static int onCall(const char* call, const char*, void* context) {
      auto* stuck = static_cast<Stuck*>(context);
      if (std::string(call) == "renameExchange") return ENOSYS;
      if (std::string(call) != "renameNoReplace") return 0;
      constexpr int IntoPlace = 3;  // the first one finds the name taken, the second moves aside
      return ++stuck->renames >= IntoPlace ? EIO : 0;
    }
  };
  dir.write("to/src", "a file");
  Stuck stuck;
  ui.rule = [](const auto& question) {
    return question.text == ExistsQuestion ? Answer::Yes : Answer::Skip;
  };
  System::setHook(Stuck::onCall, &stuck);
  const Outcome outcome = move("src", "to/src");
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(outcome, Outcome::Failed);
  ASSERT_EQ(asked().size(), 3u);
  EXPECT_EQ(ui.questions[1].text, "Old file is kept as");
  EXPECT_EQ(readFile(ui.questions[1].caption), "a file");
  EXPECT_EQ(dir.read("src/sub/b"), "content b");
}

TEST_F(Move, AFileOverADirectoryNeverDeletesTheDirectory) {
  dir.makeDir("to/a");
  dir.write("to/a/inside", "kept");
  ui.answers = {Answer::Yes, Answer::Skip};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{ExistsQuestion, "Is a directory (21)"}));
  EXPECT_EQ(dir.read("to/a/inside"), "kept");
  EXPECT_EQ(dir.read("src/a"), "content a");
}

TEST_F(Move, AMissingTargetDirectoryOrSourceIsToldByItsOwnPath) {
  ui.answers = {Answer::Yes, Answer::Yes, Answer::Cancel};
  EXPECT_EQ(move("src/a", "nowhere/a"), Outcome::Failed);
  EXPECT_EQ(move("src/missing", "to/a"), Outcome::Failed);
  EXPECT_EQ(move("src/missing", "to/a"), Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts(3, "File not found"));
  EXPECT_EQ(ui.questions[0].caption, dir.path("nowhere/a"));
  EXPECT_EQ(ui.questions[1].caption, dir.path("src/missing"));
}

TEST_F(Move, ALinkIsMovedAsALinkAlsoOntoAnExistingFile) {
  dir.link("a", "src/link");
  dir.write("to/link", "old");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(move("src/link", "to/link"), Outcome::Done);
  EXPECT_EQ(std::filesystem::read_symlink(dir.path("to/link")), "a");
  EXPECT_EQ(dir.read("src/a"), "content a");
}

TEST_F(Move, OverADanglingLinkAsksAndReplacesTheLink) {
  dir.link("nowhere", "to/a");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  EXPECT_TRUE(S_ISREG(statusOf(dir.path("to/a")).st_mode));
}

TEST_F(Move, BreakBeforeTheRenameCancels) {
  RunningOperation operation(ui);
  const BreakScope armed;
  requestBreak();
  EXPECT_EQ(Transfer(operation, TransferKind::Move).run(dir.path("src/a"), dir.path("to/a"), 1, 1),
            Outcome::Cancelled);
  EXPECT_TRUE(dir.exists("src/a"));
  EXPECT_TRUE(breakRequested()) << "an inner step doesn't end the request";
}

TEST_F(Move, DescriptionsMoveWithTheirFiles) {
  dir.write("src/descript.ion", "a about a\r\nsub about sub\r\nother stays\r\n");
  EXPECT_EQ(move("src/a", "to/x y"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "\"x y\" about a\r\n");
  EXPECT_EQ(dir.read("src/descript.ion"), "sub about sub\r\nother stays\r\n");
  EXPECT_EQ(move("src/sub", "src/new"), Outcome::Done);
  EXPECT_EQ(dir.read("src/descript.ion"), "other stays\r\nnew about sub\r\n");
}

TEST_F(Move, WhatIsReplacedTakesItsDescriptionAlong) {
  dir.write("to/a", "old");
  dir.write("to/src", "a file");
  dir.write("to/descript.ion", "a about the old a\r\nsrc about the file\r\nother stays\r\n");
  ui.answers = {Answer::Skip, Answer::Yes, Answer::Yes};
  EXPECT_EQ(move("src/a", "to/a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/descript.ion").substr(0, 17), "a about the old a");
  EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "other stays\r\n");
}

TEST_F(Move, ManyFilesOfOneCommandAllKeepTheirDescriptions) {
  RunningOperation operation(ui);
  Transfer transfer(operation, TransferKind::Move);
  std::string lines;
  for (int i = 0; i < 50; ++i) {
    const std::string name = "f" + std::to_string(i);
    dir.write("src/" + name, name);
    lines += name + " about " + name + "\r\n";
  }
  dir.write("src/descript.ion", lines);
  for (int i = 0; i < 50; ++i) {
    const std::string name = "f" + std::to_string(i);
    EXPECT_EQ(transfer.run(dir.path("src/" + name), dir.path("to/" + name), i + 1, 50),
              Outcome::Done);
  }
  operation.descriptions.flush();
  EXPECT_EQ(dir.read("to/descript.ion"), lines);
  EXPECT_FALSE(dir.exists("src/descript.ion"));
}

TEST_F(Move, MergingCarriesTheLinesAndKeepsTheTargetsOwn) {
  dir.write("src/descript.ion", "a about a\r\norphan of nobody\r\n");
  dir.makeDir("to/src");
  dir.write("to/src/other", "x");
  dir.write("to/src/descript.ion", "other about other\r\n");
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_EQ(dir.read("to/src/descript.ion"),
            "other about other\r\na about a\r\norphan of nobody\r\n");
}

TEST_F(Move, WhenADescriptionCantBeWrittenItsOldLineStays) {
  dir.write("src/descript.ion", "a about a\r\n");
  {
    const FaultHook faults("sync", ENOSPC);
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Done);
  }
  EXPECT_EQ(dir.read("src/descript.ion"), "a about a\r\n");
}

TEST_F(Move, TheDescriptionFileItselfIsMovedLikeAnyFile) {
  dir.write("src/descript.ion", "a about a\r\n");
  EXPECT_EQ(move("src/descript.ion", "to/descript.ion"), Outcome::Done);
  EXPECT_EQ(dir.read("to/descript.ion"), "a about a\r\n");
  EXPECT_FALSE(dir.exists("src/descript.ion"));
}

TEST_F(Move, WithoutPermissionTheQuestionIsntMistakenForAnExistingTarget) {
  dir.openToAll();
  dir.chmod("src", 0555);
  dir.chmod("to", 0777);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip};
              EXPECT_EQ(move("src/a", "to/new"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
            }),
            0);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_FALSE(dir.exists("to/new"));
}
